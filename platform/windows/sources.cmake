# platform/ on Windows.
target_sources(hdi_profile PRIVATE
  windows/environment.cpp
  windows/settings_file.cpp
  windows/unicode.cpp
  windows/whole_file.cpp
  windows/write_fully.cpp)

target_sources(hdi_font_faces PRIVATE
  windows/font_face_facts.cpp
  windows/font_face_glyph_data.cpp
  windows/font_face_glyphs.cpp
  windows/font_face_list.cpp
  windows/font_face_outline.cpp
  windows/font_faces.cpp
  windows/font_services.cpp
  windows/selected_font.cpp)
target_link_libraries(hdi_font_faces PUBLIC gdi32 user32)

target_sources(hdi_font_subsetter PRIVATE windows/font_subsetter.cpp)

target_sources(hdi_platform PRIVATE
  windows/companion_module.cpp
  windows/dialogs.cpp
  windows/files.cpp
  windows/memory.cpp
  windows/message_texts.cpp
  windows/records_check.cpp)
target_link_libraries(hdi_platform PUBLIC comdlg32 shell32 user32)
