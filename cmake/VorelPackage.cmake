# Debian packages by CPack, one per install component: libvorel0.1 (the shared libraries), libvorel-dev (headers, CMake
# package, pkg-config file) and vorel-tools. A build with static libraries makes the last only.
# scripts/package.sh makes all three.

set(VOREL_PACKAGE_MAINTAINER "The vorel maintainers <maintainers@vorel.example>" CACHE STRING
  "Name and mail address in the Debian packages")

# The library package carries the version of the binary interface in its name: a system can hold 0.1 for old clients
# beside 0.2 for new ones.
set(runtime_abi ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
set(runtime_package libvorel${runtime_abi})
set(development_package libvorel-dev)
set(tools_package vorel-tools)

set(components "")
if(BUILD_SHARED_LIBS)
  list(APPEND components runtime development)
endif()
if(VOREL_BUILD_TOOLS)
  list(APPEND components tools)
endif()

# Every Debian package has its copyright file and its changelog. SOURCE_DATE_EPOCH sets the date for repeatable builds.
string(TIMESTAMP package_date "%a, %d %b %Y %H:%M:%S +0000" UTC)
find_program(GZIP_PROGRAM gzip REQUIRED)
mark_as_advanced(GZIP_PROGRAM)
foreach(component IN LISTS components)
  set(package ${${component}_package})
  set(folder ${PROJECT_BINARY_DIR}/packaging/${package})
  configure_file(${CMAKE_CURRENT_LIST_DIR}/debian/changelog.in ${folder}/changelog @ONLY)
  execute_process(COMMAND ${GZIP_PROGRAM} -9nf ${folder}/changelog COMMAND_ERROR_IS_FATAL ANY)
  install(FILES ${CMAKE_CURRENT_LIST_DIR}/debian/copyright DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${package}
    COMPONENT ${component})
  install(FILES ${folder}/changelog.gz DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${package}
    COMPONENT ${component})
endforeach()

if(VOREL_BUILD_TOOLS)
  configure_file(${PROJECT_SOURCE_DIR}/tools/vorel/vorel.1 ${PROJECT_BINARY_DIR}/packaging/vorel.1 COPYONLY)
  execute_process(COMMAND ${GZIP_PROGRAM} -9nf ${PROJECT_BINARY_DIR}/packaging/vorel.1 COMMAND_ERROR_IS_FATAL ANY)
  install(FILES ${PROJECT_BINARY_DIR}/packaging/vorel.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tools)
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vorel)
set(CPACK_PACKAGE_VENDOR "")
set(CPACK_PACKAGE_CONTACT "${VOREL_PACKAGE_MAINTAINER}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
# Whatever the mask of the user who makes the packages.
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_COMPONENTS_ALL ${components})
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${runtime_package})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
# What packages of clients depend on, and a trigger for the loader's cache. CPack's own `shlibs` come with scripts that run
# ldconfig, which Debian no longer does.
configure_file(${CMAKE_CURRENT_LIST_DIR}/debian/shlibs.in ${PROJECT_BINARY_DIR}/packaging/shlibs @ONLY)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA
  ${PROJECT_BINARY_DIR}/packaging/shlibs ${CMAKE_CURRENT_LIST_DIR}/debian/triggers)
configure_file(${CMAKE_CURRENT_LIST_DIR}/debian/overrides.in ${PROJECT_BINARY_DIR}/packaging/overrides @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/packaging/overrides DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/lintian/overrides
  RENAME ${runtime_package} COMPONENT runtime)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS
  ${PROJECT_BINARY_DIR}/base ${PROJECT_BINARY_DIR}/logging ${PROJECT_BINARY_DIR}/src/map_utils)
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "Headings, distances along a route, symbols along its visible part, clipping,
containment, projection and offset of lines in longitude and latitude.
.
This package holds the shared libraries.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME ${development_package})
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${runtime_package} (= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "Headings, distances along a route, symbols along its visible part, clipping,
containment, projection and offset of lines in longitude and latitude.
.
This package holds the headers, the CMake package and the pkg-config file.")

set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME ${tools_package})
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SHLIBDEPS ON)
if(BUILD_SHARED_LIBS)
  set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS "${runtime_package} (= ${PROJECT_VERSION})")
endif()
set(CPACK_COMPONENT_TOOLS_DESCRIPTION "The command-line tool.
Places symbols, samples, measures, clips, thins, matches and offsets lines and
polygons given as GeoJSON, and draws what it did.")

set(CPACK_POST_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/debian/drop_ldconfig_scripts.cmake)

include(CPack)
