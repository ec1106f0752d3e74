// Small DXF texts for the tests, and reading them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "hdiplot/model/drawing.h"

namespace dxf_writing {

// The groups of a short form: "0 LINE|8 WALLS|10 1.5" is three groups, each code before the first blank.
std::string Groups(std::string_view shortForm);

// A whole file around the content of its sections in short form; an empty one is left out.
std::string File(std::string_view header, std::string_view tables, std::string_view blocks,
                 std::string_view entities);

// Reads the text, or the bytes of a binary file, as a file "drawing.dxf" in a directory of its own.
hdiplot::Drawing Read(const std::string& text);

// What is wrong with the text when it is read strictly: FileError's message behind the file's name, such as
// "6: ...". Empty when nothing is.
std::string ErrorOf(const std::string& text);

// The messages on what is lost otherwise, likewise.
std::vector<std::string> LossesOf(const std::string& text);

}  // namespace dxf_writing
