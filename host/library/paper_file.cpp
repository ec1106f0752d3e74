// Reads and writes paper files.
#include "host/library/paper_file.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <iterator>
#include <set>
#include <string_view>
#include <utility>

#include "host/library/built_in_papers.h"
#include "platform/files.h"
#include "platform/unicode.h"

namespace hdi {
namespace {

constexpr std::u16string_view kHeadSection = u"Papers";
constexpr std::u16string_view kFormatKey = u"Format";
constexpr std::u16string_view kFormat = u"1";
constexpr std::u16string_view kPaperPrefix = u"Paper ";
constexpr std::u16string_view kNameKey = u"Name";
constexpr int32_t kLargestId = 32767;  // fits the settings record's 16 bits

struct LengthKey {
  std::u16string_view key;
  int32_t PaperSize::*field;
};

constexpr LengthKey kLengthKeys[] = {
    {u"Width", &PaperSize::width}, {u"Height", &PaperSize::height}, {u"Left", &PaperSize::left},
    {u"Top", &PaperSize::top},     {u"Right", &PaperSize::right},   {u"Bottom", &PaperSize::bottom},
};

struct Fault {
  size_t line;  // from 1
  std::string text;
};

std::optional<int32_t> ParseNumber(std::u16string_view text) {
  const std::string bytes = ToUtf8(text);
  int32_t number = 0;
  const auto [end, error] = std::from_chars(bytes.data(), bytes.data() + bytes.size(), number);
  if (error != std::errc() || end != bytes.data() + bytes.size()) return std::nullopt;
  return number;
}

std::u16string SectionName(int32_t id) { return std::u16string(kPaperPrefix) + ToUtf16(std::to_string(id)); }

std::u16string_view NameOf(const PaperSize& paper) {
  const char16_t* end = std::find(std::begin(paper.name), std::end(paper.name), u'\0');
  return {paper.name, static_cast<size_t>(end - paper.name)};
}

// Builds the list from a file's lines, up to the first error.
class PaperReader {
 public:
  std::optional<Fault> Read(const std::vector<Profile::Line>& lines) {
    for (const Profile::Line& line : lines) {
      ++lineNumber_;
      if (line.kind == Profile::LineKind::kMalformed) return At("neither a section nor a key");
      std::optional<Fault> fault;
      if (line.kind == Profile::LineKind::kSection) fault = ReadSection(line.name);
      if (line.kind == Profile::LineKind::kEntry) fault = ReadEntry(line);
      if (fault) return fault;
    }
    if (!formatSeen_) return At("no paper list: [Papers] with Format=1 is missing");
    return CheckPaper();
  }

  [[nodiscard]] std::vector<PaperSize> TakePapers() { return std::move(papers_); }

 private:
  [[nodiscard]] Fault At(std::string text) const {
    return {std::max<size_t>(lineNumber_, 1), std::move(text)};
  }

  std::optional<Fault> ReadSection(std::u16string_view name) {
    if (!headSeen_) {
      headSeen_ = SameName(name, kHeadSection);
      return headSeen_ ? std::nullopt : std::optional(At("the first section is not [Papers]"));
    }
    if (std::optional<Fault> fault = CheckPaper()) return fault;
    const bool isPaper = SameName(name.substr(0, kPaperPrefix.size()), kPaperPrefix);
    const std::optional<int32_t> id = isPaper ? ParseNumber(name.substr(kPaperPrefix.size())) : std::nullopt;
    // Only the plain form of the number is accepted: changes look the section up by it.
    if (!id || *id < 1 || *id > kLargestId || !SameName(name, SectionName(*id))) {
      return At("a further section must be [Paper N] with N from 1 to 32767");
    }
    if (!ids_.insert(*id).second) return At("duplicate paper");
    papers_.emplace_back().id = *id;
    keys_.clear();
    sectionLine_ = lineNumber_;
    return std::nullopt;
  }

