// Matches a LOGFONTW to a face through GDI's mapper, as when the driver embeds the font. Results are cached:
// a plot repeats the same few requests.
#include "platform/font_faces.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <iterator>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <utility>

#include "platform/face_name.h"
#include "platform/windows/font_face_list.h"

namespace hdi {
namespace {

// The fields of a LOGFONTW that select a face; equal requests select the same face.
struct FontRequest {
  explicit FontRequest(const LOGFONTW& font) {
    key.lfHeight = -1000;  // any size: outlines scale
    key.lfWeight = font.lfWeight;
    key.lfItalic = font.lfItalic != 0 ? 1 : 0;
    key.lfCharSet = font.lfCharSet;
    key.lfOutPrecision = font.lfOutPrecision;
    key.lfPitchAndFamily = font.lfPitchAndFamily;
    const auto* end = std::find(font.lfFaceName, std::end(font.lfFaceName) - 1, u'\0');
    std::copy(font.lfFaceName, end, key.lfFaceName);
  }

  bool operator==(const FontRequest& other) const { return Bytes() == other.Bytes(); }

  [[nodiscard]] std::string_view Bytes() const { return {reinterpret_cast<const char*>(&key), sizeof(key)}; }
  [[nodiscard]] ::LOGFONTW Gdi() const { return std::bit_cast<::LOGFONTW>(key); }

