// The command among other processes: standard streams that are closed, full or left by their reader, links at
// the places of files, and names that do not belong on a terminal.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <iterator>
#include <string>

#include "tests/hdiplot/command.h"

namespace {

using command::LineDrawing;
using command::Outcome;
using command::Workplace;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

class Process : public testing::Test {
 protected:
  Process() { place.Write("a.dxf", LineDrawing()); }

  [[nodiscard]] int Status(const std::string& words) const { return place.RunReal(words).status; }

  void ExpectWholePdf(const std::string& name) const {
    EXPECT_THAT(place.Read(name), StartsWith("%PDF-"));
    EXPECT_THAT(place.Read(name), EndsWith("%%EOF\r\n"));
  }

  Workplace place;
};

TEST_F(Process, ClosedStreamsDoNotBecomeTheOutput) {
  EXPECT_EQ(Status("a.dxf -v -o a.pdf --record a.jsonl <&- >&- 2>&-"), 0);
  ExpectWholePdf("a.pdf");
  EXPECT_EQ(Status("a.jsonl --results -o b.pdf <&- >&- 2>&-"), 0);
  ExpectWholePdf("b.pdf");
}

TEST_F(Process, AFullStandardOutputIsReportedBehindThePlot) {
  command::ExpectFailure(place.RunReal("a.dxf -o a.pdf >/dev/full"), "standard output: cannot be written", 1);
  ExpectWholePdf("a.pdf");
  EXPECT_EQ(Status("a.dxf -q -o b.pdf >/dev/full"), 0) << "nothing was to be printed";
  EXPECT_EQ(Status("--help >/dev/full 2>/dev/null"), 2);
  EXPECT_EQ(Status("--list-papers >/dev/full 2>/dev/null"), 2);
  EXPECT_EQ(Status("missing.dxf 2>/dev/full"), 2);
  EXPECT_EQ(Status("a.dxf -v -o c.pdf >/dev/null 2>/dev/full"), 0);
  EXPECT_EQ(Status("a.dxf -o d.pdf 2>/dev/null | true"), 0) << "the status of true";
  ExpectWholePdf("d.pdf");
}

// The PDF is within the limit of 512 times 100 bytes, as its lines are packed.
TEST_F(Process, ARecordWithoutRoomIsReportedBehindThePlot) {
  std::string lines;
  for (int i = 0; i < 2000; ++i) lines += "0\nLINE\n10\n0\n20\n0\n11\n10\n21\n5\n";
  place.Write("many.dxf", "0\nSECTION\n2\nENTITIES\n" + lines + "0\nENDSEC\n0\nEOF\n");
  const Outcome outcome =
      place.RunReal("many.dxf -q -o many.pdf --record many.jsonl", "trap '' XFSZ; ulimit -f 100;");
  command::ExpectFailure(outcome, "many.jsonl: cannot be written: File too large", 1);
  ExpectWholePdf("many.pdf");
  EXPECT_FALSE(place.Has("many.jsonl"));
}

TEST_F(Process, ARecordFollowsLinks) {
  std::filesystem::create_directory(place.Path("sub"));
  std::filesystem::create_symlink("sub/real.jsonl", place.Path("link.jsonl"));
  EXPECT_EQ(Status("a.dxf -o a.pdf --record link.jsonl"), 0);
  EXPECT_TRUE(std::filesystem::is_symlink(place.Path("link.jsonl")));
  EXPECT_THAT(place.Read("sub/real.jsonl"), HasSubstr("DevStartPage"));
}

TEST_F(Process, WhatIsLeftOutIsCountedAndPrintedClean) {
  place.Write("odd\x1b[1m.dxf",
              "0\nSECTION\n2\nENTITIES\n0\nLINE\n8\n0\n10\n-1e15\n20\n0\n11\n1e15\n21\n0\n"
              "0\nCIRCLE\n8\n0\n10\n0\n20\n0\n40\n1e15\n0\nTYP\x1b[2m" +
                  std::string(90, 'E') + "\n8\n0\n0\nENDSEC\n0\nEOF\n");
  const Outcome outcome =
      place.RunReal("'odd\x1b[1m.dxf' -o out.pdf --scale 1:1 --layer 0 --skip-layer none");
  EXPECT_EQ(outcome.status, 0);
  EXPECT_THAT(outcome.err, HasSubstr("odd?[1m.dxf: cut off: at this scale it is 2000000000000000 x"));
  EXPECT_THAT(outcome.out, StartsWith("out.pdf: 1 page, 1 object, ")) << "the line is cut";
  EXPECT_THAT(outcome.out,
              EndsWith("\nskipped: 1 TYP?[2m" + std::string(33, 'E') + "..., 1 too far off the sheet\n"));
  const std::string several = place.RunReal("a.dxf 'odd\x1b[1m.dxf' -o out.pdf --scale 1:1").out;
  EXPECT_THAT(several, HasSubstr("\nskipped in odd?[1m.dxf: 1 TYP?[2m"));
}

TEST_F(Process, ABatchPlotsEachDrawingToAFileOfItsOwn) {
  place.Write("b.dxf", LineDrawing("20"));
  place.Write("bad.dxf", "nothing\n");
  const Outcome all = place.RunReal("--each --output-dir out --jobs 2 a.dxf b.dxf bad.dxf");
  EXPECT_EQ(all.status, 1);
  EXPECT_THAT(all.out, HasSubstr("out/a.pdf: 1 page, 1 object"));
  EXPECT_THAT(all.out, EndsWith("\n2 plotted, 1 failed\n"));
  EXPECT_THAT(all.err, StartsWith("hdiplot: bad.dxf:1: "));
  for (const char* name : {"out/a.pdf", "out/b.pdf"}) ExpectWholePdf(name);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(place.Path("out")), {}), 2);

  place.Write("b.dxf", LineDrawing("30"));
  std::filesystem::last_write_time(place.Path("b.dxf"),
                                   std::filesystem::file_time_type::clock::now() + std::chrono::hours(1));
  EXPECT_THAT(place.RunReal("--each --newer --output-dir out a.dxf b.dxf").out,
              EndsWith("1 plotted, 1 up to date\n"));
  command::ExpectFailure(place.RunReal("--each out/../a.dxf a.dxf"), "like another drawing");
}

