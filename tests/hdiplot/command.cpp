#include "tests/hdiplot/command.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>

namespace command {

namespace fs = std::filesystem;

namespace {

const fs::path kFolder = HDI_SOURCE_DIR "/tests/hdiplot";

// For the shell; paths of tests have no quotes.
std::string Quoted(const std::string& text) { return "'" + text + "'"; }

}  // namespace

void Workplace::Fetch(const std::string& name) const { fs::copy_file(kFolder / name, Path(name)); }

bool Workplace::Has(const std::string& name) const { return fs::exists(Path(name)); }

std::vector<std::string> Workplace::Names() const {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(Path())) names.push_back(entry.path().filename().string());
  std::ranges::sort(names);
  return names;
}

Outcome Workplace::RunFake(const std::string& words, const std::string& before) const {
  return Run(words, before + " HDI_MODULE=" + Quoted(HDIPLOT_FAKE_MODULE) +
                        " FAKE_LOG=" + Quoted(beside_.Path("log")));
}

Outcome Workplace::RunReal(const std::string& words, const std::string& before) const {
  return Run(words, before + " HDI_MODULE=" + Quoted(HDI_DRIVER_PATH) + " HDI_USER_DIR=user");
}

std::string Workplace::TakeLog() const {
  std::string log = beside_.Read("log");
  fs::remove(beside_.Path("log"));
  return log;
}

Outcome Workplace::Run(const std::string& words, const std::string& before) const {
  const std::string command = "cd " + Quoted(Path()) + " && { " + before + " " + Quoted(HDI_HDIPLOT_PATH) +
                              " " + words + "\n} </dev/null >" + Quoted(beside_.Path("out")) + " 2>" +
                              Quoted(beside_.Path("err"));
  const int state = std::system(command.c_str());
  return {WIFEXITED(state) ? WEXITSTATUS(state) : -1, beside_.Read("out"), beside_.Read("err")};
}

std::string LineDrawing(const std::string& width, const std::string& height) {
  return "0\nSECTION\n2\nENTITIES\n0\nLINE\n8\n0\n10\n0\n20\n0\n11\n" + width + "\n21\n" + height +
         "\n0\nENDSEC\n0\nEOF\n";
}

void ExpectFailure(const Outcome& outcome, const std::string& words, int status) {
  EXPECT_EQ(outcome.status, status) << words;
  EXPECT_EQ(outcome.out, "") << words;
  EXPECT_THAT(outcome.err, testing::MatchesRegex("hdiplot: [^\n]*\n"));
  EXPECT_THAT(outcome.err, testing::HasSubstr(words));
}

}  // namespace command
