// Mutates text inputs: half of the time with libFuzzer's own mutations, otherwise by whole records of
// HDI_RECORD_LINES lines and whole numbers, which keeps more inputs parseable.
#include <algorithm>
#include <array>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "tests/fuzz/fuzz_target.h"

// libFuzzer's interface: it calls the first if defined; the second is its own mutation.
extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t room, unsigned int seed);
extern "C" size_t LLVMFuzzerMutate(uint8_t* data, size_t size, size_t room);

namespace {

constexpr std::array<std::string_view, 16> kOddNumbers = {
    "0",     "-1",         "1",           "0.5",        "2",   "90",    "128",  "255",
    "65536", "2147483647", "-2147483648", "4294967295", "1e9", "-1e-9", "1e29", "1e300"};

class Mutation {
 public:
  Mutation(std::string_view text, unsigned int seed) : random_(seed) {
    while (!text.empty()) {
      size_t end = 0;
      for (int line = 0; line < HDI_RECORD_LINES && end < text.size(); ++line) {
        end = std::min(text.find('\n', end), text.size() - 1) + 1;
      }
      records_.emplace_back(text.substr(0, end));
      text.remove_prefix(end);
    }
  }

  [[nodiscard]] std::string Make() {
    if (records_.empty()) return "";
    std::string& record = records_[Below(records_.size())];
    const std::string other = records_[Below(records_.size())];
    const std::array<std::string, 3> wholeRecords = {"", other, record + other};
    const size_t choice = Below(6);
    if (choice < wholeRecords.size()) {
      record = wholeRecords[choice];
    } else {
      ReplaceNumber(record);
    }
    std::string text;
    for (const std::string& each : records_) text += each;
    return text;
  }

 private:
  // In the last line, which has the value in a record of two.
  void ReplaceNumber(std::string& record) {
    const size_t start = HDI_RECORD_LINES == 1 ? 0 : std::min(record.find('\n'), record.size() - 1);
    const size_t at = record.find_first_of("-0123456789", start + Below(record.size() - start));
    if (at == std::string::npos) return;
    const size_t length = std::min(record.find_first_not_of("-.0123456789eE+", at), record.size()) - at;
    record.replace(at, length, kOddNumbers[Below(kOddNumbers.size())]);
  }

  size_t Below(size_t bound) { return std::uniform_int_distribution<size_t>(0, bound - 1)(random_); }

  std::minstd_rand random_;
  std::vector<std::string> records_;
};

}  // namespace

size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t room, unsigned int seed) {
  if (seed % 2 == 0) return LLVMFuzzerMutate(data, size, room);
  const std::string text = Mutation({reinterpret_cast<const char*>(data), size}, seed).Make();
  if (text.empty() || text.size() > room) return LLVMFuzzerMutate(data, size, room);
  std::ranges::copy(text, data);
  return text.size();
}
