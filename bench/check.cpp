#include "bench/check.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "bench/text_fonts.h"

namespace bench {
namespace {

std::string OutputOf(const std::string& command) {
  const std::unique_ptr<FILE, decltype(&pclose)> stream(popen(command.c_str(), "r"), &pclose);
  if (stream == nullptr) throw std::runtime_error("cannot run " + command);
  std::string output;
  std::array<char, 4096> block;
  while (const size_t size = fread(block.data(), 1, block.size(), stream.get())) {
    output.append(block.data(), size);
  }
  return output;
}

// The characters of a UTF-8 text, sorted by their bytes, without blanks and control characters.
std::vector<std::string_view> SortedCharacters(std::string_view text) {
  const auto isContinuation = [](char byte) { return (byte & 0xC0) == 0x80; };
  std::vector<std::string_view> characters;
  for (size_t begin = 0; begin < text.size();) {
    size_t end = begin + 1;
    while (end < text.size() && isContinuation(text[end])) ++end;
    if (static_cast<unsigned char>(text[begin]) > ' ') characters.push_back(text.substr(begin, end - begin));
    begin = end;
  }
  std::ranges::sort(characters);
  return characters;
}

// With MuPDF, which reports every character; other readers merge equal ones at the same place.
void CheckTexts(const std::filesystem::path& file, const Scene& scene) {
  std::string drawn;
  for (const Text& text : scene.texts) drawn += ToUtf8(text.units);
  std::string found = OutputOf("mutool draw -q -F txt '" + file.string() + "' 2>/dev/null");
  // Of characters that share a glyph MuPDF reports the last one.
  constexpr std::string_view kSoftHyphen = "\xC2\xAD";
  for (size_t at = 0; (at = found.find(kSoftHyphen, at)) != std::string::npos;) {
    found.replace(at, kSoftHyphen.size(), "-");
  }
  if (SortedCharacters(drawn) != SortedCharacters(found)) {
    throw std::runtime_error(file.string() + ": the texts are not those of the scene");
  }
}

}  // namespace

std::string PictureOf(const std::filesystem::path& file, const Scene& scene) {
  const std::string pages = scene.PageCount() > 1 ? "1," + std::to_string(scene.PageCount()) : "1";
  return OutputOf("mutool draw -q -r 72 -F pgm -o - '" + file.string() + "' " + pages + " 2>/dev/null");
}

void CheckPicture(const std::filesystem::path& file, const std::string& wanted, const Scene& scene) {
  // Where lines cross, their antialiased edges add up if each is a path of its own, and not within one path.
  const double tolerance = scene.kind == Kind::kStrokes ? 0.1 : 0.05;  // of the ink
  const std::string found = PictureOf(file, scene);
  double difference = 0;
  double ink = 0;
  for (size_t i = 0; i < wanted.size() && i < found.size(); ++i) {
    const int pixel = static_cast<unsigned char>(wanted[i]);
    difference += std::abs(pixel - static_cast<unsigned char>(found[i]));
    ink += 255 - pixel;
  }
  if (wanted.empty() || found.size() != wanted.size() || difference > tolerance * ink) {
    throw std::runtime_error(file.string() + " does not look like the first contestant's file");
  }
}

void CheckFile(const std::filesystem::path& file, const Scene& scene) {
  const std::string command = "qpdf --check '" + file.string() + "' >/dev/null";
  if (std::system(command.c_str()) != 0) throw std::runtime_error(file.string() + " is not a valid PDF");
  if (!scene.texts.empty()) CheckTexts(file, scene);
}

}  // namespace bench
