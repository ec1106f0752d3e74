// The files are a head of text, three words, and text compressed by zlib: lines of NAME=VALUE, and NAME{ to }
// around what belongs together.
#include "hdiplot/plot/plot_styles.h"

#include <zlib.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <string_view>
#include <system_error>
#include <utility>

#include "hdiplot/system/ascii_case.h"
#include "hdiplot/system/errors.h"
#include "hdiplot/system/files.h"
#include "hdiplot/system/names.h"
#include "hdiplot/system/split.h"

namespace hdiplot {

namespace {

constexpr size_t kHeadLength = 60;
constexpr size_t kLongest = 16U << 20;  // of the file, and of its text

std::string ReadBytes(const std::filesystem::path& file) {
  const FileStream stream = OpenToRead(file);
  if (!stream) throw FileError(file, 0, "cannot be opened: " + std::generic_category().message(errno));
  std::string bytes(kLongest, '\0');
  bytes.resize(std::fread(bytes.data(), 1, bytes.size(), stream.get()));
  if (std::ferror(stream.get()) != 0) throw FileError(file, 0, "cannot be read");
  return bytes;
}

// None for bytes that are not compressed, or much too long.
std::optional<std::string> Inflated(std::string_view bytes) {
  z_stream stream{};
  if (inflateInit(&stream) != Z_OK) return std::nullopt;
  std::string input(bytes);
  stream.next_in = reinterpret_cast<Bytef*>(input.data());
  stream.avail_in = static_cast<uInt>(input.size());
  std::string text;
  int status = Z_OK;
  while (status == Z_OK && text.size() < kLongest) {
    constexpr size_t kBlock = 1 << 16;
    const size_t size = text.size();
    text.resize(size + kBlock);
    stream.next_out = reinterpret_cast<Bytef*>(&text[size]);
    stream.avail_out = kBlock;
    status = inflate(&stream, Z_NO_FLUSH);
    text.resize(text.size() - stream.avail_out);
  }
  inflateEnd(&stream);
  return status == Z_STREAM_END ? std::optional(std::move(text)) : std::nullopt;
}

double NumberOf(std::string_view text, double fallback) {
  double number = fallback;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && std::isfinite(number) ? number : fallback;
}

// The numbers of the file that stand for the object's own value.
constexpr int kObjectEnds = 4;
constexpr int kObjectJoins = 5;

std::optional<uint32_t> EndsOf(int number) {
  constexpr std::array<uint32_t, 4> kEnds{hdi::kPenCapFlat, hdi::kPenCapSquare, hdi::kPenCapRound,
                                          hdi::kPenCapRound};  // diamonds are drawn as circles
  return number >= 0 && number < kObjectEnds ? std::optional(kEnds[static_cast<size_t>(number)])
                                             : std::nullopt;
}

std::optional<uint32_t> JoinsOf(int number) {
  constexpr std::array<uint32_t, 4> kJoins{hdi::kPenJoinMiter, hdi::kPenJoinBevel, hdi::kPenJoinRound,
                                           hdi::kPenJoinRound};
  const bool isOwn = number >= 0 && static_cast<size_t>(number) < kJoins.size() && number < kObjectJoins;
  return isOwn ? std::optional(kJoins[static_cast<size_t>(number)]) : std::nullopt;
}

// Takes the lines of the text.
class StyleParser {
 public:
  void Take(std::string_view line) {
    if (line.ends_with('{')) {
      path_.emplace_back(Trimmed(line.substr(0, line.size() - 1)));
      if (IsStyle()) style_ = {};
    } else if (line == "}") {
      if (IsStyle()) EndStyle();
      if (!path_.empty()) path_.pop_back();
    } else if (const size_t sign = line.find('='); sign != std::string_view::npos) {
      std::string_view value = line.substr(sign + 1);
      if (value.starts_with('"')) value.remove_prefix(1);
      TakeValue(line.substr(0, sign), value);
    }
  }

  [[nodiscard]] PlotStyles Finish(bool areNamed) {
    for (const Read& read : styles_) {
      PlotStyle style = read.style;
      const auto weight = weights_.find(read.weight);
      if (read.weight > 0 && weight != weights_.end()) style.lineWeight = weight->second;
      if (areNamed) {
        all_.byName[read.name] = std::move(style);
      } else if (read.index >= 0 && read.index < 255) {
        all_.byIndex[static_cast<size_t>(read.index) + 1] = std::move(style);
      }
    }
    all_.areNamed = areNamed;
    return std::move(all_);
  }

