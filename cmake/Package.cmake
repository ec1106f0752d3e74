# Debian packages of an installed build: hdiplot, with the driver and the support library, and libhdi-dev.
# scripts/package makes them; the dependencies are what dpkg-shlibdeps finds.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME hdiplot)
set(CPACK_PACKAGE_VENDOR "the PDF.hdi authors")
set(CPACK_PACKAGE_CONTACT "the PDF.hdi authors <maintainers@pdf-hdi.example>")
set(CPACK_COMPONENTS_ALL hdiplot development)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGING_INSTALL_PREFIX "${CMAKE_INSTALL_PREFIX}")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_DEBIAN_HDIPLOT_PACKAGE_NAME hdiplot)
set(CPACK_DEBIAN_HDIPLOT_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_HDIPLOT_PACKAGE_DEPENDS "hershey-fonts-data")
set(CPACK_DEBIAN_HDIPLOT_PACKAGE_RECOMMENDS "fonts-dejavu-core, fonts-liberation")
set(CPACK_DEBIAN_HDIPLOT_DESCRIPTION
"Plots DXF drawings to compact PDF files with searchable text, layers, links
and a measure scale, through the output driver PDF.hdi.")
set(CPACK_DEBIAN_HDIPLOT_PACKAGE_CONTROL_EXTRA "${PROJECT_BINARY_DIR}/debian/triggers")
file(WRITE "${PROJECT_BINARY_DIR}/debian/triggers" "activate-noawait ldconfig\n")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libhdi-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SHLIBDEPS OFF)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "hdiplot (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION
"Headers, a pkg-config file and a CMake package for programs that load the
driver PDF.hdi and plot through it, with a complete example host.")

# Debian's files about a package.
foreach(package IN ITEMS hdiplot libhdi-dev)
  set(component hdiplot)
  if(package STREQUAL "libhdi-dev")
    set(component development)
  endif()
  set(documents "${CMAKE_INSTALL_DATADIR}/doc/${package}")
  configure_file(cmake/debian/changelog.in "debian/${package}/changelog" @ONLY)
  add_custom_command(
    OUTPUT "${PROJECT_BINARY_DIR}/debian/${package}/changelog.gz"
    COMMAND gzip -9nkf "${PROJECT_BINARY_DIR}/debian/${package}/changelog"
    DEPENDS "${PROJECT_BINARY_DIR}/debian/${package}/changelog"
    VERBATIM)
  list(APPEND changelogs "${PROJECT_BINARY_DIR}/debian/${package}/changelog.gz")
  install(FILES "${PROJECT_BINARY_DIR}/debian/${package}/changelog.gz" DESTINATION "${documents}" COMPONENT ${component})
  install(FILES cmake/debian/copyright DESTINATION "${documents}" COMPONENT ${component})
endforeach()
add_custom_target(hdi_changelogs ALL DEPENDS ${changelogs})

include(CPack)