  std::optional<Fault> ReadEntry(const Profile::Line& line) {
    if (papers_.empty()) {
      if (!headSeen_) return At("a key before the first section");
      if (!SameName(line.name, kFormatKey) || line.value != kFormat)
        return At("only Format=1 may precede the first paper");
      formatSeen_ = true;
      return std::nullopt;
    }
    PaperSize& paper = papers_.back();
    if (SameName(line.name, kNameKey)) {
      const std::u16string_view name = std::u16string_view(line.value).substr(0, std::size(paper.name) - 1);
      return TakeKey(kNameKey, [&] { std::copy(name.begin(), name.end(), paper.name); });
    }
    const auto* row = std::find_if(std::begin(kLengthKeys), std::end(kLengthKeys),
                                   [&](const LengthKey& key) { return SameName(key.key, line.name); });
    if (row == std::end(kLengthKeys)) return At("unknown key");
    const std::optional<int32_t> length = ParseNumber(line.value);
    if (!length) return At("not a whole number of tenths of a millimetre");
    return TakeKey(row->key, [&] { paper.*row->field = *length; });
  }

  template <typename Store>
  std::optional<Fault> TakeKey(std::u16string_view key, Store store) {
    if (!keys_.insert(key).second) return At("duplicate key");
    store();
    return std::nullopt;
  }

  // Checks that the last paper is complete.
  [[nodiscard]] std::optional<Fault> CheckPaper() const {
    if (papers_.empty()) return std::nullopt;
    if (papers_.back().width > 0 && papers_.back().height > 0) return std::nullopt;
    return Fault{sectionLine_, "the paper's width or height is missing or not positive"};
  }

  std::vector<PaperSize> papers_;
  std::set<int32_t> ids_;
  std::set<std::u16string_view> keys_;  // of the current paper
  size_t lineNumber_ = 0;
  size_t sectionLine_ = 0;
  bool headSeen_ = false;
  bool formatSeen_ = false;
};

void ReportOnce(const std::u16string& path, const Fault& fault) {
  static std::set<std::u16string> reported;
  if (!reported.insert(path).second) return;
  std::fprintf(stderr, "%s:%zu: %s; using the built-in papers\n", ToUtf8(path).c_str(), fault.line,
               fault.text.c_str());
}

// Returns the file of the same name in the application's directory; empty for the device list's name, which
// is also there and is what devices without a paper file ask for.
std::u16string InstalledFile(const std::u16string& path) {
  const size_t separator = path.find_last_of(u"/\\");
  const std::u16string name = separator == path.npos ? path : path.substr(separator + 1);
  if (SameName(name, u"pdf.ini")) return {};
  return std::u16string(OrvaneGetAppFullPath()) + kPathSeparator + name;
}

}  // namespace

PaperFile::PaperFile(const std::u16string& path) : path_(path) {
  const ReadResult user = Read(path);
  if (user == ReadResult::kRead) return;
  writable_ = user == ReadResult::kMissing && !path.empty();
  if (writable_ && Read(InstalledFile(path)) == ReadResult::kRead) return;
  UseBuiltInPapers();
}

PaperFile::ReadResult PaperFile::Read(const std::u16string& path) {
  if (path.empty()) return ReadResult::kMissing;
  const LoadResult loaded = profile_.Load(path);
  if (loaded == LoadResult::kMissing) return ReadResult::kMissing;
  PaperReader reader;
  const std::optional<Fault> fault = loaded == LoadResult::kLoaded
                                         ? reader.Read(profile_.Lines())
                                         : std::optional(Fault{1, "the file cannot be read"});
  if (fault) {
    ReportOnce(path, *fault);
    return ReadResult::kBroken;
  }
  papers_ = reader.TakePapers();
  return ReadResult::kRead;
}

void PaperFile::UseBuiltInPapers() {
  papers_ = BuiltInPapers();
  profile_ = Profile();
  profile_.Set(kHeadSection, kFormatKey, kFormat);
  for (const PaperSize& paper : papers_) PutIntoProfile(paper);
}

bool PaperFile::PutIntoProfile(const PaperSize& paper) {
  const std::u16string section = SectionName(paper.id);
  bool done = profile_.Set(section, kNameKey, NameOf(paper));
  for (const LengthKey& row : kLengthKeys) {
    done = done && profile_.Set(section, row.key, ToUtf16(std::to_string(paper.*row.field)));
  }
  return done;
}

bool PaperFile::Put(const PaperSize& paper) {
  if (!writable_ || paper.id < 1 || paper.id > kLargestId) return false;
  return PutIntoProfile(paper) && profile_.Save(path_);
}

bool PaperFile::Remove(int32_t id) {
  return writable_ && profile_.RemoveSection(SectionName(id)) && profile_.Save(path_);
}

}  // namespace hdi
