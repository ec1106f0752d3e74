# The zip that a Windows user installs: the artefacts and their data files, a page on how to use them, the command's
# reference, and the licences. Made by scripts/windows --package.
install(FILES "${PROJECT_SOURCE_DIR}/docs/windows.md" DESTINATION . RENAME README.md)
install(FILES "${PROJECT_SOURCE_DIR}/docs/hdiplot.md" "${PROJECT_SOURCE_DIR}/docs/third-party.md"
              "${PROJECT_SOURCE_DIR}/LICENSE" DESTINATION .)

# Notices of what is linked in. The Debian packages named here are of the same source as what was built.
set(engine_source "${HDI_ENGINE_FOUND_DIR}/source")
install(FILES "${engine_source}/LICENSE" DESTINATION licences RENAME pdfium.txt)
install(FILES "${engine_source}/third_party/agg23/copying" DESTINATION licences RENAME agg.txt)
install(FILES "${engine_source}/third_party/libopenjpeg/LICENSE" DESTINATION licences RENAME openjpeg.txt)
foreach(package IN ITEMS gcc-mingw-w64-base hershey-fonts-data libcli11-dev libdeflate-dev libfmt-dev libfreetype-dev
                         libicu-dev libjpeg62-turbo-dev liblcms2-dev libpolyclipping-dev libz-mingw-w64-dev
                         mingw-w64-x86-64-dev nlohmann-json3-dev)
  install(FILES "/usr/share/doc/${package}/copyright" DESTINATION licences RENAME "${package}.txt")
endforeach()

set(CPACK_GENERATOR ZIP)
set(CPACK_PACKAGE_NAME pdf-hdi)
set(CPACK_PACKAGE_FILE_NAME pdf-hdi-windows)
set(CPACK_INCLUDE_TOPLEVEL_DIRECTORY OFF)
set(CPACK_VERBATIM_VARIABLES ON)
include(CPack)
