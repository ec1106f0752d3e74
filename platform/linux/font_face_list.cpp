// Builds the module's list of faces.
#include "platform/linux/font_face_list.h"

#include <unicode/uchar.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <set>
#include <tuple>
#include <utility>

#include "platform/face_name.h"
#include "platform/linux/font_candidates.h"
#include "platform/unicode.h"

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#endif

namespace hdi {
namespace {

// The process's current configuration, shared by its modules.
FcConfig* CurrentConfiguration() {
#if defined(__SANITIZE_ADDRESS__)
  // fontconfig links its patterns by relative offsets, which the leak checker cannot follow.
  const __lsan::ScopedDisabler disabler;
#endif
  return FcConfigReference(nullptr);
}

// Names are compared ignoring case and up to the length of a LOGFONTW's.
std::u16string Folded(std::u16string_view name) {
  name = name.substr(0, kMaxFaceNameUnits);
  std::u16string folded(name.size() * 3, u'\0');  // case folding makes at most three units of one
  UErrorCode status = U_ZERO_ERROR;
  const int32_t length = u_strFoldCase(folded.data(), static_cast<int32_t>(folded.size()), name.data(),
                                       static_cast<int32_t>(name.size()), U_FOLD_CASE_DEFAULT, &status);
  if (U_FAILURE(status)) return std::u16string(name);
  folded.resize(static_cast<size_t>(length));
  return folded;
}

int32_t OpenTypeWeight(FcPattern* pattern) {
  int weight = FC_WEIGHT_REGULAR;
  FcPatternGetInteger(pattern, FC_WEIGHT, 0, &weight);
  return std::max(FcWeightToOpenType(weight), 1);  // 0 would request any weight
}

bool IsSlanted(FcPattern* pattern) {
  int slant = FC_SLANT_ROMAN;
  FcPatternGetInteger(pattern, FC_SLANT, 0, &slant);
  return slant != FC_SLANT_ROMAN;
}

std::vector<std::u16string> Strings(FcPattern* pattern, const char* object) {
  std::vector<std::u16string> strings;
  FcChar8* value = nullptr;
  for (int i = 0; FcPatternGetString(pattern, object, i, &value) == FcResultMatch; ++i) {
    strings.push_back(ToUtf16(reinterpret_cast<const char*>(value)));
  }
  return strings;
}

// Assigns names so that no two faces can be confused.
class Naming {
 public:
  // Nothing for a candidate that an earlier one hides.
  std::optional<FaceNames> Settle(const FontCandidate& candidate) {
    FaceNames names;
    const auto isFree = [&](const auto& family) {
      return !selected_.contains(Key(family, candidate.pattern));
    };
    const auto selecting = std::find_if(candidate.families.begin(), candidate.families.end(), isFree);
    if (selecting == candidate.families.end()) return std::nullopt;
    names.selecting = *selecting;
    names.full = FreeFullName(candidate, names.selecting);
    if (names.full.empty()) return std::nullopt;

    fullNames_.insert(names.full);
    for (const std::u16string& family : candidate.families) selected_.insert(Key(family, candidate.pattern));
    names.families = candidate.families;
    return names;
  }

 private:
  using SelectionKey = std::tuple<std::u16string, int32_t, bool>;

  static SelectionKey Key(const std::u16string& family, FcPattern* pattern) {
    return {Folded(family), OpenTypeWeight(pattern), IsSlanted(pattern)};
  }

  // Empty if none is free.
  [[nodiscard]] std::u16string FreeFullName(const FontCandidate& candidate,
                                            const std::u16string& family) const {
    const std::u16string style =
        candidate.styles.empty() ? std::u16string() : u' ' + candidate.styles.front();
    for (const std::u16string& name :
         {candidate.fullNames.empty() ? family + style : candidate.fullNames.front(), family + style}) {
      if (!fullNames_.contains(name)) return name;
    }
    return {};
  }

