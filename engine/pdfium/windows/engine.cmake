# Additions for Windows: the engine's own copies of Little CMS and OpenJPEG, and headers that the compiler or the platform
# lacks.
#
#   HDI_WINDOWS_LIBRARIES   folder with the headers of FreeType and libjpeg-turbo (scripts/windows-libraries)
file(GLOB colour_sources CONFIGURE_DEPENDS "${PDFIUM_SOURCE}/third_party/lcms/src/*.c")
file(GLOB jpeg2000_sources CONFIGURE_DEPENDS "${PDFIUM_SOURCE}/third_party/libopenjpeg/*.c")
list(FILTER jpeg2000_sources EXCLUDE REGEX "/(opj_clock|t1_generate_luts)\\.c$")
target_sources(pdfium PRIVATE ${colour_sources} ${jpeg2000_sources}
  "${CMAKE_CURRENT_LIST_DIR}/openjpeg_memory.cpp")

target_compile_definitions(pdfium PRIVATE
  UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN OPJ_STATIC PNG_PREFIX)
target_include_directories(pdfium BEFORE PRIVATE "${CMAKE_CURRENT_LIST_DIR}/include")
target_include_directories(pdfium SYSTEM PRIVATE
  "${HDI_WINDOWS_LIBRARIES}/include" "${HDI_WINDOWS_LIBRARIES}/include/freetype2")
set_source_files_properties("${PDFIUM_SOURCE}/core/fxcrt/fx_memory.cpp" PROPERTIES
  COMPILE_OPTIONS "-include;${CMAKE_CURRENT_LIST_DIR}/include/posix_memalign.h")
