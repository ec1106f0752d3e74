// Small DXF texts for the tests, and reading them.
#pragma once

#include <string>
#include <string_view>

#include "host/hdiplot/dxf/drawing.h"

namespace dxf_writing {

// The groups of a short form: "0 LINE|8 WALLS|10 1.5" is three groups, each code before the first blank.
std::string Groups(std::string_view shortForm);

// Whole files around groups in short form: a section with them, or several sections, and the end.
std::string WithEntities(std::string_view entities);
std::string WithSections(std::string_view header, std::string_view tables, std::string_view blocks,
                         std::string_view entities);

// The file with a section OBJECTS at its end.
std::string WithObjects(std::string file, std::string_view objects);

// Reads the text as a file "drawing.dxf" in a directory of its own.
hdiplot::Drawing Read(const std::string& text);

// The first entity's shape, which has to be of that kind (std::get throws otherwise).
template <typename Kind>
Kind ReadFirst(std::string_view entities) {
  return std::get<Kind>(Read(WithEntities(entities)).entities.at(0).shape);
}

// What is wrong with the text: FileError's message without the directory, such as "drawing.dxf:6: ...".
// Empty when nothing is.
std::string ErrorOf(const std::string& text);

// A file with every kind of object that the reader knows.
std::string Specimen();

}  // namespace dxf_writing
