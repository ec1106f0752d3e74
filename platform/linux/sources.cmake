# platform/ on Linux.
find_package(ICU REQUIRED COMPONENTS uc)
find_package(PkgConfig REQUIRED)
pkg_check_modules(HARFBUZZ REQUIRED IMPORTED_TARGET harfbuzz harfbuzz-subset)
pkg_check_modules(HDI_FONTS REQUIRED IMPORTED_TARGET fontconfig freetype2)

target_sources(hdi_profile PRIVATE
  linux/descriptor.cpp
  linux/environment.cpp
  linux/settings_file.cpp
  linux/unicode.cpp
  linux/whole_file.cpp)
target_link_libraries(hdi_profile PUBLIC ICU::uc)

target_sources(hdi_font_faces PRIVATE
  linux/font_candidates.cpp
  linux/font_face_list.cpp
  linux/font_file.cpp
  linux/font_glyphs.cpp
  linux/font_matching.cpp
  linux/font_member.cpp
  linux/font_patterns.cpp
  linux/font_services.cpp)
target_link_libraries(hdi_font_faces PUBLIC PkgConfig::HDI_FONTS)

target_sources(hdi_font_subsetter PRIVATE
  linux/character_map.cpp
  linux/descriptive_tables.cpp
  linux/font_subsetter.cpp
  linux/glyph_copies.cpp)
target_link_libraries(hdi_font_subsetter PUBLIC PkgConfig::HARFBUZZ)

target_sources(hdi_platform PRIVATE
  linux/companion_module.cpp
  linux/dialogs.cpp
  linux/files.cpp
  linux/memory.cpp
  linux/message_texts.cpp
  linux/process.cpp
  linux/prompts.cpp)
target_link_libraries(hdi_platform PUBLIC ${CMAKE_DL_LIBS})
