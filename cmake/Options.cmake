# What every target of ours is compiled with: the language, the warnings and the include root.
#
#   hdi_options   INTERFACE target that each of our targets links
if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "Kind of build" FORCE)
endif()

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_SCAN_FOR_MODULES OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_C_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

find_program(HDI_CCACHE ccache)
if(HDI_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_C_COMPILER_LAUNCHER "${HDI_CCACHE}")
  set(CMAKE_CXX_COMPILER_LAUNCHER "${HDI_CCACHE}")
endif()

# Sanitizers go to every target, third parties' headers included, as instrumented and plain code must agree on
# what a link holds.
if(HDI_SANITIZE)
  add_compile_options(-fsanitize=${HDI_SANITIZE} -fno-sanitize=vptr -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${HDI_SANITIZE})
  add_compile_definitions(_GLIBCXX_ASSERTIONS)
endif()

# Fuzzers steer by the code that an input reaches, so every target counts what of it runs.
if(HDI_BUILD_FUZZERS)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()

# Each release of a compiler warns of something more, and of inlined library code that is right. So warnings are
# errors with the release that the code is written with, where all of them are known.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  option(HDI_WARNINGS_AS_ERRORS "Stop the build at the first warning in our own code" ON)
else()
  option(HDI_WARNINGS_AS_ERRORS "Stop the build at the first warning in our own code" OFF)
endif()

# The widths of all arithmetic are part of what is plotted: a fused multiply-add would change last bits.
if(NOT MSVC)
  add_compile_options(-ffp-contract=off)
endif()

add_library(hdi_options INTERFACE)
target_include_directories(hdi_options INTERFACE "${PROJECT_SOURCE_DIR}")
if(WIN32)
  # What <windows.h> declares: its functions for 16-bit units, and no macros named min and max.
  target_compile_definitions(hdi_options INTERFACE UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN)
endif()
if(MSVC)
  target_compile_options(hdi_options INTERFACE /W4 /utf-8 $<$<BOOL:${HDI_WARNINGS_AS_ERRORS}>:/WX>)
else()
  # One section a function lets the linker drop what an artefact never calls.
  target_compile_options(hdi_options INTERFACE
    -Wall -Wextra -Wconversion -Wshadow -ffunction-sections -fdata-sections)
  if(HDI_WARNINGS_AS_ERRORS)
    target_compile_options(hdi_options INTERFACE -Werror)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
      # What the optimiser guesses changes with the sanitizers' checks: it is shown and stops nothing.
      target_compile_options(hdi_options INTERFACE
        -Wno-error=array-bounds -Wno-error=stringop-overflow -Wno-error=maybe-uninitialized)
    endif()
  endif()
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_GREATER_EQUAL 13)
    # Takes every function from a temporary to a reference for one that returns a part of the temporary.
    target_compile_options(hdi_options INTERFACE -Wno-dangling-reference)
  endif()
endif()