  [[nodiscard]] bool HasStyles() const { return !styles_.empty(); }

 private:
  struct Read {
    PlotStyle style;
    std::string name;
    int index = -1;  // of the colour, from 0
    int weight = 0;  // in the file's table; 0: the object's
    bool hasColor = false;
    uint32_t mode = 0;
  };

  [[nodiscard]] bool IsStyle() const { return path_.size() == 2 && path_[0] == "plot_style"; }

  void TakeValue(std::string_view key, std::string_view value) {
    const double number = NumberOf(value, 0);
    if (path_.size() == 1 && path_[0] == "custom_lineweight_table") {
      constexpr double kHeaviest = 100;  // millimetres
      const int weight = static_cast<int>(std::lround(std::clamp(number, 0.0, kHeaviest) * 100));
      weights_[static_cast<int>(NumberOf(key, -1))] = weight;
      return;
    }
    if (!IsStyle()) return;
    const int whole = static_cast<int>(std::clamp(number, -1e9, 1e9));
    PlotStyle& style = style_.style;
    if (key == "name") style_.name = FoldedName(std::string(value));
    if (key == "color") style_.hasColor = !IsObjectColor(static_cast<int64_t>(number));
    if (key == "mode_color") style_.mode = static_cast<uint32_t>(static_cast<int64_t>(number));
    if (key == "color_policy") style.isGrey = (whole & 2) != 0;
    if (key == "screen") style.screening = std::clamp(whole, 0, 100);
    if (key == "lineweight") style_.weight = whole;
    if (key == "linetype") style.lineType = PlotLineType(whole);
    if (key == "fill_style") style.fill = PlotFill(whole);
    if (key == "end_style") style.ends = EndsOf(whole);
    if (key == "join_style") style.joins = JoinsOf(whole);
  }

  static bool IsObjectColor(int64_t color) { return color == -1 || color == -1006632961; }

  void EndStyle() {
    if (style_.hasColor) {
      style_.style.color = Rgb{static_cast<uint8_t>(style_.mode >> 16),
                               static_cast<uint8_t>(style_.mode >> 8), static_cast<uint8_t>(style_.mode)};
    }
    style_.index = static_cast<int>(NumberOf(path_.back(), -1));
    styles_.push_back(std::move(style_));
    style_ = {};
  }

  std::vector<std::string> path_;  // of the open braces
  Read style_;
  std::vector<Read> styles_;
  std::map<int, int> weights_;  // hundredths of a millimetre, by number
  PlotStyles all_;
};

}  // namespace

Rgb GreyOf(Rgb color) {
  // Luma with the weights of ITU-R BT.601, in thousandths.
  const int luma = 299 * color.red + 587 * color.green + 114 * color.blue;
  const auto grey = static_cast<uint8_t>((luma + 500) / 1000);
  return {grey, grey, grey};
}

Rgb PlotStyle::Plotted(Rgb object) const {
  Rgb plotted = color.value_or(object);
  if (isGrey) plotted = GreyOf(plotted);
  const auto screened = [this](uint8_t part) {
    return static_cast<uint8_t>(255 - (255 - part) * screening / 100);
  };
  return {screened(plotted.red), screened(plotted.green), screened(plotted.blue)};
}

PlotStyles ReadPlotStyles(const std::filesystem::path& file) {
  const std::string bytes = ReadBytes(file);
  const std::string_view head = std::string_view(bytes).substr(0, kHeadLength);
  if (!head.starts_with("PIAFILEVERSION"))
    throw FileError(file, 0, "this is no file of plot styles (CTB or STB)");
  const std::optional<std::string> text =
      bytes.size() > kHeadLength ? Inflated(std::string_view(bytes).substr(kHeadLength)) : std::nullopt;
  if (!text) throw FileError(file, 0, "the plot styles are damaged");
  StyleParser parser;
  std::string_view left = *text;
  while (!left.empty()) {
    const size_t end = std::min(left.find('\n'), left.size());
    parser.Take(Trimmed(left.substr(0, end)));
    left.remove_prefix(std::min(end + 1, left.size()));
  }
  if (!parser.HasStyles()) throw FileError(file, 0, "there are no plot styles in it");
  return parser.Finish(head.find("STBVER") != std::string_view::npos);
}

}  // namespace hdiplot
