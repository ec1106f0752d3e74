// The command among other processes: standard streams that are closed, full or left by their reader, links
// and pipes at the places of files, and names that do not belong on a terminal.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "tests/hdiplot/command.h"

namespace {

using command::Outcome;
using command::Workplace;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* kDrawing =
    "0\nSECTION\n2\nENTITIES\n0\nLINE\n8\n0\n10\n0\n20\n0\n11\n10\n21\n5\n0\nENDSEC\n0\nEOF\n";

class Process : public testing::Test {
 protected:
  Process() { place.Write("a.dxf", kDrawing); }

  // The status of `$HDIPLOT` followed by the arguments and redirections, by the shell in the workplace.
  [[nodiscard]] int Shell(const std::string& arguments) const {
    const std::string command =
        "cd '" + place.Path("").string() +
        "' && HDI_MODULE='" HDI_DRIVER_PATH "' HDI_USER_DIR=user '" HDI_HDIPLOT_PATH "' " + arguments;
    const int state = std::system(command.c_str());
    return WIFEXITED(state) ? WEXITSTATUS(state) : -1;
  }

  void ExpectWholePdf(const std::string& name) const {
    EXPECT_THAT(place.Read(name), StartsWith("%PDF-"));
    EXPECT_THAT(place.Read(name), EndsWith("%%EOF\r\n"));
  }

  Workplace place;
};

TEST_F(Process, ClosedStreamsDoNotBecomeTheOutput) {
  EXPECT_EQ(Shell("a.dxf -v -o a.pdf --record a.jsonl <&- >&- 2>&-"), 0);
  ExpectWholePdf("a.pdf");
  EXPECT_EQ(Shell("a.jsonl --results -o b.pdf <&- >&- 2>&-"), 0);
  ExpectWholePdf("b.pdf");
}

TEST_F(Process, AFullStandardOutputIsReportedBehindThePlot) {
  EXPECT_EQ(Shell("a.dxf -o a.pdf >/dev/full 2>err"), 1);
  EXPECT_EQ(place.Read("err"), "hdiplot: standard output: cannot be written\n");
  ExpectWholePdf("a.pdf");
  EXPECT_EQ(Shell("a.dxf -q -o b.pdf >/dev/full"), 0) << "nothing was to be printed";
  EXPECT_EQ(Shell("--help >/dev/full 2>/dev/null"), 2);
  EXPECT_EQ(Shell("missing.dxf 2>/dev/full"), 2);
  EXPECT_EQ(Shell("a.dxf -v -o c.pdf >/dev/null 2>/dev/full"), 0);
  EXPECT_EQ(Shell("a.dxf -o d.pdf 2>/dev/null | true"), 0) << "the status of true";
  ExpectWholePdf("d.pdf");
}

TEST_F(Process, ARecordFollowsLinksAndReplacesFilesOnly) {
  std::filesystem::create_directory(place.Path("sub"));
  std::filesystem::create_symlink("sub/real.jsonl", place.Path("link.jsonl"));
  EXPECT_EQ(place.RunReal({"a.dxf", "-o", "a.pdf", "--record", "link.jsonl"}).status, 0);
  EXPECT_TRUE(std::filesystem::is_symlink(place.Path("link.jsonl")));
  EXPECT_THAT(place.Read("sub/real.jsonl"), HasSubstr("DevStartPage"));

  std::filesystem::create_symlink("b.pdf", place.Path("trap.jsonl"));
  const Outcome trap = place.RunReal({"a.dxf", "-o", "b.pdf", "--record", "trap.jsonl"});
  EXPECT_THAT(trap.err, HasSubstr("is the output and the record"));
  mkfifo(place.Path("pipe.jsonl").c_str(), 0600);
  const Outcome pipe = place.RunReal({"a.dxf", "-o", "b.pdf", "--record", "pipe.jsonl"});
  EXPECT_EQ(pipe.status, 2);
  EXPECT_THAT(pipe.err, HasSubstr("pipe.jsonl: cannot be written: it is no regular file"));
  EXPECT_FALSE(place.Has("b.pdf"));
}

TEST_F(Process, NamesThatAreNoFilesAreRefused) {
  const auto before = place.Names();
  for (const char* option : {"-o", "--record"}) {
    for (const char* name : {"", "-", ".", "sub/..", "sub/", "/dev/stdout"}) {
      const Outcome outcome = place.RunReal({"a.dxf", option, name});
      EXPECT_EQ(outcome.status, 2) << option << " " << name;
    }
  }
  EXPECT_EQ(place.RunReal({"a.dxf", "-o", "latin\xe4"}).status, 2);
  EXPECT_EQ(place.Names(), before);
}

TEST_F(Process, WhatIsLeftOutIsCountedAndPrintedClean) {
  place.Write("odd\x1b[1m.dxf",
              "0\nSECTION\n2\nENTITIES\n0\nLINE\n8\n0\n10\n-1e15\n20\n0\n11\n1e15\n21\n0\n"
              "0\nCIRCLE\n8\n0\n10\n0\n20\n0\n40\n1e15\n0\nTYP\x1b[2m" +
                  std::string(90, 'E') + "\n8\n0\n0\nENDSEC\n0\nEOF\n");
  const Outcome outcome =
      place.RunReal({"odd\x1b[1m.dxf", "-o", "out.pdf", "--scale", "1:1", "--layer", "0", "--layer", "WALL"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.err, "hdiplot: --layer \"WALL\" matches no layer of any drawing\n");
  EXPECT_THAT(outcome.out, HasSubstr("1 object,")) << "the line is cut, the circle is not drawn";
  EXPECT_THAT(outcome.out, HasSubstr("1 too far off the sheet"));
  EXPECT_THAT(outcome.out, HasSubstr("TYP?[2m" + std::string(33, 'E') + "...,"));
  EXPECT_THAT(place.RunReal({"miss\x1b[1m.dxf"}).err, StartsWith("hdiplot: miss?[1m.dxf: "));
}

}  // namespace
