#include "hdiplot/finish/pdfa.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <qpdf/Buffer.hh>
#include <qpdf/QPDFObjectHandle.hh>
#include <string_view>

#include "hdiplot/finish/content_pass.h"
#include "hdiplot/finish/objects.h"
#include "hdiplot/finish/pdfa_fonts.h"
#include "hdiplot/finish/pdfa_limits.h"
#include "hdiplot/finish/pdfa_resources.h"
#include "hdiplot/finish/srgb_profile.h"

namespace hdiplot {

namespace {

// 6.2.3 and 6.2.4.3: what gives DeviceRGB and DeviceGray their meaning.
void SetOutputIntent(QPDF& pdf) {
  QPDFObjectHandle profile = pdf.newStream();
  SetCompressedData(profile, SrgbProfile());
  profile.getDict().replaceKey("/N", QPDFObjectHandle::newInteger(3));
  QPDFObjectHandle intent = QPDFObjectHandle::newDictionary();
  intent.replaceKey("/Type", QPDFObjectHandle::newName("/OutputIntent"));
  intent.replaceKey("/S", QPDFObjectHandle::newName("/GTS_PDFA1"));
  intent.replaceKey("/OutputConditionIdentifier", QPDFObjectHandle::newString("sRGB IEC61966-2.1"));
  intent.replaceKey("/Info", QPDFObjectHandle::newString("sRGB IEC61966-2.1"));
  intent.replaceKey("/DestOutputProfile", profile);
  QPDFObjectHandle intents = QPDFObjectHandle::newArray();
  intents.appendItem(intent);
  pdf.getRoot().replaceKey("/OutputIntents", intents);
}

// 6.9: a name, all groups in the order, and no automatic states.
void ConformLayers(QPDFObjectHandle properties) {
  if (!properties.isDictionary()) return;
  if (properties.hasKey("/Configs")) throw NoPdfA("it has several layer configurations");
  // The driver's page mode, which is a key of the catalog.
  properties.removeKey("/PageMode");
  QPDFObjectHandle configuration = properties.getKey("/D");
  if (!configuration.isDictionary()) {
    configuration = properties.replaceKeyAndGetNew("/D", QPDFObjectHandle::newDictionary());
  }
  QPDFObjectHandle name = configuration.getKey("/Name");
  if (!name.isString() || name.getStringValue().empty()) {
    configuration.replaceKey("/Name", QPDFObjectHandle::newString("Layers"));
  }
  configuration.removeKey("/AS");
  QPDFObjectHandle order = configuration.getKey("/Order");
  if (!order.isArray()) order = configuration.replaceKeyAndGetNew("/Order", QPDFObjectHandle::newArray());
  for (QPDFObjectHandle group : ItemsOf(properties.getKey("/OCGs"))) {
    const auto items = order.getArrayAsVector();
    const bool isListed = std::ranges::any_of(
        items, [&group](const QPDFObjectHandle& item) { return item.getObjGen() == group.getObjGen(); });
    if (!isListed) order.appendItem(group);
  }
}

// Comments show nothing on paper, which is an appearance without content.
QPDFObjectHandle EmptyAppearance(QPDF& pdf) {
  QPDFObjectHandle form = pdf.newStream("");
  QPDFObjectHandle dictionary = form.getDict();
  dictionary.replaceKey("/Type", QPDFObjectHandle::newName("/XObject"));
  dictionary.replaceKey("/Subtype", QPDFObjectHandle::newName("/Form"));
  dictionary.replaceKey("/BBox", QPDFObjectHandle::parse("[0 0 1 1]"));
  dictionary.replaceKey("/Resources", QPDFObjectHandle::newDictionary());
  QPDFObjectHandle appearances = QPDFObjectHandle::newDictionary();
  appearances.replaceKey("/N", form);
  return pdf.makeIndirectObject(appearances);
}

class PdfAPass {
 public:
  PdfAPass(QPDF& pdf, PdfA level, std::vector<std::string>& losses)
      : pdf_(pdf), level_(level), losses_(losses) {}

  void Run() {
    CheckCatalog(pdf_.getRoot(), level_);
    SetOutputIntent(pdf_);
    ConformLayers(pdf_.getRoot().getKey("/OCProperties"));
    const std::vector<QPDFObjectHandle> pages = pdf_.getAllPages();
    for (size_t i = 0; i < pages.size(); ++i) {
      try {
        ConformPage(pages[i], i + 1);
      } catch (const std::runtime_error& reason) {
        throw NoPdfA(fmt::format("page {}: {}", i + 1, reason.what()));
      }
    }
    CheckObjects(pdf_);
  }

 private:
  void ConformPage(QPDFObjectHandle page, size_t number) {
    CheckPage(page);
    for (const QPDFObjectHandle& annotation : ItemsOf(page.getKey("/Annots"))) ConformAnnotation(annotation);
    const FontsByName fonts = fonts_.Conform(page.getKey("/Resources").getKeyIfDict("/Font"));
    const uint64_t leftOut = ConformContents(page, fonts);
    if (leftOut > 0) {
      losses_.push_back(fmt::format("page {}: {} character{} that the fonts lack {} left out", number,
                                    leftOut, leftOut == 1 ? "" : "s", leftOut == 1 ? "is" : "are"));
    }
  }

  // 6.3: the flags of all annotations, and an appearance for all but links.
  void ConformAnnotation(QPDFObjectHandle annotation) {
    CheckAnnotation(annotation);
    constexpr int kInvisible = 1;
    constexpr int kHidden = 2;
    constexpr int kPrint = 4;
    constexpr int kNoView = 32;
    constexpr int kToggleNoView = 256;
    QPDFObjectHandle flags = annotation.getKey("/F");
    const int before = flags.isInteger() ? flags.getIntValueAsInt() : 0;
    const int after = (before & ~(kInvisible | kHidden | kNoView | kToggleNoView)) | kPrint;
    annotation.replaceKey("/F", QPDFObjectHandle::newInteger(after));
    if (annotation.getKey("/Subtype").getName() == "/Link") {
      annotation.removeKey("/AP");
      return;
    }
    if (!emptyAppearance_.isInitialized()) emptyAppearance_ = EmptyAppearance(pdf_);
    annotation.replaceKey("/AP", emptyAppearance_);
  }

  // Visible glyphs that are left out. The streams of a page count as one, and become one when it changes.
  uint64_t ConformContents(QPDFObjectHandle page, const FontsByName& fonts) {
    std::string content;
    for (QPDFObjectHandle stream : ItemsOrOne(page.getKey("/Contents"))) {
      if (!stream.isStream()) continue;
      const std::shared_ptr<Buffer> data = stream.getStreamData(qpdf_dl_generalized);
      content.append(reinterpret_cast<const char*>(data->getBuffer()), data->getSize()).append("\n");
    }
    ConformingContent conforming = ConformContent(content, fonts);
    if (conforming.content) {
      QPDFObjectHandle stream = page.replaceKeyAndGetNew("/Contents", pdf_.newStream());
      SetCompressedData(stream, *conforming.content);
    }
    return conforming.glyphsLeftOut;
  }

  QPDF& pdf_;
  PdfA level_;
  std::vector<std::string>& losses_;
  PdfAFonts fonts_;
  QPDFObjectHandle emptyAppearance_;
};

}  // namespace

void MakePdfA(QPDF& pdf, PdfA level, std::vector<std::string>& losses) { PdfAPass(pdf, level, losses).Run(); }

}  // namespace hdiplot
