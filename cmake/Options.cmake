# Compiler options of all our targets: language, warnings, include root.
#
#   hdi_options   INTERFACE target that each of our targets links
if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "Build type" FORCE)
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

# For every target: instrumented and plain code must not be mixed in a link.
if(HDI_SANITIZE)
  add_compile_options(-fsanitize=${HDI_SANITIZE} -fno-sanitize=vptr -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${HDI_SANITIZE})
  add_compile_definitions(_GLIBCXX_ASSERTIONS)
endif()

# Coverage counters in every target guide the fuzzers.
if(HDI_BUILD_FUZZERS)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()

# New compiler releases add warnings, some of them false positives in inlined library code. So warnings are errors by
# default with the release that the code is developed with.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  option(HDI_WARNINGS_AS_ERRORS "Treat warnings in our own code as errors" ON)
else()
  option(HDI_WARNINGS_AS_ERRORS "Treat warnings in our own code as errors" OFF)
endif()

# A fused multiply-add would change the last bits of coordinates.
if(NOT MSVC)
  add_compile_options(-ffp-contract=off)
endif()

add_library(hdi_options INTERFACE)
target_include_directories(hdi_options INTERFACE "${PROJECT_SOURCE_DIR}")
if(WIN32)
  # <windows.h> with its wide functions and without the macros min and max.
  target_compile_definitions(hdi_options INTERFACE UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN)
endif()
if(MSVC)
  target_compile_options(hdi_options INTERFACE /W4 /utf-8 $<$<BOOL:${HDI_WARNINGS_AS_ERRORS}>:/WX>)
else()
  # A section per function lets the linker drop unused functions.
  target_compile_options(hdi_options INTERFACE
    -Wall -Wextra -Wconversion -Wshadow -ffunction-sections -fdata-sections)
  if(HDI_WARNINGS_AS_ERRORS)
    target_compile_options(hdi_options INTERFACE -Werror)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
      # These depend on the optimiser and give false positives with the sanitizers.
      target_compile_options(hdi_options INTERFACE
        -Wno-error=array-bounds -Wno-error=stringop-overflow -Wno-error=maybe-uninitialized)
    endif()
  endif()
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_GREATER_EQUAL 13)
    # False positives for functions that take a temporary and return a reference to something else.
    target_compile_options(hdi_options INTERFACE -Wno-dangling-reference)
  endif()
endif()
