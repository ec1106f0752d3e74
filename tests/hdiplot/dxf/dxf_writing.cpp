#include "tests/hdiplot/dxf/dxf_writing.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "hdiplot/dxf/dxf_reader.h"
#include "hdiplot/system/errors.h"
#include "tests/support/scratch.h"

namespace dxf_writing {
namespace {

std::string Section(std::string_view name, std::string_view content) {
  if (content.empty()) return "";
  return Groups("0 SECTION|2 " + std::string(name)) + Groups(content) + Groups("0 ENDSEC");
}

hdiplot::Drawing ReadFile(const std::string& file, hdiplot::Strictness strictness) {
  hdiplot::Progress progress(hdiplot::ProgressDisplay::kOff);
  return hdiplot::ReadDxf(file, strictness, progress);
}

std::string BehindName(const std::string& message) {
  constexpr std::string_view kName = "drawing.dxf:";
  const size_t at = message.find(kName);
  EXPECT_NE(at, std::string::npos) << message;
  return at == std::string::npos ? message : message.substr(at + kName.size());
}

}  // namespace

std::string Groups(std::string_view shortForm) {
  std::string text;
  while (!shortForm.empty()) {
    const std::string_view group = shortForm.substr(0, shortForm.find('|'));
    shortForm.remove_prefix(std::min(group.size() + 1, shortForm.size()));
    const size_t blank = std::min(group.find(' '), group.size());
    text.append(group.substr(0, blank)).append("\n");
    text.append(group.substr(std::min(blank + 1, group.size()))).append("\n");
  }
  return text;
}

std::string File(std::string_view header, std::string_view tables, std::string_view blocks,
                 std::string_view entities) {
  return Section("HEADER", header) + Section("TABLES", tables) + Section("BLOCKS", blocks) +
         Section("ENTITIES", entities) + Groups("0 EOF");
}

hdiplot::Drawing Read(const std::string& text) {
  const scratch::Directory directory;
  return ReadFile(directory.Write("drawing.dxf", text), hdiplot::Strictness::kForgiving);
}

std::string ErrorOf(const std::string& text) {
  const scratch::Directory directory;
  const std::string file = directory.Write("drawing.dxf", text);
  try {
    (void)ReadFile(file, hdiplot::Strictness::kStrict);
  } catch (const hdiplot::FileError& error) {
    return BehindName(error.what());
  }
  return "";
}

std::vector<std::string> LossesOf(const std::string& text) {
  std::vector<std::string> losses;
  for (const std::string& loss : Read(text).losses) losses.push_back(BehindName(loss));
  return losses;
}

}  // namespace dxf_writing
