// Splits text into runs of one font each.
#include <algorithm>
#include <cstddef>
#include <iterator>
#include <memory>
#include <new>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "platform/face_name.h"
#include "platform/font_faces.h"
#include "platform/font_services.h"
#include "platform/host_library.h"

namespace hdi {
namespace {

// The content of one run, copied by MakeRuns.
struct RunContent {
  LOGFONTW font;
  const char16_t* text;
  int32_t count;
  const double* advances;  // or null
  std::u16string_view fontName;
};

static_assert(alignof(HT_TextRun) >= alignof(double) && sizeof(HT_TextRun) % alignof(double) == 0);
static_assert(alignof(LOGFONTW) >= alignof(char16_t));

// Frees a block of that many nodes, including the sentinel.
void ReleaseRuns(HT_TextRun* end, size_t nodes) {
  std::destroy_n(end, nodes);
  ::operator delete(end);
}

// A text is one block of memory: the sentinel, the runs, all advances, all fonts, all characters. Returns the
// sentinel at its start.
HT_TextRun* MakeRuns(std::span<const RunContent> contents) {
  size_t characters = 0;
  size_t advances = 0;
  for (const RunContent& content : contents) {
    characters += static_cast<size_t>(content.count);
    if (content.advances != nullptr) advances += static_cast<size_t>(content.count);
  }
  const size_t nodes = contents.size() + 1;
  auto* block = static_cast<std::byte*>(
      ::operator new(nodes * sizeof(HT_TextRun) + advances * sizeof(double) +
                     contents.size() * sizeof(LOGFONTW) + characters * sizeof(char16_t)));
  auto* const end = reinterpret_cast<HT_TextRun*>(block);
  std::uninitialized_value_construct_n(end, nodes);
  const auto release = [nodes](HT_TextRun* runs) { ReleaseRuns(runs, nodes); };
  std::unique_ptr<HT_TextRun, decltype(release)> owner(
      end, release);  // releases the block if copying a name throws
  auto* advance = reinterpret_cast<double*>(end + nodes);
  auto* font = reinterpret_cast<LOGFONTW*>(advance + advances);
  auto* character = reinterpret_cast<char16_t*>(font + contents.size());

  HT_TextRun* previous = end;
  for (const RunContent& content : contents) {
    HT_TextRun* run = previous + 1;
    previous->next = run;
    run->previous = previous;
    run->lf = new (font++) LOGFONTW(content.font);
    run->text = character;
    run->count = content.count;
    character = std::copy_n(content.text, content.count, character);
    if (content.advances != nullptr) {
      run->advances = advance;
      advance = std::copy_n(content.advances, content.count, advance);
    }
    run->fontName = content.fontName;
    previous = run;
  }
  previous->next = end;
  end->previous = previous;
  return owner.release();
}

// Chooses the face of each character.
class FaceChooser {
 public:
  explicit FaceChooser(const LOGFONTW& font) : font_(font), own_(FindFace(font)) {}

  // Depends only on the character and not on its neighbours, so that a text gets the same faces in any order.
  // Null only on a system without faces.
  const FontFace* FaceFor(char16_t unit) const {
    if (own_ == nullptr || own_->HasCharacter(unit)) return own_;
    const FontFace* other = FindFaceWith(unit, font_);
    return other == nullptr ? own_ : other;
  }

 private:
  const LOGFONTW& font_;
  const FontFace* own_;
};

// On a system without faces the text is one run under its given name, which GetFontFullName does not know.
std::vector<RunContent> Split(const LOGFONTW& font, std::span<const char16_t> text, const double* advances) {
  std::vector<RunContent> runs;
  const FaceChooser chooser(font);
  const FontFace* last = nullptr;
  for (size_t i = 0; i < text.size(); ++i) {
    const FontFace* face = chooser.FaceFor(text[i]);
    if (runs.empty() || face != last) {
      runs.push_back({face == nullptr ? font : SelectingFont(font, *face), &text[i], 0,
                      advances == nullptr ? nullptr : advances + i,
                      face == nullptr ? FaceName(font) : std::u16string_view(face->FullName())});
      last = face;
    }
    ++runs.back().count;
  }
  return runs;
}

const LOGFONTW& InterfaceFontOr(const LOGFONTW& font) {
  static const std::optional<LOGFONTW> kInterfaceFont = SystemFontServices().DefaultInterfaceFont();
  return kInterfaceFont ? *kInterfaceFont : font;
}

}  // namespace

HT_Text::HT_Text(const LOGFONTW* font, const char16_t* text, int32_t count, const double* advances) {
  std::vector<RunContent> contents;
  if (font != nullptr && text != nullptr && count > 0) {
    const LOGFONTW& chosen = advances == nullptr ? InterfaceFontOr(*font) : *font;
    contents = Split(chosen, {text, static_cast<size_t>(count)}, advances);
  }
  runs = MakeRuns(contents);
  runCount = contents.size();
}

HT_Text::HT_Text(const HT_Text& other) : runCount(other.runCount) {
  std::vector<RunContent> contents;
  for (const HT_TextRun* run = other.runs->next; run != other.runs; run = run->next) {
    contents.push_back({*run->lf, run->text, run->count, run->advances, run->fontName});
  }
  runs = MakeRuns(contents);
}

HT_Text::~HT_Text() { ReleaseRuns(runs, runCount + 1); }

}  // namespace hdi
