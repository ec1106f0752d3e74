// Test cases in text files.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

namespace rows {

// Reads rows of a line and the indented line below it. Lines that start with a number sign are comments.
// `file` is relative to the tests' folder.
inline std::vector<std::pair<std::string, std::string>> Read(const std::string& file) {
  std::vector<std::pair<std::string, std::string>> rows;
  std::ifstream stream(std::filesystem::path(HDI_SOURCE_DIR "/tests") / file, std::ios::binary);
  EXPECT_TRUE(stream) << file;
  for (std::string line, below; std::getline(stream, line);) {
    if (line.starts_with('#') || !std::getline(stream, below)) continue;
    rows.emplace_back(line, below.substr(below.find_first_not_of(' ')));
  }
  return rows;
}

}  // namespace rows
