#include "hdiplot/dxf/field_links.h"

#include <algorithm>
#include <set>
#include <string_view>
#include <utility>

namespace hdiplot {
namespace {

constexpr std::string_view kOpening = R"(%<\)";
constexpr const char* kNoValue = "----";

// Of the code at the start of the text, including nested ones; 0 if it has no end.
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

// The quoted string at the start of the text. A backslash escapes quotes and backslashes.
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

std::string Escaped(std::string_view text, Backslash backslash) {
  std::string escaped;
  for (const char c : text) {
    if (backslash == Backslash::kStartsCode && (c == '\\' || c == '{' || c == '}')) escaped += '\\';
    escaped += c;
  }
  return escaped;
}

// Searched for one text, since many texts could share very many.
constexpr size_t kMostNodes = 1000;

bool IsHandle(const Group& group) { return group.code == 350 || group.code == 360; }

std::vector<std::string> FieldEntries(const DxfObject& dictionary) {
  std::vector<std::string> handles;
  for (size_t i = 1; i < dictionary.groups.size(); ++i) {
    const Group& name = dictionary.groups[i - 1];
    const bool isField = name.code == 3 && (name.Value() == "ACAD_FIELD" || name.Value() == "TEXT");
    if (isField && IsHandle(dictionary.groups[i])) handles.push_back(HandleKey(dictionary.groups[i].Value()));
  }
  return handles;
}

// A long code continues in the groups 3 after group 2, which may split characters.
std::string CodeOf(const DxfObject& field) {
  std::string code;
  auto group = std::ranges::find(field.groups, 2, &Group::code);
  if (group == field.groups.end()) return code;
  do {
    code += group->Raw();
  } while (++group != field.groups.end() && group->code == 3);
  return code;
}

}  // namespace

std::string LinkOfField(std::string_view code) {
  constexpr std::string_view kLink = R"(\href)";
  const size_t at = code.find(kLink);
  if (at == std::string_view::npos) return {};
  code.remove_prefix(at + kLink.size());
  std::string link = Unquoted(code.substr(std::min(code.find_first_not_of(' '), code.size())));
  // A leading number sign is part of the target.
  const size_t flag = link.rfind('#');
  const size_t place = flag == 0 || flag == std::string::npos ? std::string::npos : link.rfind('#', flag - 1);
  if (place == std::string::npos) return link;
  return place == 0 || place + 1 == flag ? link.substr(0, place) : link.substr(0, flag);
}

std::string ReplaceFieldCodes(std::string& utf8, Backslash backslash) {
  std::string first;
  if (utf8.find(kOpening) == std::string::npos) return first;
  std::string shown;
  std::string_view rest = utf8;
  while (true) {
    const size_t start = std::min(rest.find(kOpening), rest.size());
    const size_t length = LengthOfCode(rest.substr(start));
    if (length == 0) break;
    const std::string link = LinkOfField(rest.substr(start, length));
    if (first.empty()) first = link;
    shown += rest.substr(0, start);
    shown += link.empty() ? kNoValue : Escaped(link, backslash);
    rest.remove_prefix(start + length);
  }
  shown += rest;
  utf8 = std::move(shown);
  return first;
}

void FieldLinks::Add(const DxfObject& object) {
  const Group* handle = object.Find(5);
  if (handle == nullptr) return;
  Node node;
  if (object.type == "DICTIONARY") {
    node.children = FieldEntries(object);
  } else if (object.type == "FIELD") {
    node.link = LinkOfField(decoder_.DecodeText(CodeOf(object), Backslash::kItself));
    for (const Group& group : object.groups) {
      if (group.code == 360) node.children.push_back(HandleKey(group.Value()));
    }
  }
  const bool isUseful = !node.link.empty() || !node.children.empty();
  if (isUseful) nodes_[HandleKey(handle->Value())] = std::move(node);
}

std::string FieldLinks::Find(std::string_view dictionary) const {
  std::vector<std::string> open{HandleKey(dictionary)};
  std::set<std::string> seen;
  while (!open.empty() && seen.size() < kMostNodes) {
    const std::string handle = std::move(open.back());
    open.pop_back();
    const auto node = nodes_.find(handle);
    if (node == nodes_.end() || !seen.insert(handle).second) continue;
    if (!node->second.link.empty()) return node->second.link;
    open.insert(open.end(), node->second.children.rbegin(), node->second.children.rend());
  }
  return {};
}

}  // namespace hdiplot
