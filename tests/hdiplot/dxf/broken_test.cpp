// Files that are no DXF, and DXF that is broken: what is said, and at which line. Group n stands on lines 2n
// - 1 and 2n.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "hdiplot/dxf/dxf_reader.h"
#include "hdiplot/system/errors.h"
#include "tests/hdiplot/dxf/dxf_writing.h"
#include "tests/support/font_files.h"
#include "tests/support/rows.h"
#include "tests/support/scratch.h"

namespace hdiplot {
namespace {

using dxf_writing::ErrorOf;
using dxf_writing::File;
using dxf_writing::Groups;
using testing::StartsWith;

TEST(Broken, FilesThatAreNoDxf) {
  using namespace std::string_literals;
  const std::pair<std::string, const char*> rows[] = {
      {"", " the file is empty"},
      {"AC1032\0\0\0\0\0"s, " this is a DWG drawing, no DXF"},
      {"%PDF-1.7\n%\xe2\xe3\n", " this is a PDF, no DXF"},
      {"\x89PNG\r\n\x1a\n\0\0"s, " this is a PNG image, no DXF"},
      {"PK\x03\x04\x14", " this is a zip archive, no DXF"},
      {"\xff\xfe"s + "0\0\n\0"s, " this is UTF-16 text"},
      {"Dear reader,\nthis is a letter.\n",
       "1: this is no DXF: the group code 0 should stand here, but it is \"Dear reader,\""},
      {"\x93\x17\xfa\0\x02"s, "1: this is no DXF: "},
      {"\n\n\n", "1: this is no DXF: "},
      {Groups("0 SECTION|2 ENTITIES|0 LINE") + "10\n1\0\n"s, "8: group 10 takes a number"},
      {Groups("0 SECTION|2 ENTITIES|0 LINE|8 A") + "10\n",
       "9: the file ends after the group code 10, without a value"},
      {Groups("0 SECTION|2 ENTITIES|0 LINE|8 A") + "  ", "9: the file is cut off: "},
      {Groups("0 SECTION|2 ENTITIES|0 LINE|8 A"),
       "8: the file is cut off: it ends here within the section \"ENTITIES\", without EOF"},
  };
  for (const auto& [text, message] : rows) EXPECT_THAT(ErrorOf(text), StartsWith(message));
  const scratch::Directory directory;
  Progress progress(ProgressDisplay::kOff);
  for (const std::string& file : {directory.Path(), directory.Path("there-is-no-such-file.dxf")}) {
    EXPECT_THROW(ReadDxf(file, Strictness::kForgiving, progress), FileError);
  }
}

TEST(Broken, GroupsAndValues) {
  const auto error = [](const std::string& group) {
    return ErrorOf(Groups("0 SECTION|2 ENTITIES|0 LINE|8 A") + group + "\n" +
                   Groups("20 0|11 1|21 1|0 ENDSEC|0 EOF"));
  };
  for (const char* code : {"ten", "10.5", "", "-1", "1072", "99999999999999999999"})
    EXPECT_THAT(error(std::string(code) + "\n1"), testing::MatchesRegex("9: .*group code.*")) << code;
  for (const char* number : {"", "1,5", "1.5 2", "0x10", "nan", "abc"})
    EXPECT_THAT(error("10\n" + std::string(number)), testing::MatchesRegex("10: .*a number.*")) << number;
  for (const char* number : {"inf", "1e308", "-1e999"})
    EXPECT_THAT(error("10\n" + std::string(number)), testing::MatchesRegex("10: .*too large.*")) << number;
  for (const char* number : {"red", "1.5", "4294967296"})
    EXPECT_THAT(error("62\n" + std::string(number)), testing::MatchesRegex("10: .*whole number.*")) << number;
  EXPECT_EQ(error("10\n1e-999"), "") << "too small is 0";
  EXPECT_EQ(error("10\n1\n62\n5.0"), "");

  const auto named = [](size_t length) {
    return ErrorOf(File("", "", "", "0 POINT|10 0|20 0|8 " + std::string(length, 'n')));
  };
  EXPECT_EQ(named(1000), "");
  EXPECT_EQ(named(1001), "12: this name has 1001 characters");
}

TEST(Broken, Structures) {
  for (const auto& [groups, message] : rows::Read("hdiplot/dxf/broken_structures.txt")) {
    EXPECT_EQ(ErrorOf(Groups(groups)), message) << groups;
  }
}

TEST(Broken, Entities) {
  for (const auto& [entity, message] : rows::Read("hdiplot/dxf/broken_entities.txt")) {
    EXPECT_EQ(ErrorOf(File("", "", "", entity)), message) << entity;
  }
}

TEST(Broken, DrawingsAreReadAsFarAsTheyCanBe) {
  for (const auto& [groups, expected] : rows::Read("hdiplot/dxf/forgiven.txt")) {
    const Drawing drawing = dxf_writing::Read(Groups(groups));
    std::string outcome = std::to_string(drawing.entities.size());
    for (const std::string& loss : dxf_writing::LossesOf(Groups(groups))) outcome += "; " + loss;
    EXPECT_EQ(outcome, expected) << groups;
  }
}

TEST(Broken, CutOffAnywhere) {
  const std::string text = font_files::Read(HDI_SOURCE_DIR "/tests/fuzz/corpus/drawing/specimen.dxf");
  EXPECT_EQ(ErrorOf(text), "");
  for (size_t length = 1; length < text.find("\nEOF"); length += 3) {
    const std::string error = ErrorOf(text.substr(0, length));
    const auto lines = 1 + std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(length), '\n');
    ASSERT_NE(error, "") << "cut at " << length;
    ASSERT_LE(std::stol(error), lines) << error;
  }
}

// Deep nesting and growth by powers must neither use up the stack nor the day.
TEST(Broken, DeepAndWideNestingEnds) {
  const auto block = [](int number, const char* groups) {
    return "0 BLOCK|2 B" + std::to_string(number) + "|0 INSERT|2 B" + std::to_string(number + 1) +
           "|10 0|20 0" + groups + "|0 ENDBLK|";
  };
  std::string chain;
  for (int i = 0; i < 20000; ++i) chain += block(i, "");
  EXPECT_EQ(ErrorOf(File("", "", chain, "")), "");
  std::string powers;
  for (int i = 0; i < 100; ++i) powers += block(i, "|70 100");
  powers += "0 BLOCK|2 B100|0 BODY|10 0|0 ENDBLK";
  const Drawing drawing = dxf_writing::Read(File("", "", powers, "0 INSERT|2 B0|10 0|20 0"));
  EXPECT_EQ(drawing.skipped.at("BODY"), UINT64_MAX);
}

}  // namespace
}  // namespace hdiplot
