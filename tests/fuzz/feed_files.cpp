// Stands in for libFuzzer where it is not linked: feeds the files of folders to the target, one after the
// other.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "tests/fuzz/fuzz_target.h"

int main(int argc, char** argv) {
  std::vector<std::filesystem::path> files;
  for (int i = 1; i < argc; ++i) {
    for (const auto& entry : std::filesystem::directory_iterator(argv[i])) files.push_back(entry.path());
  }
  std::ranges::sort(files);
  for (const auto& file : files) {
    std::fprintf(stderr, "%s\n", file.c_str());  // the last one is it, when the target stops the process
    std::ifstream stream(file, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
    // Of exactly its size, so that the sanitizer sees what is read behind it.
    const std::vector<uint8_t> input(bytes.begin(), bytes.end());
    LLVMFuzzerTestOneInput(input.data(), input.size());
  }
  if (files.empty()) std::fprintf(stderr, "there are no inputs\n");
  return files.empty() ? 1 : 0;
}