TEST_F(Process, ADwgIsPlottedByWayOfAConverter) {
  place.Write("plan.dwg", "AC1032 and more");
  place.Write("convert", "#!/bin/sh\ncp a.dxf \"$1\" && test -s \"$2\"\n");
  place.Write("refuse", "#!/bin/sh\necho unknown version >&2\nexit 3\n");
  for (const char* script : {"convert", "refuse"}) {
    std::filesystem::permissions(place.Path(script), std::filesystem::perms::owner_all);
  }
  std::filesystem::create_directory(place.Path("temporary"));
  const std::string in = "TMPDIR=temporary ";
  EXPECT_EQ(place.RunReal("plan.dwg --dwg-converter './convert {out} {in}'", in).status, 0);
  ExpectWholePdf("plan.pdf");
  EXPECT_EQ(place.RunReal("plan.dwg --list", in + "HDI_DWG_CONVERTER='./convert {out} {in}'").status, 0);
  command::ExpectFailure(place.RunReal("plan.dwg --dwg-converter './refuse {out} {in}'", in),
                         "made no DXF: unknown version");
  command::ExpectFailure(place.RunReal("plan.dwg --dwg-converter ./convert"), "{in} and {out}");
  command::ExpectFailure(place.RunReal("plan.dwg", "PATH=/nowhere"), "install LibreDWG");
  // The driver has a directory of its own there.
  for (const auto& left : std::filesystem::directory_iterator(place.Path("temporary"))) {
    EXPECT_THAT(left.path().filename().string(), testing::Not(StartsWith("hdiplot-")));
  }
}

}  // namespace
