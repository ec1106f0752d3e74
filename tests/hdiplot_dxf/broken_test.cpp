// Files that are no DXF, and DXF that is broken: what is said, and at which line. Group n stands on lines
// 2n-1 and 2n; in a file with entities alone, the entities' groups start with the third.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "host/hdiplot/dxf/dxf_reader.h"
#include "host/hdiplot/errors.h"
#include "tests/hdiplot_dxf/dxf_writing.h"

namespace hdiplot {
namespace {

using dxf_writing::ErrorOf;
using dxf_writing::Groups;
using dxf_writing::Specimen;
using dxf_writing::WithEntities;
using dxf_writing::WithSections;

// An error at the line (none for 0) whose message holds the words.
void ExpectError(const std::string& text, size_t line, const std::string& words) {
  const std::string error = ErrorOf(text);
  const std::string start = "drawing.dxf:" + (line == 0 ? "" : std::to_string(line) + ":") + " ";
  EXPECT_TRUE(error.starts_with(start)) << "line " << line << " expected, but: " << error;
  EXPECT_NE(error.find(words), std::string::npos) << error;
}

TEST(Broken, FilesThatAreNoDxf) {
  using namespace std::string_literals;
  ExpectError("", 0, "empty");
  ExpectError("Some CAD Binary DXF\r\n\x1a\0\0\0SECTION"s, 0, "binary DXF");
  ExpectError("AC1032\0\0\0\0\0"s, 0, "DWG");
  ExpectError("%PDF-1.7\n%\xe2\xe3\n", 0, "PDF");
  ExpectError("\x89PNG\r\n\x1a\n\0\0"s, 0, "PNG");
  ExpectError("PK\x03\x04\x14", 0, "zip");
  ExpectError("\xff\xfe"s + "0\0\n\0"s, 0, "UTF-16");
  ExpectError("Dear reader,\nthis is a letter.\n", 1, "no DXF");
  ExpectError("\x93\x17\xfa\0\x02"s, 1, "no DXF");
  ExpectError("\n\n\n", 1, "no DXF");
  ExpectError(Groups("0 SECTION|2 ENTITIES|0 LINE") + "10\n1\0\n"s, 8, "zero byte");

  const std::filesystem::path directory = std::filesystem::temp_directory_path();
  EXPECT_THROW(ReadDxf(directory), FileError);
  EXPECT_THROW(ReadDxf(directory / "there-is-no-such-file.dxf"), FileError);
}

TEST(Broken, GroupsAndValues) {
  const std::string start = Groups("0 SECTION|2 ENTITIES|0 LINE|8 A");
  const std::string end = Groups("20 0|11 1|21 1|0 ENDSEC|0 EOF");
  const auto broken = [&](const std::string& group) { return start + group + end; };
  for (const char* code : {"ten", "10.5", "", "-1", "1072", "99999999999999999999"})
    ExpectError(broken(std::string(code) + "\n1\n"), 9, "group code");
  for (const char* number : {"", "1,5", "1.5 2", "0x10", "nan", "abc"})
    ExpectError(broken("10\n" + std::string(number) + "\n"), 10, "a number");
  for (const char* number : {"inf", "1e308", "-1e999"})
    ExpectError(broken("10\n" + std::string(number) + "\n"), 10, "too large");
  for (const char* number : {"red", "1.5", "4294967296"})
    ExpectError(broken("62\n" + std::string(number) + "\n"), 10, "whole number");
  ExpectError(broken("10\n" + std::string(600, '1') + "\n"), 10, "600 characters");
  EXPECT_EQ(ErrorOf(broken("10\n1e-999\n")), "") << "too small is 0";
  EXPECT_EQ(ErrorOf(broken("10\n1\n62\n5.0\n")), "");
}

TEST(Broken, CutOffAnywhere) {
  const std::string text = Specimen();
  const size_t eof = text.find("EOF");
  for (size_t length = 1; length < eof + 2; length += 3) {
    const auto lines = 1 + std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(length), '\n');
    const std::string error = ErrorOf(text.substr(0, length));
    ASSERT_TRUE(error.starts_with("drawing.dxf:")) << "cut at " << length << ": " << error;
    const long line = std::stol(error.substr(std::string("drawing.dxf:").size()));
    ASSERT_LE(line, lines) << error;
  }
  ExpectError(Groups("0 SECTION|2 ENTITIES|0 LINE|8 A") + "10\n", 9, "without a value");
  ExpectError(Groups("0 SECTION|2 ENTITIES|0 LINE|8 A"), 8, "cut off");
  ExpectError(Groups("0 SECTION|2 ENTITIES|0 LINE|8 A") + "  ", 9, "cut off");
}

struct Case {
  const char* groups;
  size_t line;
  const char* words;
};

TEST(Broken, Nesting) {
  const Case cases[] = {
      {"0 LINE|10 0", 2, "outside of any section"},
      {"0 SECTION|2 ENTITIES|0 ENDSEC|0 LINE|0 EOF", 8, "outside of any section"},
      {"0 ENDSEC|0 EOF", 2, "without a section"},
      {"0 SECTION|0 ENDSEC|0 EOF", 3, "name"},
      {"0 SECTION|2 ENTITIES|0 EOF", 6, "no ENDSEC"},
      {"0 SECTION|2 ENTITIES|8 A|0 ENDSEC|0 EOF", 5, "group 0"},
      {"0 SECTION|2 HEADER|70 1|0 ENDSEC|0 EOF", 5, "group 9"},
      {"0 SECTION|2 TABLES|0 LAYER|2 A|0 ENDSEC", 6, "outside of any table"},
      {"0 SECTION|2 TABLES|0 TABLE|2 LAYER|0 ENDSEC|0 EOF", 10, "no ENDTAB"},
      {"0 SECTION|2 BLOCKS|0 LINE|10 0|0 ENDSEC", 6, "outside of any block"},
      {"0 SECTION|2 BLOCKS|0 BLOCK|2 A|0 ENDSEC|0 EOF", 10, "no ENDBLK"},
      {"0 SECTION|2 BLOCKS|0 BLOCK|8 A|0 ENDBLK", 6, "no name"},
      {"0 SECTION|2 BLOCKS|0 BLOCK|2 A|0 ENDBLK|0 BLOCK|2 a|0 ENDBLK|0 ENDSEC", 12, "already"},
      {"0 SECTION|2 BLOCKS|0 BLOCK|2 A|0 POLYLINE|66 1|0 ENDBLK|0 ENDSEC", 10, "no SEQEND"},
      {"0 SECTION|2 ENTITIES|0 POLYLINE|66 1|0 VERTEX|10 0|20 0|0 LINE|0 ENDSEC", 6, "no SEQEND"},
      {"0 SECTION|2 ENTITIES|0 VERTEX|10 0|20 0|0 ENDSEC", 6, "without a POLYLINE"},
      {"0 SECTION|2 ENTITIES|0 ENDBLK|0 ENDSEC", 6, "outside of the section BLOCKS"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.groups);
    ExpectError(Groups(c.groups), c.line, c.words);
  }
}

TEST(Broken, Entities) {
  const Case cases[] = {
      {"0 LINE|10 0|20 0|11 1", 6, "no group 21"},
      {"0 CIRCLE|10 0|20 0|40 -1", 12, "negative radius"},
      {"0 INSERT|2 A|10 0|20 0|70 40000", 14, "40000 columns"},
      {"0 LWPOLYLINE|90 3|10 0|20 0|10 1|20 1", 8, "there are 2"},
      {"0 LWPOLYLINE|90 2|10 0|20 0|10 1", 6, "one coordinate"},
      {"0 SPLINE|71 3|72 9|73 4|40 0|40 1", 10, "there are 2"},
      {"0 SPLINE|71 3|10 0|20 0|10 1|20 1", 6, "needs 4 control points"},
      {"0 SPLINE|71 1|40 0|40 0|40 1|10 0|20 0|10 1|20 1", 6, "needs 4 knots"},
      {"0 SPLINE|71 1|40 0|40 2|40 1|40 1|10 0|20 0|10 1|20 1", 6, "not in order"},
      {"0 SPLINE|71 1|40 1|40 1|40 1|40 1|10 0|20 0|10 1|20 1", 6, "no length"},
      {"0 SPLINE|71 1|10 0|20 0|41 1|10 1|20 1|41 0", 6, "weight"},
      {"0 TEXT|20 0|40 1|1 a", 6, "no group 10"},
      {"0 MTEXT|10 0|40 1|1 a", 6, "no group 20"},
      {"0 INSERT|66 1|2 A|10 0|20 0|0 ATTRIB|1 a|70 1|0 SEQEND", 16, "no group 10"},
      {"0 LEADER|76 100000|10 0|20 0", 8, "there are 1"},
      {"0 POLYLINE|70 16|71 2|72 2|0 VERTEX|10 0|20 0|0 SEQEND", 6, "2 by 2"},
      {"0 POLYLINE|70 64|0 VERTEX|10 0|20 0|70 192|0 VERTEX|70 128|71 1|72 2|0 SEQEND", 18, "corner 2"},
      {"0 HATCH|91 2|92 2|93 1|10 0|20 0|97 0", 18, "ends where group 92"},
      {"0 HATCH|91 1|92 2|93 3|10 0|20 0|10 1|20 1|97 0", 21, "group 97 where group 10"},
      {"0 HATCH|91 1|92 2|93 1|10 0|20 0|92 2", 17, "more boundary paths"},
      {"0 HATCH|91 1000000000|92 2", 8, "says 1000000000"},
      {"0 HATCH|91 1|92 1|93 1|72 1|10 0|20 0|21 0|11 0", 19, "group 21 where group 11"},
      {"0 HATCH|70 0|91 0|78 1|53 0|43 0|44 0|45 0|46 1|79 2|49 1", 24, "fewer follow"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.groups);
    ExpectError(WithEntities(c.groups), c.line, c.words);
  }
  const std::string longName(2000, 'n');
  ExpectError(WithEntities("0 POINT|8 " + longName + "|10 0|20 0"), 8, "2000 characters");
}

TEST(Broken, BlocksThatContainThemselves) {
  const auto blocks = [](const char* text) { return WithSections("", "", text, ""); };
  ExpectError(blocks("0 BLOCK|2 A|0 INSERT|2 a|10 0|20 0|0 ENDBLK"), 10, "\"A\" contains itself");
  ExpectError(
      blocks("0 BLOCK|2 A|0 INSERT|2 B|10 0|20 0|0 ENDBLK|0 BLOCK|2 B|0 INSERT|2 A|60 1|10 0|20 0|0 ENDBLK"),
      24, "contains itself");
  ExpectError(blocks("0 BLOCK|2 *D1|0 DIMENSION|2 *D1|0 ENDBLK"), 10, "contains itself");
  EXPECT_EQ(ErrorOf(blocks(
                "0 BLOCK|2 A|0 INSERT|2 B|10 0|20 0|0 INSERT|2 B|10 0|20 0|0 ENDBLK|0 BLOCK|2 B|0 ENDBLK")),
            "");
}

// Deep nesting and growth by powers must neither use up the stack nor the day.
TEST(Broken, DeepAndWideNestingEnds) {
  std::string chain;
  std::string powers;
  for (int i = 0; i < 20000; ++i) {
    chain +=
        "0 BLOCK|2 B" + std::to_string(i) + "|0 INSERT|2 B" + std::to_string(i + 1) + "|10 0|20 0|0 ENDBLK|";
  }
  for (int i = 0; i < 100; ++i) {
    powers += "0 BLOCK|2 B" + std::to_string(i) + "|0 INSERT|2 B" + std::to_string(i + 1) +
              "|10 0|20 0|70 100|0 ENDBLK|";
  }
  EXPECT_EQ(ErrorOf(WithSections("", "", chain, "")), "");
  powers += "0 BLOCK|2 B100|0 XLINE|10 0|0 ENDBLK";
  const Drawing drawing = dxf_writing::Read(WithSections("", "", powers, "0 INSERT|2 B0|10 0|20 0"));
  EXPECT_EQ(drawing.skipped.at("XLINE"), UINT64_MAX);
}

}  // namespace
}  // namespace hdiplot
