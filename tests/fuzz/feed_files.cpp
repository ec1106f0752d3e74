// Replaces libFuzzer in plain builds: runs the target on the files of a folder.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "tests/fuzz/fuzz_target.h"

int main(int /*argc*/, char** argv) {
  int count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(argv[1])) {
    std::fprintf(stderr, "%s\n",
                 entry.path().c_str());  // the last one is it, when the target stops the process
    std::ifstream file(entry.path(), std::ios::binary);
    std::vector<uint8_t> input(std::istreambuf_iterator<char>(file), {});
    input.shrink_to_fit();  // so that the sanitizer sees what is read behind it
    LLVMFuzzerTestOneInput(input.data(), input.size());
    ++count;
  }
  return count > 0 ? 0 : 1;
}
