// Parses and edits settings files.
#include "platform/profile.h"

#include <algorithm>
#include <utility>

#include "platform/unicode.h"

namespace hdi {
namespace {

constexpr std::string_view kMarkUtf8 = "\xEF\xBB\xBF";
constexpr std::string_view kMarkUtf16 = "\xFF\xFE";

bool IsBlank(char16_t unit) { return unit == u' ' || unit == u'\t' || unit == u'\r'; }

std::u16string_view Trim(std::u16string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

std::u16string_view Unquote(std::u16string_view value) {
  const bool quoted =
      value.size() >= 2 && value.front() == value.back() && (value.front() == u'"' || value.front() == u'\'');
  return quoted ? value.substr(1, value.size() - 2) : value;
}

Profile::Line ReadLine(std::u16string_view text) {
  Profile::Line line;
  text = Trim(text);
  if (text.empty() || text.front() == u';') return line;
  line.kind = Profile::LineKind::kMalformed;
  if (text.front() == u'[') {
    const size_t close = text.rfind(u']');
    if (close == text.npos) return line;
    line.kind = Profile::LineKind::kSection;
    line.name = Trim(text.substr(1, close - 1));
  } else if (const size_t equals = text.find(u'='); equals != text.npos) {
    line.kind = Profile::LineKind::kEntry;
    line.name = Trim(text.substr(0, equals));
    line.value = Unquote(Trim(text.substr(equals + 1)));
  }
  return line;
}

bool Holds(const Profile::Line& line, Profile::LineKind kind, std::u16string_view name,
           std::u16string_view value) {
  return line.kind == kind && line.name == name && line.value == value;
}

// Returns `value` quoted if that is needed to read it back unchanged.
std::u16string Quoted(std::u16string_view value) {
  if (Unquote(Trim(value)) == value) return std::u16string(value);
  return u'"' + std::u16string(value) + u'"';
}

bool HasLineBreak(std::u16string_view text) { return text.find_first_of(u"\r\n") != text.npos; }

}  // namespace

LoadResult Profile::Load(const std::u16string& path) {
  lines_.clear();
  mark_.clear();
  encoding_ = Encoding::kUtf8;
  std::string bytes;
  const LoadResult result = LoadWholeFile(path, bytes);
  if (result != LoadResult::kLoaded) return result;
  for (const std::string_view mark : {kMarkUtf8, kMarkUtf16}) {
    if (bytes.starts_with(mark)) mark_ = mark;
  }
  if (mark_ == kMarkUtf16) encoding_ = Encoding::kUtf16;
  Parse(std::string_view(bytes).substr(mark_.size()));
  return result;
}

bool Profile::Save(const std::u16string& path) const {
  std::string bytes = mark_;
  for (const Line& line : lines_) bytes.append(line.text).append(line.end);
  return ReplaceWholeFile(path, bytes);
}

void Profile::Parse(std::string_view bytes) {
  const std::string feed = Encode(u"\n");
  const std::string carriageReturn = Encode(u"\r");
  const size_t unit = feed.size();
  while (!bytes.empty()) {
    size_t at = 0;
    while (at + unit <= bytes.size() && bytes.substr(at, unit) != feed) at += unit;
    size_t next = at + unit;
    if (next > bytes.size()) at = next = bytes.size();  // the last line has no line ending
    if (next > at && at >= unit && bytes.substr(at - unit, unit) == carriageReturn) at -= unit;
    Line line = ReadLine(Decode(bytes.substr(0, at)));
    line.text = bytes.substr(0, at);
    line.end = bytes.substr(at, next - at);
    lines_.push_back(std::move(line));
    bytes.remove_prefix(next);
  }
}

std::u16string Profile::Decode(std::string_view bytes) const {
  if (encoding_ == Encoding::kUtf8) return ToUtf16(bytes);
  std::u16string text;
  for (size_t i = 0; i + 1 < bytes.size(); i += 2) {
    const unsigned low = static_cast<uint8_t>(bytes[i]);
    const unsigned high = static_cast<uint8_t>(bytes[i + 1]);
    text.push_back(static_cast<char16_t>(low | high << 8));
  }
  return text;
}

std::string Profile::Encode(std::u16string_view text) const {
  if (encoding_ == Encoding::kUtf8) return ToUtf8(text);
  std::string bytes;
  for (const char16_t unit : text) {
    bytes.push_back(static_cast<char>(unit & 0xFF));
    bytes.push_back(static_cast<char>(unit >> 8));
  }
  return bytes;
}

std::string Profile::LineEnd() const {
  return lines_.empty() || lines_.front().end.empty() ? Encode(u"\n") : lines_.front().end;
}

std::optional<size_t> Profile::FindSection(std::u16string_view section) const {
  const auto found = std::find_if(lines_.begin(), lines_.end(), [&](const Line& line) {
    return line.kind == LineKind::kSection && SameName(line.name, section);
  });
  if (found == lines_.end()) return std::nullopt;
  return static_cast<size_t>(found - lines_.begin());
}

std::optional<size_t> Profile::FindEntry(size_t section, std::u16string_view key) const {
  for (size_t i = section + 1; i < lines_.size() && lines_[i].kind != LineKind::kSection; ++i) {
    if (lines_[i].kind == LineKind::kEntry && SameName(lines_[i].name, key)) return i;
  }
  return std::nullopt;
}

// Returns the section's last entry, or its header if it has none. Blank lines and comments after that usually
// belong to the next section.
size_t Profile::LastOfSection(size_t section) const {
  size_t last = section;
  for (size_t i = section + 1; i < lines_.size() && lines_[i].kind != LineKind::kSection; ++i) {
    if (lines_[i].kind == LineKind::kEntry) last = i;
  }
  return last;
}

std::optional<std::u16string> Profile::Find(std::u16string_view section, std::u16string_view key) const {
  const std::optional<size_t> head = FindSection(section);
  const std::optional<size_t> entry = head ? FindEntry(*head, key) : std::nullopt;
  if (!entry) return std::nullopt;
  return lines_[*entry].value;
}

bool Profile::Set(std::u16string_view section, std::u16string_view key, std::u16string_view value) {
  if (HasLineBreak(section) || HasLineBreak(key) || HasLineBreak(value)) return false;
  const std::u16string headText = u'[' + std::u16string(section) + u']';
  const std::u16string entryText = std::u16string(key) + u'=' + Quoted(value);
  Line head = ReadLine(headText);
  Line entry = ReadLine(entryText);
  if (!Holds(head, LineKind::kSection, section, {}) || !Holds(entry, LineKind::kEntry, key, value))
    return false;
  head.text = Encode(headText);
  entry.text = Encode(entryText);

  const std::optional<size_t> at = FindSection(section);
  if (!at) {
    Insert(lines_.size(), std::move(head));
    Insert(lines_.size(), std::move(entry));
  } else if (const std::optional<size_t> old = FindEntry(*at, key)) {
    // Keep the key's spelling.
    Line& line = lines_[*old];
    const std::u16string text = Decode(line.text);
    line.text = Encode(text.substr(0, text.find(u'=') + 1) + Quoted(value));
    line.value = value;
  } else {
    Insert(LastOfSection(*at) + 1, std::move(entry));
  }
  return true;
}

void Profile::Insert(size_t position, Line line) {
  line.end = LineEnd();
  if (position > 0 && lines_[position - 1].end.empty()) lines_[position - 1].end = line.end;
  lines_.insert(lines_.begin() + static_cast<ptrdiff_t>(position), std::move(line));
}

bool Profile::RemoveSection(std::u16string_view section) {
  const std::optional<size_t> head = FindSection(section);
  if (!head) return false;
  size_t end = LastOfSection(*head) + 1;
  if (end < lines_.size() && lines_[end].text.empty()) ++end;  // the blank line between two sections
  lines_.erase(lines_.begin() + static_cast<ptrdiff_t>(*head), lines_.begin() + static_cast<ptrdiff_t>(end));
  return true;
}

}  // namespace hdi
