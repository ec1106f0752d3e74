// Playing a trace: the calls in the order of a job, and the same trace when it is recorded again.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/hdiplot/command.h"

namespace {

using command::Outcome;
using command::Workplace;
using testing::HasSubstr;
using testing::StartsWith;

// Keys that may be left out are in the trace once and left out once.
TEST(Playing, RecordsWhatItPlays) {
  const Workplace place;
  place.Fetch("every_call.jsonl");
  place.Fetch("every_call.course");
  const Outcome outcome = place.RunFake("every_call.jsonl -o out --record again.jsonl");
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_THAT(outcome.out, StartsWith("out.pdf: 3 pages, 11 objects, 15 bytes, "));
  EXPECT_EQ(place.TakeLog(), place.Read("every_call.course"));
  EXPECT_EQ(place.Read("again.jsonl"), place.Read("every_call.jsonl"));

  const Outcome results = place.RunFake("every_call.jsonl -o out --results");
  EXPECT_THAT(results.out, StartsWith("2 DevGetCaps 0\n3 DevStartPage 1\n4 DevSetPen 0\n"));
  EXPECT_THAT(results.err, StartsWith("out.pdf: 3 pages, "));
}

TEST(Playing, OutputAndDeviceOfTheCommandLineGoFirst) {
  const Workplace place;
  place.Write("job.jsonl",
              R"({"job": {"device": "Zweites Gerät", "output": "own", "defaultOutput": "default"}})");
  EXPECT_EQ(place.RunFake("job.jsonl -o given --device First").status, 0);
  EXPECT_THAT(place.TakeLog(), StartsWith("OpenDevice First "));
  EXPECT_EQ(place.RunFake("job.jsonl").status, 0);
  EXPECT_EQ(place.Names(), (std::vector<std::string>{"given.pdf", "job.jsonl", "own.pdf"}));

  // A null output is null for the driver, too, and nothing is appended to the default.
  place.Write("job.jsonl", R"({"job": {"output": null, "defaultOutput": "default"}})");
  EXPECT_EQ(place.RunFake("job.jsonl").status, 0);
  EXPECT_THAT(place.TakeLog(), HasSubstr("StartDoc '' null 'default'"));
  EXPECT_TRUE(place.Has("default"));
}

// The fake driver's own record would open it.
TEST(Playing, OpensTheViewerOnlyWhenAskedTo) {
  const Workplace place;
  place.Write("asked.jsonl", R"({"job": {"devMode": {"openAfterPlot": 1}}})");
  place.Write("plain.jsonl", R"({"job": {}})");
  for (const auto& [words, open] :
       {std::pair{"asked.jsonl", " open 1"}, {"plain.jsonl", " open 0"}, {"plain.jsonl --open", " open 1"}}) {
    EXPECT_EQ(place.RunFake(std::string(words) + " -o out.pdf").status, 0);
    EXPECT_THAT(place.TakeLog(), HasSubstr(open)) << words;
  }
}

}  // namespace
