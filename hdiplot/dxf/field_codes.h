// The codes of fields, which are the parts of a text that a CAD program fills in and may link:
// %<\AcVar Author \href "target#place#flag">%.
#pragma once

#include <string>
#include <string_view>

#include "hdiplot/dxf/name_decoder.h"

namespace hdiplot {

// What a field of that code leads to, its place behind a number sign. Empty: nothing.
[[nodiscard]] std::string LinkOfField(std::string_view code);

// Texts have the words of their fields, and the codes elsewhere. Where codes stand in the text itself, this
// puts the links, or dashes, in their place. What the first link leads to; empty: there is none.
[[nodiscard]] std::string ReplaceFieldCodes(std::string& utf8, Backslash backslash);

}  // namespace hdiplot
