// Matches a LOGFONTW to a face. Results are cached: a plot repeats the same few requests.
#include <algorithm>
#include <cstdlib>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <vector>

#include "platform/face_name.h"
#include "platform/font_faces.h"
#include "platform/linux/font_face_list.h"
#include "platform/linux/font_patterns.h"

namespace hdi {
namespace {

struct HashRequest {
  size_t operator()(const FontRequest& request) const {
    const size_t rest = static_cast<size_t>(request.weight) << 32 |
                        static_cast<size_t>(request.isItalic) << 16 |
                        static_cast<size_t>(request.charSet) << 8 | request.pitchAndFamily;
    return std::hash<std::u16string_view>()(request.Name()) ^ rest * 0x9E3779B97F4A7C15;
  }
};

// The result for one request.
struct Selection {
  const SystemFace* face = nullptr;
  std::vector<const SystemFace*> order;  // all faces, best first; empty until needed
  std::unordered_map<char16_t, const SystemFace*> faceWith;
};

// Slant ranks before weight: whether a face needs synthetic slant is decided once a family.
const SystemFace* PickByName(const FontRequest& request) {
  const std::vector<NamedFace>* named = FaceList::Get().Named(request.Name());
  if (named == nullptr || request.nameLength == 0) return nullptr;
  const auto distance = [&](const NamedFace& candidate) {
    return std::tuple(candidate.kind, candidate.face->IsItalic() != request.isItalic,
                      std::abs(int64_t{candidate.face->Weight()} - request.weight));
  };
  return std::min_element(named->begin(), named->end(),
                          [&](const NamedFace& a, const NamedFace& b) { return distance(a) < distance(b); })
      ->face;
}

// Symbol faces come first for symbol requests and last for others, since their letters are pictures.
std::vector<const SystemFace*> SortFaces(const FontRequest& request) {
  const FaceList& list = FaceList::Get();
  if (list.Faces().empty()) return {};
  const OwnedPattern pattern = PatternFor(request, list.Config());
  if (pattern == nullptr) return {};
  std::vector<const SystemFace*> sorted = list.Sorted(pattern.get());
  std::stable_partition(sorted.begin(), sorted.end(),
                        [&](const SystemFace* face) { return face->IsSymbol() == request.AsksForSymbols(); });
  return sorted;
}

const SystemFace* FirstCovering(const FontRequest& request, const std::vector<const SystemFace*>& order) {
  const auto covering = std::find_if(order.begin(), order.end(), [&](const SystemFace* face) {
    return CoversCharacterSet(face->Pattern(), request);
  });
  return covering == order.end() ? nullptr : *covering;
}

// Selects the named family, unless only another one covers the requested character set.
Selection Select(const FontRequest& request) {
  Selection selection;
  selection.face = PickByName(request);
  const bool isUsable = selection.face != nullptr &&
                        (!request.AsksForCharSet() || CoversCharacterSet(selection.face->Pattern(), request));
  if (isUsable) return selection;
  selection.order = SortFaces(request);
  if (const SystemFace* covering = FirstCovering(request, selection.order)) {
    selection.face = covering;
  } else if (selection.face == nullptr && !selection.order.empty()) {
    selection.face = selection.order.front();
  }
  return selection;
}

Selection& Selected(const FontRequest& request) {
  static std::unordered_map<FontRequest, Selection, HashRequest> selections;
  // Most requests repeat the previous one.
  static std::pair<const FontRequest, Selection>* last = nullptr;
  if (last == nullptr || last->first != request) {
    auto found = selections.find(request);
    if (found == selections.end()) found = selections.emplace(request, Select(request)).first;
    last = &*found;
  }
  return last->second;
}

}  // namespace

const FontFace* FindFace(const LOGFONTW& font) { return Selected(FontRequest(font)).face; }

bool HasFamily(const std::u16string& family) {
  return FaceList::Get().Named(family.starts_with(u'@') ? family.substr(1) : family) != nullptr;
}

const FontFace* FindFaceWith(char16_t unit, const LOGFONTW& font) {
  const FontRequest request(font);
  Selection& selection = Selected(request);
  const auto known = selection.faceWith.find(unit);
  if (known != selection.faceWith.end()) return known->second;

  if (selection.order.empty()) selection.order = SortFaces(request);
  const auto found = std::find_if(
      selection.order.begin(), selection.order.end(),
      [unit](const SystemFace* face) { return face->SeemsToHave(unit) && face->HasCharacter(unit); });
  const SystemFace* face = found == selection.order.end() ? nullptr : *found;
  selection.faceWith.emplace(unit, face);
  return face;
}

LOGFONTW SelectingFont(const LOGFONTW& font, const FontFace& face) {
  LOGFONTW selecting = font;
  SetFaceName(selecting, face.Family());
  if (FindFace(selecting) == &face) return selecting;
  selecting.lfCharSet = kDefaultCharSet;
  if (FindFace(selecting) == &face) return selecting;
  selecting.lfWeight = face.Weight();
  if (FindFace(selecting) == &face) return selecting;
  selecting.lfItalic = face.IsItalic() ? 1 : 0;
  return selecting;
}

}  // namespace hdi
