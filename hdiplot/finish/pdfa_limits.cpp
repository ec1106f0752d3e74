#include "hdiplot/finish/pdfa_limits.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <qpdf/QPDFObjectHandle.hh>
#include <string>
#include <vector>

#include "hdiplot/finish/objects.h"
#include "hdiplot/finish/pdfa.h"

namespace hdiplot {

namespace {

constexpr double kLargestReal = 3.403e38;
constexpr double kSmallestReal = 1.175e-38;
constexpr size_t kLongestString = 32767;
constexpr size_t kLongestName = 127;
constexpr size_t kMostObjects = 8388607;

// Those of 6.1.7.2 but JPXDecode, whose images have rules of their own.
void CheckFilters(QPDFObjectHandle dictionary) {
  constexpr std::array<std::string_view, 7> kFilters = {"/ASCIIHexDecode",  "/ASCII85Decode",  "/FlateDecode",
                                                        "/RunLengthDecode", "/CCITTFaxDecode", "/JBIG2Decode",
                                                        "/DCTDecode"};
  for (QPDFObjectHandle filter : ItemsOrOne(dictionary.getKey("/Filter"))) {
    if (filter.isNull()) continue;
    const std::string name = NameOrEmpty(filter);
    if (std::ranges::find(kFilters, name) == kFilters.end()) {
      throw NoPdfA(fmt::format("a stream has the filter {}", name));
    }
  }
  if (dictionary.hasKey("/F")) throw NoPdfA("a stream has its data in another file");
}

[[noreturn]] void Refuse(double number) {
  throw NoPdfA(fmt::format("the number {} is beyond the limits", number));
}

void CheckNumber(QPDFObjectHandle number) {
  const double value = number.getNumericValue();
  if (number.isInteger() && !FitsInteger(value)) Refuse(value);
  CheckRealLimit(value);
}

void CheckObject(QPDFObjectHandle object);

// Another object is looked at in its own place.
void CheckWithin(QPDFObjectHandle object) {
  if (!object.isIndirect()) CheckObject(object);
}

void CheckObject(QPDFObjectHandle object) {
  if (object.isStream()) {
    CheckFilters(object.getDict());
    CheckObject(object.getDict());
  } else if (object.isDictionary()) {
    for (const std::string& key : object.getKeys()) {
      CheckNameLimit(std::string_view(key).substr(1));
      CheckWithin(object.getKey(key));
    }
  } else if (object.isArray()) {
    for (QPDFObjectHandle item : object.getArrayAsVector()) CheckWithin(item);
  } else if (object.isNumber()) {
    CheckNumber(object);
  } else if (object.isString()) {
    CheckStringLimit(object.getStringValue().size());
  } else if (object.isName()) {
    CheckNameLimit(std::string_view(object.getName()).substr(1));
  }
}

}  // namespace

bool FitsInteger(double value) { return value >= -2147483648.0 && value < 2147483648.0; }

void CheckRealLimit(double value) {
  const double size = std::abs(value);
  if (size > kLargestReal || (size > 0 && size < kSmallestReal)) Refuse(value);
}

void CheckStringLimit(size_t bytes) {
  if (bytes > kLongestString) {
    throw NoPdfA(fmt::format("a string has {} bytes, more than {}", bytes, kLongestString));
  }
}

void CheckNameLimit(std::string_view name) {
  if (name.size() > kLongestName) {
    throw NoPdfA(fmt::format("the name \"{}\" is longer than {} bytes", name, kLongestName));
  }
}

void CheckObjects(QPDF& pdf) {
  const std::vector<QPDFObjectHandle> objects = pdf.getAllObjects();
  if (objects.size() > kMostObjects) throw NoPdfA(fmt::format("it has {} objects", objects.size()));
  for (QPDFObjectHandle object : objects) {
    try {
      CheckObject(object);
    } catch (const NoPdfA& reason) {
      throw NoPdfA(fmt::format("object {}: {}", object.getObjectID(), reason.what()));
    }
  }
}

}  // namespace hdiplot
