# The CMake package (find_package(vorel)) and the pkg-config file. The libraries and headers install themselves.

include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/vorel)
configure_package_config_file(cmake/vorel-config.cmake.in ${PROJECT_BINARY_DIR}/vorel-config.cmake
  INSTALL_DESTINATION ${package_dir})
# Before 1.0 a new minor version may break clients.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/vorel-config-version.cmake COMPATIBILITY SameMinorVersion)
install(EXPORT vorel NAMESPACE vorel:: FILE vorel-targets.cmake DESTINATION ${package_dir}
  COMPONENT development)
install(FILES ${PROJECT_BINARY_DIR}/vorel-config.cmake ${PROJECT_BINARY_DIR}/vorel-config-version.cmake
  DESTINATION ${package_dir} COMPONENT development)

# The prefix is found from where the file lies, so that an installed tree can be moved.
file(RELATIVE_PATH prefix_from_pkgconfig /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
configure_file(cmake/vorel.pc.in ${PROJECT_BINARY_DIR}/vorel.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/vorel.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
  COMPONENT development)
