// The tokens of a content stream (ISO 32000-1:2008, 7.2 and 7.8.2).
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string_view>

namespace hdiplot {

struct ContentToken {
  enum class Kind { kNumber, kName, kString, kHexString, kDelimiter, kOperator, kEnd };

  Kind kind = Kind::kEnd;
  size_t begin = 0;  // in the content; strings and names with their delimiters
  size_t end = 0;
};

class ContentReader {
 public:
  // The content must outlive the reader.
  explicit ContentReader(std::string_view content) : content_(content) {}

  // kEnd behind the last token. Throws std::runtime_error over a string without an end.
  [[nodiscard]] ContentToken Next();

 private:
  void SkipSpaceAndComments();
  [[nodiscard]] size_t EndOfWord(size_t position) const;
  [[nodiscard]] size_t EndOfString(size_t begin) const;
  [[nodiscard]] ContentToken NextDelimited();

  std::string_view content_;
  size_t position_ = 0;
};

}  // namespace hdiplot
