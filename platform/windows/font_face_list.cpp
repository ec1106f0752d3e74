// Builds the module's list of faces.
#include "platform/windows/font_face_list.h"

#include <algorithm>
#include <bit>
#include <cwchar>
#include <iterator>
#include <tuple>
#include <utility>

#include "platform/face_name.h"
#include "platform/unicode.h"
#include "platform/windows/selected_font.h"

namespace hdi {
namespace {

// Selects the font as its file has it, without synthetic slant or weight.
::LOGFONTW OwnFont(const FontFacts& facts, std::u16string_view name) {
  LOGFONTW font = {};
  font.lfHeight = -1000;  // any size: only the tables are read
  font.lfWeight = facts.weight;
  font.lfItalic = facts.isItalic ? 1 : 0;
  font.lfCharSet = DEFAULT_CHARSET;
  font.lfOutPrecision = OUT_TT_ONLY_PRECIS;
  SetFaceName(font, name);
  return std::bit_cast<::LOGFONTW>(font);
}

int CALLBACK CollectFont(const ::LOGFONTW* font, const TEXTMETRICW*, DWORD type, LPARAM fonts) {
  // '@' marks fonts with glyphs rotated for vertical text.
  if ((type & TRUETYPE_FONTTYPE) != 0 && font->lfFaceName[0] != L'@') {
    reinterpret_cast<std::vector<::LOGFONTW>*>(fonts)->push_back(*font);
  }
  return 1;
}

// Without a name, lists one font of each family and character set; with a name, the fonts of that family.
std::vector<::LOGFONTW> ListFonts(const wchar_t* family) {
  ::LOGFONTW query = {};
  query.lfCharSet = DEFAULT_CHARSET;
  std::copy_n(family, wcsnlen(family, kMaxFaceNameUnits), query.lfFaceName);
  std::vector<::LOGFONTW> fonts;
  const HDC device = CreateCompatibleDC(nullptr);
  EnumFontFamiliesExW(device, &query, CollectFont, reinterpret_cast<LPARAM>(&fonts), 0);
  DeleteDC(device);
  return fonts;
}

}  // namespace

SystemFace::SystemFace(FontFacts facts, std::u16string fullName, std::u16string selectingName,
                       const ::LOGFONTW& own)
    : facts_(std::move(facts)),
      fullName_(std::move(fullName)),
      selectingName_(std::move(selectingName)),
      own_(own) {
  const SelectedFont font(own_);
  TEXTMETRICW metrics = {};
  GetTextMetricsW(font.Device(), &metrics);
  pitchAndFamily_ = metrics.tmPitchAndFamily;
}

bool SystemFace::IsNamed(std::u16string_view name) const {
  const auto equals = [&](const std::u16string& own) {
    return SameName(std::u16string_view(own).substr(0, kMaxFaceNameUnits), name.substr(0, kMaxFaceNameUnits));
  };
  return std::any_of(facts_.names.families.begin(), facts_.names.families.end(), equals) ||
         std::any_of(facts_.names.fullNames.begin(), facts_.names.fullNames.end(), equals);
}

FaceList& FaceList::Get() {
  static FaceList list;
  return list;
}

const SystemFace* FaceList::Mapped(const ::LOGFONTW& font) {
  FontNaming names;
  std::optional<FontFacts> facts;
  {
    const SelectedFont selected(font);
    names = ReadNaming(selected);
    const auto known = std::find_if(known_.begin(), known_.end(),
                                    [&](const Known& candidate) { return candidate.names == names; });
    if (known != known_.end()) return known->face.get();
    facts = ReadFacts(selected);
  }
  known_.push_back({std::move(names), facts ? MakeFace(*std::move(facts)) : nullptr});
  return known_.back().face.get();
}

// Null for a font that no LOGFONTW selects unmodified.
std::unique_ptr<SystemFace> FaceList::MakeFace(FontFacts facts) {
  const std::u16string fullName = FreeFullName(facts.names);
  if (fullName.empty()) return nullptr;
  for (const std::u16string& name : {facts.names.families.front(), fullName}) {
    const ::LOGFONTW own = OwnFont(facts, name);
    if (ReadNaming(SelectedFont(own)) != facts.names) continue;
    fullNames_.insert(fullName);
    return std::make_unique<SystemFace>(std::move(facts), fullName, name, own);
  }
  return nullptr;
}

// Empty if every candidate name is taken.
std::u16string FaceList::FreeFullName(const FontNaming& names) const {
  const std::u16string composed =
      names.style.empty() ? names.families.front() : names.families.front() + u' ' + names.style;
  const std::u16string& own = names.fullNames.empty() ? composed : names.fullNames.front();
  for (const std::u16string& name : {own, composed}) {
    if (!name.empty() && !fullNames_.contains(name)) return name;
  }
  return {};
}

const std::vector<const SystemFace*>& FaceList::All() {
  if (all_) return *all_;
  std::set<const SystemFace*> faces;
  std::set<std::wstring> families;
  for (const ::LOGFONTW& first : ListFonts(L"")) {
    if (!families.insert(first.lfFaceName).second) continue;
    for (::LOGFONTW& font : ListFonts(first.lfFaceName)) {
      font.lfCharSet = DEFAULT_CHARSET;
      if (const SystemFace* face = Mapped(font)) faces.insert(face);
    }
  }
  all_.emplace(faces.begin(), faces.end());
  std::sort(all_->begin(), all_->end(), [](const SystemFace* a, const SystemFace* b) {
    const auto key = [](const SystemFace* face) {
      return std::tuple(face->Facts().distanceFromOrdinaryWidth, std::u16string_view(face->FullName()));
    };
    return key(a) < key(b);
  });
  return *all_;
}

}  // namespace hdi
