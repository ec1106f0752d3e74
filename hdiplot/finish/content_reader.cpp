#include "hdiplot/finish/content_reader.h"

#include <array>
#include <cstdint>

namespace hdiplot {

namespace {

enum CharacterClass : uint8_t { kRegular, kSpace, kDelimiting };

constexpr std::array<uint8_t, 256> MakeClasses() {
  std::array<uint8_t, 256> classes{};
  for (const char c : {'\0', '\t', '\n', '\f', '\r', ' '}) classes[static_cast<uint8_t>(c)] = kSpace;
  for (const char c : std::string_view("()<>[]{}/%")) classes[static_cast<uint8_t>(c)] = kDelimiting;
  return classes;
}

constexpr std::array<uint8_t, 256> kClasses = MakeClasses();

uint8_t ClassOf(char c) { return kClasses[static_cast<uint8_t>(c)]; }

bool BeginsNumber(char c) { return (c >= '0' && c <= '9') || c == '-' || c == '.' || c == '+'; }

}  // namespace

ContentToken ContentReader::Next() {
  SkipSpaceAndComments();
  if (position_ == content_.size()) return {ContentToken::Kind::kEnd, position_, position_};
  const char first = content_[position_];
  if (ClassOf(first) == kDelimiting) return NextDelimited();
  const size_t begin = position_;
  position_ = EndOfWord(begin);
  const auto kind = BeginsNumber(first) ? ContentToken::Kind::kNumber : ContentToken::Kind::kOperator;
  return {kind, begin, position_};
}

void ContentReader::SkipSpaceAndComments() {
  while (position_ < content_.size()) {
    const char c = content_[position_];
    if (c == '%') {
      position_ = content_.find_first_of("\r\n", position_);
      if (position_ == std::string_view::npos) position_ = content_.size();
    } else if (ClassOf(c) != kSpace) {
      return;
    } else {
      ++position_;
    }
  }
}

size_t ContentReader::EndOfWord(size_t position) const {
  while (position < content_.size() && ClassOf(content_[position]) == kRegular) ++position;
  return position;
}

// Parentheses within a string are balanced or escaped.
size_t ContentReader::EndOfString(size_t begin) const {
  size_t depth = 0;
  for (size_t i = begin; i < content_.size(); ++i) {
    if (content_[i] == '\\') {
      ++i;
    } else if (content_[i] == '(') {
      ++depth;
    } else if (content_[i] == ')' && --depth == 0) {
      return i + 1;
    }
  }
  throw std::runtime_error("a string has no end");
}

ContentToken ContentReader::NextDelimited() {
  using Kind = ContentToken::Kind;
  const size_t begin = position_;
  const std::string_view pair = content_.substr(begin, 2);
  Kind kind = Kind::kDelimiter;
  if (pair == "<<" || pair == ">>") {
    position_ = begin + 2;
  } else if (pair.front() == '/') {
    kind = Kind::kName;
    position_ = EndOfWord(begin + 1);
  } else if (pair.front() == '(') {
    kind = Kind::kString;
    position_ = EndOfString(begin);
  } else if (pair.front() == '<') {
    kind = Kind::kHexString;
    const size_t last = content_.find('>', begin);
    if (last == std::string_view::npos) throw std::runtime_error("a string has no end");
    position_ = last + 1;
  } else {
    position_ = begin + 1;
  }
  return {kind, begin, position_};
}

}  // namespace hdiplot
