// Text and dates as a PDF and its XMP metadata hold them.
#pragma once

#include <cstdint>
#include <qpdf/QPDFObjectHandle.hh>
#include <string>
#include <string_view>

namespace hdiplot {

// UTF-8 that XML can hold too (XML 1.0, 2.2): every other byte or character is U+FFFD.
[[nodiscard]] std::string CleanText(std::string_view text);

// A text string (ISO 32000-1:2008, 7.9.2.2) of the clean text, in UTF-16 where PDFDocEncoding lacks a letter.
[[nodiscard]] QPDFObjectHandle TextString(std::string_view text);

// Dates as in 7.9.4. The first is in UTC, the second in local time with its offset.
[[nodiscard]] std::string PdfDate(int64_t secondsSince1970);
[[nodiscard]] std::string PdfDateOfNow();

// The date as XMP writes it, with the offset only where the PDF's has one. Empty for what is no full date.
[[nodiscard]] std::string XmpDate(std::string_view pdfDate);

}  // namespace hdiplot
