// Lists fontconfig's fonts and reads facts about them from their files.
#include "platform/linux/font_candidates.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <memory>
#include <span>
#include <string_view>
#include <tuple>

#include "platform/character_maps.h"
#include "platform/face_name.h"
#include "platform/font_names.h"
#include "platform/linux/font_face_list.h"
#include "platform/linux/font_file.h"

namespace hdi {
namespace {

constexpr uint32_t kTrueTypeVersion = 0x00010000;
constexpr uint32_t kTrueTypeTag = FontTag("true");
constexpr uint16_t kFamilyName = 1;
constexpr uint16_t kStyleName = 2;
constexpr uint16_t kFullName = 4;

std::string_view Text(FcPattern* pattern, const char* object) {
  FcChar8* value = nullptr;
  if (FcPatternGetString(pattern, object, 0, &value) != FcResultMatch) return {};
  return reinterpret_cast<const char*>(value);
}

int Number(FcPattern* pattern, const char* object, int otherwise) {
  int value = otherwise;
  FcPatternGetInteger(pattern, object, 0, &value);
  return value;
}

bool IsSet(FcPattern* pattern, const char* object) {
  FcBool value = FcFalse;
  return FcPatternGetBool(pattern, object, 0, &value) == FcResultMatch && value == FcTrue;
}

// The upper half of an index numbers the named instances of a variable font; no file holds their outlines.
bool IsSuitable(FcPattern* pattern) {
  const int index = Number(pattern, FC_INDEX, 0);
  return Text(pattern, FC_FONTFORMAT) == "TrueType" && IsSet(pattern, FC_OUTLINE) &&
         !IsSet(pattern, FC_VARIABLE) && index >= 0 && index <= 0xFFFF && !Text(pattern, FC_FILE).empty();
}

std::vector<FcPattern*> SuitablePatterns(FcConfig* config) {
  std::vector<FcPattern*> patterns;
  for (const FcSetName name : {FcSetSystem, FcSetApplication}) {
    const FcFontSet* set = FcConfigGetFonts(config, name);
    if (set == nullptr) continue;
    std::copy_if(set->fonts, set->fonts + set->nfont, std::back_inserter(patterns), IsSuitable);
  }
  return patterns;
}

// Facts about one font of a file. A font without families cannot be offered.
struct MemberFacts {
  CharacterMaps maps = CharacterMaps::kNone;
  std::vector<std::u16string> families, fullNames, styles;
};

bool HasOutlines(const FontMember& member) {
  const bool isTrueType = member.version == kTrueTypeVersion || member.version == kTrueTypeTag;
  const FontTable* glyphs = member.Find(FontTag("glyf"));
  const uint32_t needed[] = {FontTag("head"), FontTag("hhea"), FontTag("hmtx"), FontTag("loca"),
                             FontTag("maxp")};
  return isTrueType && glyphs != nullptr && glyphs->length > 0 &&
         std::all_of(std::begin(needed), std::end(needed),
                     [&](uint32_t tag) { return member.Find(tag) != nullptr; });
}

MemberFacts ReadMember(const FontFile& file, uint32_t offset) {
  // Enough for many encoding records; the maps themselves are not read here.
  constexpr uint32_t kMapRecords = 260;
  MemberFacts facts;
  const FontMember member = file.Member(offset);
  if (const FontTable* names = member.Find(FontTag("name")); names != nullptr) {
    const std::vector<uint8_t> bytes = file.Read(*names);
    facts.families = FontNames(bytes, kFamilyName);
    facts.fullNames = FontNames(bytes, kFullName);
    facts.styles = FontNames(bytes, kStyleName);
  }
  const FontTable* maps = member.Find(FontTag("cmap"));
  if (maps != nullptr && HasOutlines(member)) {
    facts.maps = FindCharacterMaps(file.Read(maps->offset, std::min(maps->length, kMapRecords)));
  }
  return facts;
}

// The fonts of one file, read up to the highest one requested.
class FileFacts {
 public:
  explicit FileFacts(const std::string& path) : path_(path), file_(path), offsets_(file_.MemberOffsets()) {}

  [[nodiscard]] const std::string& Path() const { return path_; }
  [[nodiscard]] uint64_t Size() const { return file_.Size(); }
  [[nodiscard]] bool IsCollection() const { return file_.IsCollection(); }

  [[nodiscard]] MemberFacts Member(size_t index) {
    if (index >= offsets_.size()) return {};
    while (members_.size() <= index) members_.push_back(ReadMember(file_, offsets_[members_.size()]));
    MemberFacts facts = members_[index];
    if (IsCollection())
      std::erase_if(facts.families, [&](const auto& name) { return IsAmbiguous(name, index); });
    KeepFaceNames(facts.families);
    return facts;
  }

 private:
  // Members of a collection are selected by their full family name, and the first match wins.
  [[nodiscard]] bool IsAmbiguous(const std::u16string& name, size_t index) const {
    const auto end = members_.begin() + static_cast<std::ptrdiff_t>(index);
    return name.size() > kMaxFaceNameUnits ||
           std::any_of(members_.begin(), end, [&](const MemberFacts& earlier) {
             return std::find(earlier.families.begin(), earlier.families.end(), name) !=
                    earlier.families.end();
           });
  }

  std::string path_;
  FontFile file_;
  std::vector<uint32_t> offsets_;
  std::vector<MemberFacts> members_;
};

struct SortedCandidate {
  int distanceFromOrdinaryWidth;
  int64_t age;
  std::string path;
  int index;
  FontCandidate candidate;

  [[nodiscard]] auto Key() const { return std::tie(distanceFromOrdinaryWidth, age, path, index); }
};

}  // namespace

std::vector<FontCandidate> ListFontCandidates(FcConfig* config) {
  std::vector<SortedCandidate> sorted;
  std::unique_ptr<FileFacts> file;  // patterns of one file are adjacent
  for (FcPattern* pattern : SuitablePatterns(config)) {
    std::string path(Text(pattern, FC_FILE));
    const int index = Number(pattern, FC_INDEX, 0);
    if (file == nullptr || file->Path() != path) file = std::make_unique<FileFacts>(path);
    MemberFacts facts = file->Member(static_cast<size_t>(index));
    if (facts.maps == CharacterMaps::kNone || facts.families.empty()) continue;
    sorted.push_back(
        {std::abs(Number(pattern, FC_WIDTH, FC_WIDTH_NORMAL) - FC_WIDTH_NORMAL),
         -int64_t{Number(pattern, FC_FONTVERSION, 0)}, std::move(path), index,
         FontCandidate{pattern, file->IsCollection(), facts.maps == CharacterMaps::kSymbol, file->Size(),
                       std::move(facts.families), std::move(facts.fullNames), std::move(facts.styles)}});
  }
  std::sort(sorted.begin(), sorted.end(), [](const auto& a, const auto& b) { return a.Key() < b.Key(); });

  std::vector<FontCandidate> candidates;
  candidates.reserve(sorted.size());
  for (SortedCandidate& each : sorted) candidates.push_back(std::move(each.candidate));
  return candidates;
}

}  // namespace hdi
