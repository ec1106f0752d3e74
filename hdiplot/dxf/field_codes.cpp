#include "hdiplot/dxf/field_codes.h"

#include <algorithm>
#include <utility>

namespace hdiplot {
namespace {

constexpr std::string_view kOpening = R"(%<\)";
constexpr const char* kNoValue = "----";

// Of the code at the start of the text, with those within it; 0 when it does not end.
size_t LengthOfCode(std::string_view text) {
  size_t depth = 0;
  for (size_t at = 0; at + 1 < text.size(); ++at) {
    const std::string_view pair = text.substr(at, 2);
    if (pair != "%<" && pair != ">%") continue;
    depth = pair == "%<" ? depth + 1 : depth - 1;
    if (depth == 0) return at + pair.size();
    ++at;
  }
  return 0;
}

// What stands in quotes at the start of the text, where a backslash goes before quotes and backslashes.
std::string Unquoted(std::string_view text) {
  std::string value;
  if (!text.starts_with('"')) return value;
  for (size_t at = 1; at < text.size() && text[at] != '"'; ++at) {
    const bool isEscaped =
        text[at] == '\\' && at + 1 < text.size() && (text[at + 1] == '"' || text[at + 1] == '\\');
    value += text[isEscaped ? ++at : at];
  }
  return value;
}

std::string WithoutCodes(std::string_view text, Backslash backslash) {
  std::string plain;
  for (const char c : text) {
    if (backslash == Backslash::kStartsCode && (c == '\\' || c == '{' || c == '}')) plain += '\\';
    plain += c;
  }
  return plain;
}

}  // namespace

std::string LinkOfField(std::string_view code) {
  constexpr std::string_view kLink = R"(\href)";
  const size_t at = code.find(kLink);
  if (at == std::string_view::npos) return {};
  code.remove_prefix(at + kLink.size());
  std::string link = Unquoted(code.substr(std::min(code.find_first_not_of(' '), code.size())));
  // An address of one number sign has it for itself.
  const size_t flag = link.rfind('#');
  const size_t place = flag == 0 || flag == std::string::npos ? std::string::npos : link.rfind('#', flag - 1);
  if (place == std::string::npos) return link;
  return place == 0 || place + 1 == flag ? link.substr(0, place) : link.substr(0, flag);
}

std::string ReplaceFieldCodes(std::string& utf8, Backslash backslash) {
  std::string first;
  std::string shown;
  std::string_view rest = utf8;
  while (true) {
    const size_t start = std::min(rest.find(kOpening), rest.size());
    const size_t length = LengthOfCode(rest.substr(start));
    if (length == 0) break;
    const std::string link = LinkOfField(rest.substr(start, length));
    if (first.empty()) first = link;
    shown += rest.substr(0, start);
    shown += link.empty() ? kNoValue : WithoutCodes(link, backslash);
    rest.remove_prefix(start + length);
  }
  shown += rest;
  utf8 = std::move(shown);
  return first;
}

}  // namespace hdiplot
