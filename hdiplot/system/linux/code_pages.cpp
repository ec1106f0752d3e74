// Code pages through iconv.
#include "hdiplot/system/code_pages.h"

#include <iconv.h>

#include <memory>
#include <type_traits>

namespace hdiplot {

namespace {

struct CloseConverter {
  void operator()(iconv_t converter) const { iconv_close(converter); }
};
using Converter = std::unique_ptr<std::remove_pointer_t<iconv_t>, CloseConverter>;

Converter OpenConverter(const std::string& codePage) {
  const iconv_t opened = iconv_open("UTF-8", codePage.c_str());
  return Converter(opened == reinterpret_cast<iconv_t>(-1) ? nullptr : opened);
}

}  // namespace

bool KnowsCodePage(const std::string& name) { return OpenConverter(name) != nullptr; }

std::optional<std::string> FromCodePage(std::string_view bytes, const std::string& codePage) {
  const Converter converter = OpenConverter(codePage);
  if (converter == nullptr) return std::nullopt;
  std::string source(bytes);
  std::string text;
  char* from = source.data();
  size_t left = source.size();
  while (left > 0) {
    char piece[64];
    char* to = piece;
    size_t room = sizeof piece;
    const size_t before = left;
    const size_t result = iconv(converter.get(), &from, &left, &to, &room);
    text.append(piece, static_cast<size_t>(to - piece));
    if (result != static_cast<size_t>(-1) || left == 0) continue;
    if (left < before) continue;
    text += "\ufffd";
    ++from;
    --left;
  }
  return text;
}

}  // namespace hdiplot
