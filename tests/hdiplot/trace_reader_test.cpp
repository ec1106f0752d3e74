// Reading traces: what is refused, with line and message.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "hdiplot/system/errors.h"
#include "hdiplot/trace/trace.h"
#include "tests/support/rows.h"
#include "tests/support/scratch.h"

namespace hdiplot {
namespace {

using testing::HasSubstr;

// The message of reading `text` as a trace, without the file's name; empty when it is read.
std::string MessageOf(const std::string& text) {
  const scratch::Directory directory;
  const std::string file = directory.Write("job.jsonl", text);
  try {
    (void)ReadTrace(file);
  } catch (const FileError& error) {
    const std::string message = error.what();
    EXPECT_EQ(message.substr(0, file.size() + 1), file + ":");
    return message.substr(file.size() + 1);
  }
  return "";
}

// The message of `line` as the third of a trace, or as its job line.
std::string MessageOfLine(const std::string& line) {
  const bool isJob = line.starts_with("{\"job\"");
  return MessageOf((isJob ? "" : "{\"job\": {}}\r\n\r\n") + line + "\n{\"call\": \"DevEndPage\"}\n");
}

TEST(TraceReader, TellsWhatIsWrongWithALine) {
  for (const auto& [line, message] : rows::Read("hdiplot/bad_lines.txt")) {
    EXPECT_EQ(MessageOfLine(line), message) << line;
  }
}

// Where part of the message is the JSON library's.
TEST(TraceReader, RefusesWhatIsNoJson) {
  EXPECT_THAT(MessageOfLine("hello"), HasSubstr("3: invalid JSON: column 1"));
  EXPECT_THAT(MessageOfLine("{\"call\": \"DevEndPage\""), HasSubstr("3: invalid JSON: "));
  EXPECT_THAT(MessageOfLine("{\"call\": \"DevSetLayer\", \"name\": \"\xff\"}"),
              HasSubstr("ill-formed UTF-8"));
  EXPECT_THAT(MessageOfLine(R"({"call": "DevSetLayer", "name": "\ud800"})"), HasSubstr("3: invalid JSON: "));
  EXPECT_THAT(MessageOfLine(R"({"call": "DevSetLineScale", "scale": 1e999})"), HasSubstr("number overflow"));
  EXPECT_THAT(MessageOf(std::string("\0\1\2", 3)), HasSubstr("1: invalid JSON"));
}

TEST(TraceReader, RefusesWhatIsNoTrace) {
  EXPECT_EQ(MessageOf(""), " is empty");
  EXPECT_EQ(MessageOf("\r\n \t\n"), " is empty");
  EXPECT_EQ(MessageOf("{\"job\": {}}\n{\"job\": {}}\n"), "2: a job line must be the first");
  const scratch::Directory directory;
  EXPECT_THROW((void)ReadTrace(directory.Path("missing.jsonl")), FileError);
  EXPECT_THROW((void)ReadTrace(directory.Path()), FileError);
}

TEST(TraceReader, HoldsTheLimitOfLayerNames) {
  const auto layer = [](size_t units) {
    return R"({"call": "DevSetLayer", "name": ")" + std::string(units, 'x') + "\"}";
  };
  EXPECT_EQ(MessageOfLine(layer(1024)), "3: DevSetLayer: name: has more than 1023 units");
  EXPECT_EQ(MessageOfLine(layer(1023)), "");
}

}  // namespace
}  // namespace hdiplot
