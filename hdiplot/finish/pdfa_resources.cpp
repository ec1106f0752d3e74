#include "hdiplot/finish/pdfa_resources.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <string>
#include <string_view>

#include "hdiplot/finish/objects.h"
#include "hdiplot/finish/pdfa.h"

namespace hdiplot {

namespace {

using Names = std::initializer_list<std::string_view>;

bool Contains(Names names, std::string_view name) { return std::ranges::find(names, name) != names.end(); }

void CheckKeys(QPDFObjectHandle dictionary, std::string_view what, Names known) {
  if (!dictionary.isDictionary()) return;
  for (const std::string& key : dictionary.getKeys()) {
    if (!Contains(known, std::string_view(key).substr(1))) {
      throw NoPdfA(fmt::format("{} has the entry {}", what, key));
    }
  }
}

// 6.1.13: the sides of a page.
void CheckBox(QPDFObjectHandle box) {
  constexpr double kShortest = 3;
  constexpr double kLongest = 14400;
  if (box.isNull()) return;
  if (!box.isRectangle()) throw NoPdfA("a page box is no rectangle");
  const QPDFObjectHandle::Rectangle r = box.getArrayAsRectangle();
  for (const double side : {std::abs(r.urx - r.llx), std::abs(r.ury - r.lly)}) {
    if (side < kShortest || side > kLongest) {
      throw NoPdfA(fmt::format("a side has {} units, not {} to {}", side, kShortest, kLongest));
    }
  }
}

// 6.2.4: the spaces that the output intent gives a meaning.
void CheckColorSpace(QPDFObjectHandle space) {
  const Names deviceSpaces = {"/DeviceGray", "/DeviceRGB"};
  if (space.isNull() || Contains(deviceSpaces, NameOrEmpty(space))) return;
  const bool isIndexed = space.isArray() && space.getArrayNItems() == 4 &&
                         NameOrEmpty(space.getArrayItem(0)) == "/Indexed" &&
                         Contains(deviceSpaces, NameOrEmpty(space.getArrayItem(1)));
  if (!isIndexed) throw NoPdfA("an image has another colour space than gray or RGB");
}

// 6.2.8 and 6.2.9.
void CheckXObject(QPDFObjectHandle object) {
  if (!object.isStream()) throw NoPdfA("an external object is no stream");
  QPDFObjectHandle dictionary = object.getDict();
  const std::string subtype = NameOrEmpty(dictionary.getKey("/Subtype"));
  if (subtype != "/Image") throw NoPdfA(fmt::format("it has an external object of type {}", subtype));
  CheckKeys(dictionary, "an image",
            {"Type", "Subtype", "Width", "Height", "BitsPerComponent", "ColorSpace", "Filter", "DecodeParms",
             "SMask", "ImageMask", "Decode", "Length"});
  CheckColorSpace(dictionary.getKey("/ColorSpace"));
  if (dictionary.hasKey("/SMask")) CheckXObject(dictionary.getKey("/SMask"));
}

// 6.2.5 and 6.2.10.
void CheckGraphicsState(QPDFObjectHandle state) {
  CheckKeys(state, "a graphics state", {"Type", "CA", "ca", "BM"});
  QPDFObjectHandle mode = state.getKey("/BM");
  const Names modes = {"/Normal",    "/Compatible", "/Multiply",   "/Screen",    "/Overlay",   "/Darken",
                       "/Lighten",   "/ColorDodge", "/ColorBurn",  "/HardLight", "/SoftLight", "/Difference",
                       "/Exclusion", "/Hue",        "/Saturation", "/Color",     "/Luminosity"};
  if (!mode.isNull() && !Contains(modes, NameOrEmpty(mode))) throw NoPdfA("it has an unknown blend mode");
}

}  // namespace

void CheckCatalog(QPDFObjectHandle catalog, PdfA level) {
  CheckKeys(catalog, "the catalog",
            {"Type", "Version", "Pages", "PageMode", "PageLayout", "PageLabels", "Outlines", "OCProperties",
             "Metadata", "OutputIntents", "ViewerPreferences", "Lang", "Names", "AF"});
  CheckKeys(catalog.getKey("/Names"), "the name dictionary", {"EmbeddedFiles"});
  if (level == PdfA::k2b && catalog.getKey("/Names").isDictionary()) throw NoPdfA("it has attachments");
}

void CheckPage(QPDFObjectHandle page) {
  CheckKeys(page, "the page",
            {"Type", "Parent", "MediaBox", "CropBox", "Rotate", "Resources", "Contents", "Annots", "VP"});
  CheckBox(page.getKey("/MediaBox"));
  CheckBox(page.getKey("/CropBox"));
  QPDFObjectHandle resources = page.getKey("/Resources");
  CheckKeys(resources, "a resource dictionary", {"ExtGState", "Font", "ProcSet", "Properties", "XObject"});
  for (auto& [name, object] : EntriesOf(resources.getKeyIfDict("/XObject"))) CheckXObject(object);
  for (auto& [name, state] : EntriesOf(resources.getKeyIfDict("/ExtGState"))) CheckGraphicsState(state);
}

void CheckAnnotation(QPDFObjectHandle annotation) {
  const std::string subtype = NameOrEmpty(annotation.getKey("/Subtype"));
  if (subtype != "/Link" && subtype != "/Square") throw NoPdfA("it has an annotation of type " + subtype);
  if (annotation.hasKey("/AA")) throw NoPdfA("an annotation has additional actions");
  QPDFObjectHandle action = annotation.getKey("/A");
  if (action.isNull()) return;
  const std::string type = NameOrEmpty(action.getKeyIfDict("/S"));
  if (type != "/URI") throw NoPdfA("it has an action of type " + type);
}

}  // namespace hdiplot
