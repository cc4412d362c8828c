# Runs after CPack: takes the scripts out of the library package that do nothing but call ldconfig. CPack 3.25 always adds
# them; the trigger does their work, once for all packages of a run and without a shell in the target system.

foreach(package IN LISTS CPACK_PACKAGE_FILES)
  if(NOT package MATCHES "/libvorel[0-9]")
    continue()
  endif()
  set(folder ${package}.contents)
  execute_process(COMMAND dpkg-deb --raw-extract ${package} ${folder} COMMAND_ERROR_IS_FATAL ANY)
  file(REMOVE ${folder}/DEBIAN/postinst ${folder}/DEBIAN/postrm)
  execute_process(COMMAND dpkg-deb --build --root-owner-group ${folder} ${package}
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
  file(REMOVE_RECURSE ${folder})
endforeach()
