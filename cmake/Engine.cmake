# The engine as a target. scripts/setup builds it in a cache outside the build folder, shared by all clones on the
# machine; all presets of a platform link the same release build.
#
#   hdi_engine_dependency   INTERFACE target, for engine/ only: the engine's headers and the libraries it needs
set(HDI_ENGINE_DIR "" CACHE PATH "Folder of a built engine (source/, lib/). Default: the one in the engine cache")

set(HDI_ENGINE_FOUND_DIR "${HDI_ENGINE_DIR}")
if(NOT HDI_ENGINE_FOUND_DIR)
  # scripts/engine computes the cache's key from the compiler and the build files.
  execute_process(
    COMMAND "${CMAKE_COMMAND}" -E env "CXX=${CMAKE_CXX_COMPILER}"
            "${PROJECT_SOURCE_DIR}/scripts/engine" --print-directory
    OUTPUT_VARIABLE HDI_ENGINE_FOUND_DIR OUTPUT_STRIP_TRAILING_WHITESPACE
    RESULT_VARIABLE engine_status)
  if(NOT engine_status EQUAL 0)
    message(FATAL_ERROR "scripts/engine --print-directory failed")
  endif()
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS
    "${PROJECT_SOURCE_DIR}/scripts/engine" "${PROJECT_SOURCE_DIR}/engine/pdfium/CMakeLists.txt")
endif()
if(NOT EXISTS "${HDI_ENGINE_FOUND_DIR}/lib/libpdfium.a")
  message(FATAL_ERROR "The engine is not built in '${HDI_ENGINE_FOUND_DIR}'. Run scripts/setup first.")
endif()

# The scripts compare this file to see whether the engine has changed and the build must be configured again.
file(WRITE "${PROJECT_BINARY_DIR}/engine-directory" "${HDI_ENGINE_FOUND_DIR}\n")

add_library(hdi_engine_dependency INTERFACE)
target_include_directories(hdi_engine_dependency SYSTEM INTERFACE
  "${HDI_ENGINE_FOUND_DIR}/source"
  "${HDI_ENGINE_FOUND_DIR}/source/third_party/abseil-cpp"
  "${HDI_ENGINE_FOUND_DIR}/source/third_party/fast_float/src/include")
# The engine's internal headers need the definitions that the engine was built with. Without NDEBUG some of its
# classes have more members.
target_compile_definitions(hdi_engine_dependency INTERFACE
  DEFINE_PS_TABLES_DATA USE_SYSTEM_ZLIB USE_SYSTEM_LIBJPEG USE_SYSTEM_ICUUC
  $<$<NOT:$<CONFIG:Release>>:NDEBUG>)
target_link_libraries(hdi_engine_dependency INTERFACE "${HDI_ENGINE_FOUND_DIR}/lib/libpdfium.a")

if(WIN32)
  # There, its own Little CMS and OpenJPEG are part of it.
  find_package(Freetype REQUIRED)
  find_package(JPEG REQUIRED)
  find_library(ZLIB_LIBRARY NAMES libz.a REQUIRED)  # not the import library of the DLL
  find_package(ZLIB REQUIRED)
  target_include_directories(hdi_engine_dependency SYSTEM BEFORE INTERFACE
    "${PROJECT_SOURCE_DIR}/engine/pdfium/windows/include")
  target_compile_definitions(hdi_engine_dependency INTERFACE OPJ_STATIC PNG_PREFIX)
  target_link_libraries(hdi_engine_dependency INTERFACE Freetype::Freetype JPEG::JPEG ZLIB::ZLIB gdi32 user32)
else()
  find_package(PkgConfig REQUIRED)
  pkg_check_modules(HDI_ENGINE_SYSTEM REQUIRED IMPORTED_TARGET
                    freetype2 zlib libjpeg lcms2 libopenjp2 icu-uc)
  target_compile_definitions(hdi_engine_dependency INTERFACE USE_SYSTEM_LCMS2 USE_SYSTEM_LIBOPENJPEG2)
  target_link_libraries(hdi_engine_dependency INTERFACE PkgConfig::HDI_ENGINE_SYSTEM)
endif()