  LOGFONTW key = {};  // the name is zero-padded
};

struct HashRequest {
  size_t operator()(const FontRequest& request) const {
    return std::hash<std::string_view>()(request.Bytes());
  }
};

// The result for one request.
struct Selection {
  const SystemFace* face = nullptr;
  bool isOfMapper = false;               // GDI selects the face for the request unmodified
  std::vector<const SystemFace*> order;  // all faces, best first; empty until needed
  std::unordered_map<char16_t, const SystemFace*> faceWith;
};

// The character set of the system's language; ANSI if it has none.
BYTE SystemCharSet() {
  CHARSETINFO info = {};
  const UINT_PTR codePage = GetACP();
  if (TranslateCharsetInfo(reinterpret_cast<DWORD*>(codePage), &info, TCI_SRCCODEPAGE) == FALSE) {
    return ANSI_CHARSET;
  }
  return static_cast<BYTE>(info.ciCharset);
}

// The faces that GDI's mapper selects for other languages, the system's own first.
std::vector<const SystemFace*> FacesForLanguages(const FontRequest& request) {
  const BYTE charSets[] = {SystemCharSet(),  ANSI_CHARSET,       EASTEUROPE_CHARSET, RUSSIAN_CHARSET,
                           GREEK_CHARSET,    TURKISH_CHARSET,    BALTIC_CHARSET,     HEBREW_CHARSET,
                           ARABIC_CHARSET,   VIETNAMESE_CHARSET, THAI_CHARSET,       GB2312_CHARSET,
                           SHIFTJIS_CHARSET, HANGUL_CHARSET,     CHINESEBIG5_CHARSET};
  std::vector<const SystemFace*> faces;
  for (const BYTE charSet : charSets) {
    ::LOGFONTW font = request.Gdi();
    font.lfCharSet = charSet;
    font.lfOutPrecision = OUT_TT_ONLY_PRECIS;
    if (const SystemFace* face = FaceList::Get().Mapped(font)) faces.push_back(face);
  }
  return faces;
}

// Distance of a face from the request and from the face `like` that it selected.
auto Distance(const SystemFace& face, const FontRequest& request, const SystemFace* like) {
  constexpr uint8_t kPitch = TMPF_FIXED_PITCH;
  constexpr uint8_t kClass = 0xF0;
  const uint8_t wanted = like == nullptr ? face.PitchAndFamily() : like->PitchAndFamily();
  const auto difference = static_cast<uint8_t>(wanted ^ face.PitchAndFamily());
  const int32_t weight = request.key.lfWeight == 0 ? FW_REGULAR : request.key.lfWeight;
  return std::tuple((difference & kPitch) != 0, (difference & kClass) != 0,
                    face.IsItalic() != (request.key.lfItalic != 0),
                    std::abs(int64_t{face.Weight()} - weight));
}

// Symbol faces come first for symbol requests and last for others, since their letters are pictures.
std::vector<const SystemFace*> SortFaces(const FontRequest& request, const SystemFace* like) {
  std::vector<const SystemFace*> rest = FaceList::Get().All();
  std::stable_sort(rest.begin(), rest.end(), [&](const SystemFace* a, const SystemFace* b) {
    return Distance(*a, request, like) < Distance(*b, request, like);
  });
  std::vector<const SystemFace*> sorted = FacesForLanguages(request);
  sorted.insert(sorted.end(), rest.begin(), rest.end());
  const bool asksForSymbols = request.key.lfCharSet == SYMBOL_CHARSET;
  std::stable_partition(sorted.begin(), sorted.end(),
                        [&](const SystemFace* face) { return face->IsSymbol() == asksForSymbols; });
  return sorted;
}

Selection Select(const FontRequest& request) {
  Selection selection;
  ::LOGFONTW font = request.Gdi();
  selection.face = FaceList::Get().Mapped(font);
  selection.isOfMapper = selection.face != nullptr;
  if (selection.isOfMapper) return selection;
  font.lfOutPrecision = OUT_TT_ONLY_PRECIS;
  selection.face = FaceList::Get().Mapped(font);
  if (selection.face != nullptr) return selection;
  selection.order = SortFaces(request, nullptr);
  if (!selection.order.empty()) selection.face = selection.order.front();
  return selection;
}

Selection& Selected(const FontRequest& request) {
  static std::unordered_map<FontRequest, Selection, HashRequest> selections;
  // Most requests repeat the previous one.
  static std::pair<const FontRequest, Selection>* last = nullptr;
  if (last == nullptr || !(last->first == request)) {
    auto found = selections.find(request);
    if (found == selections.end()) found = selections.emplace(request, Select(request)).first;
    last = &*found;
  }
  return last->second;
}

bool Selects(const LOGFONTW& font, const FontFace& face) {
  const Selection& selection = Selected(FontRequest(font));
  return selection.face == &face && selection.isOfMapper;
}

}  // namespace

const FontFace* FindFace(const LOGFONTW& font) { return Selected(FontRequest(font)).face; }

bool HasFamily(const std::u16string& family) {
  const std::u16string_view name = std::u16string_view(family).substr(family.starts_with(u'@') ? 1 : 0);
  if (name.empty()) return false;
  LOGFONTW font = {};
  font.lfCharSet = DEFAULT_CHARSET;
  SetFaceName(font, name);
  const SystemFace* face = Selected(FontRequest(font)).face;
  return face != nullptr && face->IsNamed(name);
}

const FontFace* FindFaceWith(char16_t unit, const LOGFONTW& font) {
  const FontRequest request(font);
  Selection& selection = Selected(request);
  const auto known = selection.faceWith.find(unit);
  if (known != selection.faceWith.end()) return known->second;

  if (selection.order.empty()) selection.order = SortFaces(request, selection.face);
  const auto found = std::find_if(selection.order.begin(), selection.order.end(),
                                  [unit](const SystemFace* face) { return face->HasCharacter(unit); });
  const SystemFace* face = found == selection.order.end() ? nullptr : *found;
  selection.faceWith.emplace(unit, face);
  return face;
}

LOGFONTW SelectingFont(const LOGFONTW& font, const FontFace& face) {
  LOGFONTW selecting = font;
  SetFaceName(selecting, static_cast<const SystemFace&>(face).SelectingName());
  if (Selects(selecting, face)) return selecting;
  selecting.lfCharSet = DEFAULT_CHARSET;
  if (Selects(selecting, face)) return selecting;
  selecting.lfOutPrecision = OUT_TT_ONLY_PRECIS;
  if (Selects(selecting, face)) return selecting;
  selecting.lfWeight = face.Weight();
  if (Selects(selecting, face)) return selecting;
  selecting.lfItalic = face.IsItalic() ? 1 : 0;
  return selecting;
}

}  // namespace hdi
