# Functions that define our targets, so that the folders' lists only name sources and libraries.

# hdi_add_library(NAME name SOURCES ... [LIBRARIES ...])
# A static library of one folder. LIBRARIES are public, as headers include those of other folders.
function(hdi_add_library)
  cmake_parse_arguments(PARSE_ARGV 0 arg "" "NAME" "SOURCES;LIBRARIES")
  add_library(${arg_NAME} STATIC ${arg_SOURCES})
  target_link_libraries(${arg_NAME} PUBLIC hdi_options ${arg_LIBRARIES})
endfunction()

# hdi_place_beside_others(target)
# Places an artefact in the root of the build folder and makes it look for shared libraries in its own directory.
function(hdi_place_beside_others target)
  set_target_properties(${target} PROPERTIES
    RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}"
    LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}"
    BUILD_WITH_INSTALL_RPATH ON
    INSTALL_RPATH "$ORIGIN")
  if(WIN32)
    # mingw-w64 would prefix "lib".
    set_target_properties(${target} PROPERTIES PREFIX "")
    target_link_options(${target} PRIVATE LINKER:--gc-sections LINKER:--strip-all)
  elseif(UNIX AND NOT APPLE)
    target_link_options(${target} PRIVATE LINKER:--enable-new-dtags LINKER:--gc-sections)
  endif()
endfunction()

# hdi_limit_exports(target script)
# Exports only the symbols named in a linker version script, and fails on undefined symbols. Does nothing on Windows,
# where exports are marked in the code.
function(hdi_limit_exports target script)
  if(UNIX AND NOT APPLE)
    cmake_path(ABSOLUTE_PATH script BASE_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}")
    target_link_options(${target} PRIVATE "LINKER:--version-script=${script}")
    # clang's sanitizer runtime is in the executable only.
    if(NOT HDI_BUILD_FUZZERS)
      target_link_options(${target} PRIVATE LINKER:--no-undefined)
    endif()
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS "${script}")
  endif()
endfunction()

# hdi_install(target directory)
# Installs an artefact. On Windows all are installed into one directory. Elsewhere the installed file finds its
# shared libraries relative to itself, so that the installed tree can be moved; packages for the system's own
# directories are configured with CMAKE_SKIP_INSTALL_RPATH.
function(hdi_install target directory)
  if(WIN32)
    install(TARGETS ${target} LIBRARY DESTINATION . RUNTIME DESTINATION .)
    return()
  endif()
  cmake_path(RELATIVE_PATH CMAKE_INSTALL_FULL_LIBDIR BASE_DIRECTORY "${CMAKE_INSTALL_PREFIX}/${directory}"
             OUTPUT_VARIABLE libraries)
  set_target_properties(${target} PROPERTIES
    BUILD_WITH_INSTALL_RPATH OFF
    BUILD_RPATH_USE_ORIGIN ON
    INSTALL_RPATH "$ORIGIN/${libraries}")
  install(TARGETS ${target}
    LIBRARY DESTINATION "${directory}" COMPONENT hdiplot NAMELINK_COMPONENT development
    RUNTIME DESTINATION "${directory}" COMPONENT hdiplot)
endfunction()
