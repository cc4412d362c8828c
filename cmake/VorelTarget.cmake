# How every target of the project is compiled, and how its libraries are made.

function(vorel_compile_options target)
  target_compile_features(${target} PUBLIC cxx_std_17)
  set_target_properties(${target} PROPERTIES
    CXX_EXTENSIONS OFF
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)
  if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
    target_compile_options(${target} PRIVATE
      -ffp-contract=off                           # a product and a sum are rounded one by one, everywhere
      -ffile-prefix-map=${PROJECT_SOURCE_DIR}/=   # no build path in binaries and log records
      -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wnon-virtual-dtor -Wold-style-cast -Wcast-qual
      $<$<BOOL:${VOREL_WARNINGS_AS_ERRORS}>:-Werror>)
  endif()
  target_compile_definitions(${target} PRIVATE
    $<$<BOOL:${VOREL_CHECK_PRECONDITIONS}>:VOREL_CHECK_PRECONDITIONS=1>)
endfunction()

# vorel_library(base SOURCES ... HEADERS ... [LINK ...]) makes vorel_base with the alias vorel::base. HEADERS are the
# public ones, relative to the current folder.
function(vorel_library name)
  cmake_parse_arguments(PARSE_ARGV 1 library "" "" "SOURCES;HEADERS;LINK")
  set(target vorel_${name})
  add_library(${target} ${library_SOURCES})
  add_library(vorel::${name} ALIAS ${target})
  vorel_compile_options(${target})
  if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
    target_compile_options(${target} PRIVATE -fno-math-errno)  # square roots without a call; changes no result
  endif()
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # For a small library: no long loops unrolled whole.
    target_compile_options(${target} PRIVATE --param=max-completely-peeled-insns=100)
  endif()
  if(VOREL_COVERAGE)
    if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
      message(FATAL_ERROR "VOREL_COVERAGE needs g++: gcov reads no other compiler's counts")
    endif()
    # So little optimised that each branch of the source is one of the program; counted right with threads.
    target_compile_options(${target} PRIVATE --coverage -Og -fprofile-update=atomic)
    target_link_options(${target} PUBLIC --coverage)
  endif()
  target_include_directories(${target} PUBLIC
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/src>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/vorel>)
  target_link_libraries(${target} PUBLIC ${library_LINK})
  set_target_properties(${target} PROPERTIES
    EXPORT_NAME ${name}
    POSITION_INDEPENDENT_CODE ON
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
  if(BUILD_SHARED_LIBS)
    target_compile_definitions(${target} PUBLIC VOREL_SHARED PRIVATE VOREL_BUILDING_LIBRARY)
    if(CMAKE_SYSTEM_NAME STREQUAL Linux)
      # Without whole pages of padding between code and constants; calls within the library are direct.
      target_link_options(${target} PRIVATE
        -Wl,-z,noseparate-code -Wl,-Bsymbolic-functions -Wl,-O1 -Wl,--hash-style=gnu
        -Wl,--version-script=${PROJECT_SOURCE_DIR}/cmake/exported_symbols.map)
      set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${PROJECT_SOURCE_DIR}/cmake/exported_symbols.map)
    endif()
  endif()
  if(VOREL_INSTALL)
    install(TARGETS ${target} EXPORT vorel
      RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime
      LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
      ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
    file(RELATIVE_PATH folder ${PROJECT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
    string(REGEX REPLACE "^src/" "" folder ${folder})
    install(FILES ${library_HEADERS} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/vorel/${folder}
      COMPONENT development)
  endif()
endfunction()
