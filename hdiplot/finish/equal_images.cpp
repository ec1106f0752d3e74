#include "hdiplot/finish/equal_images.h"

#include <algorithm>
#include <map>
#include <memory>
#include <qpdf/Buffer.hh>
#include <qpdf/QPDFObjectHandle.hh>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace hdiplot {

namespace {

using Replacements = std::map<QPDFObjGen, QPDFObjectHandle>;

bool IsImage(QPDFObjectHandle object) { return object.isStreamOfType("", "/Image"); }

std::string_view View(const std::shared_ptr<Buffer>& bytes) {
  return {reinterpret_cast<const char*>(bytes->getBuffer()), bytes->getSize()};
}

// Dictionaries with what they refer to unresolved: a soft mask is equal only when it is the same object.
std::map<std::string, std::vector<QPDFObjectHandle>> ByDictionary(
    const std::vector<QPDFObjectHandle>& images) {
  std::map<std::string, std::vector<QPDFObjectHandle>> groups;
  for (QPDFObjectHandle image : images) groups[image.getDict().unparse()].push_back(image);
  return groups;
}

// Each image that equals an earlier one, with that one.
Replacements EqualImages(const std::vector<QPDFObjectHandle>& images) {
  Replacements equal;
  for (auto& [dictionary, group] : ByDictionary(images)) {
    if (group.size() < 2) continue;
    std::multimap<size_t, QPDFObjectHandle> known;  // by the hash of their bytes
    for (QPDFObjectHandle& image : group) {
      const auto bytes = image.getRawStreamData();
      const size_t hash = std::hash<std::string_view>()(View(bytes));
      const auto [first, last] = known.equal_range(hash);
      const auto twin = std::find_if(first, last, [&bytes](auto& entry) {
        return View(entry.second.getRawStreamData()) == View(bytes);
      });
      if (twin != last) {
        equal.emplace(image.getObjGen(), twin->second);
      } else {
        known.emplace(hash, image);
      }
    }
  }
  return equal;
}

void ReplaceValues(QPDFObjectHandle dictionary, const Replacements& replacements) {
  if (!dictionary.isDictionary()) return;
  for (const std::string& key : dictionary.getKeys()) {
    const auto found = replacements.find(dictionary.getKey(key).getObjGen());
    if (found != replacements.end()) dictionary.replaceKey(key, found->second);
  }
}

std::vector<QPDFObjectHandle> Images(const std::vector<QPDFObjectHandle>& objects, bool withSoftMask) {
  std::vector<QPDFObjectHandle> images;
  std::ranges::copy_if(objects, std::back_inserter(images), [withSoftMask](QPDFObjectHandle object) {
    return IsImage(object) && object.getDict().hasKey("/SMask") == withSoftMask;
  });
  return images;
}

}  // namespace

void ShareEqualImages(QPDF& pdf) {
  const std::vector<QPDFObjectHandle> objects = pdf.getAllObjects();
  // Soft masks first, which makes the images with equal ones equal.
  Replacements equal = EqualImages(Images(objects, false));
  const std::vector<QPDFObjectHandle> masked = Images(objects, true);
  for (QPDFObjectHandle image : masked) ReplaceValues(image.getDict(), equal);
  equal.merge(EqualImages(masked));
  if (equal.empty()) return;
  for (QPDFObjectHandle page : pdf.getAllPages()) {
    ReplaceValues(page.getKey("/Resources").getKeyIfDict("/XObject"), equal);
  }
}

}  // namespace hdiplot
