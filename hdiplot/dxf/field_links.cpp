#include "hdiplot/dxf/field_links.h"

#include <set>

#include "hdiplot/dxf/field_codes.h"
#include "hdiplot/system/ascii_case.h"

namespace hdiplot {
namespace {

// Of one text; a file could let many texts share very many.
constexpr size_t kMostNodes = 1000;

bool IsHandle(const Group& group) { return group.code == 350 || group.code == 360; }

std::vector<std::string> FieldEntries(const DxfObject& dictionary) {
  std::vector<std::string> handles;
  for (size_t i = 1; i < dictionary.groups.size(); ++i) {
    const Group& name = dictionary.groups[i - 1];
    const bool isField = name.code == 3 && (name.Value() == "ACAD_FIELD" || name.Value() == "TEXT");
    if (isField && IsHandle(dictionary.groups[i])) handles.push_back(UpperCase(dictionary.groups[i].Value()));
  }
  return handles;
}

// It goes on in groups 3 right behind its group 2, cut without regard to characters.
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

void FieldLinks::Add(const DxfObject& object) {
  const Group* handle = object.Find(5);
  if (handle == nullptr) return;
  Node node;
  if (object.type == "DICTIONARY") {
    node.children = FieldEntries(object);
  } else if (object.type == "FIELD") {
    node.link = LinkOfField(names_.DecodeText(CodeOf(object), Backslash::kItself));
    for (const Group& group : object.groups) {
      if (group.code == 360) node.children.push_back(UpperCase(group.Value()));
    }
  }
  const bool isOfUse = !node.link.empty() || !node.children.empty();
  if (isOfUse) nodes_[UpperCase(handle->Value())] = std::move(node);
}

std::string FieldLinks::Find(std::string_view dictionary) const {
  std::vector<std::string> open{UpperCase(dictionary)};
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
