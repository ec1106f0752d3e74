# The zip of what a user on Windows installs: the three artefacts, the files that lie beside them, a page that tells
# how, and the command's reference. scripts/windows --package makes it.
install(FILES "${PROJECT_SOURCE_DIR}/docs/windows.md" DESTINATION . RENAME README.md)
install(FILES "${PROJECT_SOURCE_DIR}/docs/hdiplot.md" DESTINATION .)

set(CPACK_GENERATOR ZIP)
set(CPACK_PACKAGE_NAME pdf-hdi)
set(CPACK_PACKAGE_FILE_NAME pdf-hdi-windows)
set(CPACK_INCLUDE_TOPLEVEL_DIRECTORY OFF)
set(CPACK_VERBATIM_VARIABLES ON)
include(CPack)
