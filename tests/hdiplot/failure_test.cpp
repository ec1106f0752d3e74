// What goes wrong: one message, the right exit status, and files left as they were.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/hdiplot/command.h"

namespace {

using command::Outcome;
using command::Workplace;
using testing::HasSubstr;

void ExpectOneMessage(const Outcome& outcome, const std::string& part) {
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(std::ranges::count(outcome.err, '\n'), 1) << outcome.err;
  EXPECT_THAT(outcome.err, HasSubstr(part));
}

class Failures : public testing::Test {
 protected:
  Failures() {
    place.Write("good.jsonl", "{\"call\": \"DevStartPage\"}\n{\"call\": \"DevEndPage\"}\n");
    place.Write("bad.jsonl", "{\"call\": \"DevStartPage\"}\n{\"call\": \"DevEndPag\"}\n");
    place.Write("old.pdf", "an old file");
    names = place.Names();
  }

  // Nothing has been made or changed.
  void ExpectUntouched() const {
    EXPECT_EQ(place.Names(), names);
    EXPECT_EQ(place.Read("old.pdf"), "an old file");
  }

  Workplace place;
  std::vector<std::string> names;
};

TEST_F(Failures, OfATraceLeaveTheOutputAsItWas) {
  ExpectOneMessage(place.RunFake({"bad.jsonl", "-o", "old.pdf"}), "bad.jsonl:2: unknown call");
  ExpectOneMessage(place.RunFake({"bad.jsonl", "-o", "new.pdf", "--record", "new.jsonl"}), "bad.jsonl:2: ");
  ExpectOneMessage(place.RunFake({"missing.jsonl", "-o", "old.pdf"}), "missing.jsonl: cannot be opened");
  ExpectOneMessage(place.RunFake({"good.jsonl"}), "no output file");
  ExpectUntouched();
}

TEST_F(Failures, OfTheOutputsPlaceAreFoundBeforeTheDriverIsAsked) {
  std::filesystem::create_directory(place.Path("directory.pdf"));
  mkfifo(place.Path("pipe.pdf").c_str(), 0600);
  names = place.Names();
  ExpectOneMessage(place.RunFake({"good.jsonl", "-o", "directory.pdf"}), "directory.pdf: cannot be written");
  ExpectOneMessage(place.RunFake({"good.jsonl", "-o", "pipe.pdf"}), "pipe.pdf: cannot be written");
  ExpectOneMessage(place.RunFake({"good.jsonl", "-o", "none/new.pdf"}), "none/new.pdf: cannot be written");
  ExpectOneMessage(place.RunFake({"good.jsonl", "-o", "good.jsonl/new.pdf"}),
                   "good.jsonl/new.pdf: cannot be written");
  ExpectOneMessage(place.RunFake({"good.jsonl", "-o", std::string(300, 'x')}),
                   "cannot be written: File name too long");
  ExpectOneMessage(place.RunFake({"good.jsonl", "-o", "/proc/new.pdf"}), "/proc/new.pdf: cannot be written");
  ExpectOneMessage(place.RunFake({"good.jsonl", "-o", "old.pdf", "--record", "none/a.jsonl"}),
                   "none/a.jsonl: cannot");
  ExpectOneMessage(place.RunFake({"good.jsonl", "-o", "old.pdf", "--record", "good.jsonl"}),
                   "the input and the record");
  ExpectOneMessage(place.RunFake({"good.jsonl", "-o", "old.pdf", "--record", "./old.pdf"}),
                   "output and the record");
  ExpectUntouched();
}

TEST_F(Failures, OfTheModuleAreToldApart) {
  ExpectOneMessage(place.RunFake({"good.jsonl", "-o", "old.pdf", "--module", "none.hdi"}),
                   "none.hdi: the driver module");
  ExpectOneMessage(place.RunFake({"good.jsonl", "-o", "old.pdf", "--module", "old.pdf"}),
                   "old.pdf: cannot be loaded");
  ExpectOneMessage(place.RunFake({"good.jsonl", "-o", "old.pdf", "--device", "Third"}),
                   "has no device \"Third\"; there are: \"First\" \"Zweites Gerät\"");
  ExpectUntouched();
}

TEST_F(Failures, OfTheDriverLeaveNoRecord) {
  const std::vector<std::string> arguments = {"good.jsonl", "-o", "new.pdf", "--record", "new.jsonl"};
  ExpectOneMessage(place.RunFake(arguments, {{"FAKE_REFUSE", "1"}}),
                   "new.pdf: the driver did not start the document");
  EXPECT_FALSE(place.Has("new.pdf"));
  ExpectOneMessage(place.RunFake(arguments, {{"FAKE_THROW", "1"}}),
                   "new.pdf: cannot be written: the cable is out");
  ExpectOneMessage(place.RunFake(arguments, {{"FAKE_TRUNCATE", "1"}}), "new.pdf: is not whole");
  EXPECT_EQ(place.Names(), (std::vector<std::string>{"bad.jsonl", "good.jsonl", "new.pdf", "old.pdf"}));
}

TEST_F(Failures, OfDrawingsLeaveTheOthersPlotted) {
  place.Write("empty.dxf", "");
  place.Write("text.dxf", "This is no drawing.\n");
  place.Write("good.dxf",
              "0\nSECTION\n2\nENTITIES\n0\nLINE\n8\n0\n10\n0\n20\n0\n11\n10\n21\n5\n0\nENDSEC\n0\nEOF\n");
  const Outcome none = place.RunReal({"empty.dxf", "missing.dxf", "text.dxf", "-o", "old.pdf"});
  EXPECT_EQ(none.status, 2);
  EXPECT_EQ(none.out, "");
  EXPECT_EQ(std::ranges::count(none.err, '\n'), 3) << none.err;
  EXPECT_EQ(place.Read("old.pdf"), "an old file");

  const Outcome some = place.RunReal({"empty.dxf", "good.dxf", "-o", "old.pdf"});
  EXPECT_EQ(some.status, 1);
  EXPECT_EQ(std::ranges::count(some.err, '\n'), 1) << some.err;
  EXPECT_THAT(some.err, HasSubstr("empty.dxf: "));
  EXPECT_THAT(some.out, testing::StartsWith("old.pdf: 1 page, "));
  EXPECT_THAT(place.Read("old.pdf"), testing::StartsWith("%PDF-"));
}

}  // namespace