  std::set<SelectionKey> selected_;
  std::set<std::u16string> fullNames_;
};

}  // namespace

SystemFace::SystemFace(FcPattern* pattern, FaceNames names, bool isInCollection, bool isSymbol,
                       uint64_t fileSize)
    : pattern_(pattern),
      names_(std::move(names)),
      weight_(OpenTypeWeight(pattern)),
      isItalic_(IsSlanted(pattern)),
      isInCollection_(isInCollection),
      isSymbol_(isSymbol),
      fileSize_(fileSize) {}

double SystemFace::Advance(char16_t unit) const { return Glyphs().Advance(Glyphs().GlyphOf(unit)); }

std::vector<GlyphContour> SystemFace::Outline(char16_t unit) const {
  return Glyphs().Outline(Glyphs().GlyphOf(unit));
}

std::string SystemFace::Path() const {
  FcChar8* path = nullptr;
  FcPatternGetString(pattern_, FC_FILE, 0, &path);
  return reinterpret_cast<const char*>(path);
}

uint32_t SystemFace::MemberIndex() const {
  int index = 0;
  FcPatternGetInteger(pattern_, FC_INDEX, 0, &index);
  return static_cast<uint32_t>(index);
}

bool SystemFace::SeemsToHave(char16_t unit) const {
  constexpr FcChar32 kSymbolPage = 0xF000;
  FcCharSet* characters = nullptr;
  if (FcPatternGetCharSet(pattern_, FC_CHARSET, 0, &characters) != FcResultMatch) return true;
  return FcCharSetHasChar(characters, unit) == FcTrue ||
         (unit < 0x100 && FcCharSetHasChar(characters, kSymbolPage + unit) == FcTrue);
}

const FontGlyphs& SystemFace::Glyphs() const {
  if (glyphs_ == nullptr) glyphs_ = std::make_unique<FontGlyphs>(Path(), MemberIndex());
  return *glyphs_;
}

const FaceList& FaceList::Get() {
  static const FaceList kList;
  return kList;
}

FaceList::FaceList() : config_(CurrentConfiguration()), patterns_(FcFontSetCreate()) {
  if (config_ == nullptr || patterns_ == nullptr) return;
  Naming naming;
  for (const FontCandidate& candidate : ListFontCandidates(config_.get())) {
    std::optional<FaceNames> names = naming.Settle(candidate);
    if (!names) continue;
    faces_.push_back(std::make_unique<SystemFace>(candidate.pattern, *std::move(names),
                                                  candidate.isInCollection, candidate.isSymbol,
                                                  candidate.fileSize));
    byPattern_.emplace(candidate.pattern, faces_.back().get());
    FcPatternReference(candidate.pattern);
    FcFontSetAdd(patterns_.get(), candidate.pattern);
    AddNames(*faces_.back());
  }
}

void FaceList::AddNames(const SystemFace& face) {
  for (const std::u16string& name : face.Names().families) AddName(name, NameKind::kFamily, &face);
  // Typographic family names, and names in legacy encodings.
  for (const std::u16string& name : Strings(face.Pattern(), FC_FAMILY)) {
    AddName(name, NameKind::kOtherFamily, &face);
  }
  for (const std::u16string& name : Strings(face.Pattern(), FC_FULLNAME)) {
    AddName(name, NameKind::kFullName, &face);
  }
}

void FaceList::AddName(std::u16string_view name, NameKind kind, const SystemFace* face) {
  std::vector<NamedFace>& named = byName_[Folded(name)];
  if (named.empty() || named.back().face != face) named.push_back({kind, face});
}

const std::vector<NamedFace>* FaceList::Named(std::u16string_view name) const {
  const auto found = byName_.find(Folded(name));
  return found == byName_.end() ? nullptr : &found->second;
}

std::vector<const SystemFace*> FaceList::Sorted(FcPattern* pattern) const {
  std::vector<const SystemFace*> sorted;
  if (faces_.empty()) return sorted;
  FcFontSet* sets[] = {patterns_.get()};
  FcResult result = FcResultMatch;
  FcFontSet* found = FcFontSetSort(config_.get(), sets, 1, pattern, FcFalse, nullptr, &result);
  if (found == nullptr) return sorted;
  for (int i = 0; i < found->nfont; ++i) {
    const auto face = byPattern_.find(found->fonts[i]);
    if (face != byPattern_.end()) sorted.push_back(face->second);
  }
  FcFontSetSortDestroy(found);
  return sorted;
}

}  // namespace hdi
