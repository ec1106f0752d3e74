# How our targets are made, so that the folders' own lists name sources and libraries and nothing else.

# hdi_add_library(NAME name SOURCES ... [LIBRARIES ...])
# A static library of one folder. Libraries are public, as headers of one folder show up in those of the next.
function(hdi_add_library)
  cmake_parse_arguments(PARSE_ARGV 0 arg "" "NAME" "SOURCES;LIBRARIES")
  add_library(${arg_NAME} STATIC ${arg_SOURCES})
  target_link_libraries(${arg_NAME} PUBLIC hdi_options ${arg_LIBRARIES})
endfunction()

# hdi_place_beside_others(target)
# Puts an artefact into the root of the build folder, where it looks for shared libraries beside itself.
function(hdi_place_beside_others target)
  set_target_properties(${target} PROPERTIES
    RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}"
    LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}"
    BUILD_WITH_INSTALL_RPATH ON
    INSTALL_RPATH "$ORIGIN")
  if(WIN32)
    # Names of their own, without the "lib" of this compiler's habit.
    set_target_properties(${target} PROPERTIES PREFIX "")
    target_link_options(${target} PRIVATE LINKER:--gc-sections LINKER:--strip-all)
  elseif(UNIX AND NOT APPLE)
    target_link_options(${target} PRIVATE LINKER:--enable-new-dtags LINKER:--gc-sections)
  endif()
endfunction()

# hdi_limit_exports(target script)
# Makes the symbols named in a linker version script the only ones that a shared target exports, and every
# symbol it needs one that its libraries define. On Windows nothing else can be: there exports are marked in the
# code.
function(hdi_limit_exports target script)
  if(UNIX AND NOT APPLE)
    cmake_path(ABSOLUTE_PATH script BASE_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}")
    target_link_options(${target} PRIVATE "LINKER:--version-script=${script}")
    # What clang's sanitizers call is in the executable alone.
    if(NOT HDI_BUILD_FUZZERS)
      target_link_options(${target} PRIVATE LINKER:--no-undefined)
    endif()
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS "${script}")
  endif()
endfunction()
