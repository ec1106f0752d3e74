# What a host is built with: the headers of the border, hdi.pc and the CMake package "hdi", all relocatable.
include(CMakePackageConfigHelpers)

set(development DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/hdi" COMPONENT development)
foreach(name IN ITEMS border.h host_library.h records.h)
  # Installed, the headers include each other as <hdi/...>.
  set(source "${PROJECT_SOURCE_DIR}/platform/${name}")
  set(header "${PROJECT_BINARY_DIR}/include/hdi/${name}")
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${source}")
  file(READ "${source}" text)
  string(REPLACE "#include \"platform/" "#include \"hdi/" text "${text}")
  file(CONFIGURE OUTPUT "${header}" CONTENT "${text}" @ONLY)
  install(FILES "${header}" ${development})
endforeach()

# From lib/<triplet>/pkgconfig, and from lib/<triplet>/cmake/hdi.
set(package_directory "${CMAKE_INSTALL_LIBDIR}/cmake/hdi")
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX BASE_DIRECTORY "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig"
           OUTPUT_VARIABLE HDI_PREFIX_FROM_PKGCONFIG)
configure_file(cmake/hdi.pc.in hdi.pc @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/hdi.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" COMPONENT development)

set(HDI_INSTALLED_MODULE "${CMAKE_INSTALL_LIBDIR}/hdi/PDF.hdi")
configure_package_config_file(cmake/hdiConfig.cmake.in "${PROJECT_BINARY_DIR}/hdiConfig.cmake"
  INSTALL_DESTINATION "${package_directory}"
  PATH_VARS HDI_INSTALLED_MODULE CMAKE_INSTALL_INCLUDEDIR CMAKE_INSTALL_LIBDIR)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/hdiConfigVersion.cmake" COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/hdiConfig.cmake" "${PROJECT_BINARY_DIR}/hdiConfigVersion.cmake"
        DESTINATION "${package_directory}" COMPONENT development)

install(DIRECTORY examples/host DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/libhdi-dev/examples" COMPONENT development)
install(FILES docs/host.md DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/libhdi-dev" COMPONENT development)
