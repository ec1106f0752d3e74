#include "hdiplot/finish/metadata.h"

#include <array>
#include <qpdf/QPDFObjectHandle.hh>
#include <string>

#include "hdiplot/finish/text.h"
#include "hdiplot/finish/xmp.h"

namespace hdiplot {

namespace {

constexpr std::array kTextKeys = {"/Title", "/Author", "/Subject", "/Keywords", "/Creator", "/Producer"};
constexpr std::array kDateKeys = {"/CreationDate", "/ModDate"};

// The dictionary as an object of its own, which the trailer needs.
QPDFObjectHandle Information(QPDF& pdf) {
  QPDFObjectHandle trailer = pdf.getTrailer();
  QPDFObjectHandle information = trailer.getKey("/Info");
  if (!information.isDictionary()) {
    information = pdf.makeIndirectObject(QPDFObjectHandle::newDictionary());
    trailer.replaceKey("/Info", information);
  }
  return information;
}

std::string TextOf(QPDFObjectHandle information, const char* key) {
  QPDFObjectHandle value = information.getKey(key);
  return value.isString() ? CleanText(value.getUTF8Value()) : "";
}

void SetTexts(QPDFObjectHandle information, const Properties& properties) {
  const auto set = [&information](const char* key, const std::optional<std::string>& text) {
    if (text) information.replaceKey(key, TextString(*text));
  };
  set("/Title", properties.title);
  set("/Author", properties.author);
  set("/Subject", properties.subject);
  set("/Keywords", properties.keywords);
  set("/Creator", properties.creator);
  // An empty entry says less than none, and the packet has no place for it.
  for (const char* key : kTextKeys) {
    if (!information.hasKey(key)) continue;
    const std::string text = TextOf(information, key);
    if (text.empty()) {
      information.removeKey(key);
    } else {
      information.replaceKey(key, TextString(text));
    }
  }
}

void SetDates(QPDFObjectHandle information, const FinishOptions& options) {
  const std::string now = options.sourceDateEpoch ? PdfDate(*options.sourceDateEpoch) : PdfDateOfNow();
  information.replaceKey("/ModDate", QPDFObjectHandle::newString(now));
  if (options.sourceDateEpoch) information.replaceKey("/CreationDate", QPDFObjectHandle::newString(now));
  for (const char* key : kDateKeys) {
    if (information.hasKey(key) && XmpDate(TextOf(information, key)).empty()) information.removeKey(key);
  }
}

XmpPacket PacketFor(QPDFObjectHandle information, const FinishOptions& options) {
  XmpPacket packet;
  packet.title = TextOf(information, "/Title");
  packet.author = TextOf(information, "/Author");
  packet.subject = TextOf(information, "/Subject");
  packet.keywords = TextOf(information, "/Keywords");
  packet.creator = TextOf(information, "/Creator");
  packet.producer = TextOf(information, "/Producer");
  packet.created = XmpDate(TextOf(information, "/CreationDate"));
  packet.modified = XmpDate(TextOf(information, "/ModDate"));
  if (options.pdfA != PdfA::kNone) packet.pdfAPart = options.pdfA == PdfA::k2b ? 2 : 3;
  return packet;
}

void SetPacket(QPDF& pdf, const std::string& packet) {
  QPDFObjectHandle stream = pdf.newStream(packet);
  QPDFObjectHandle dictionary = stream.getDict();
  dictionary.replaceKey("/Type", QPDFObjectHandle::newName("/Metadata"));
  dictionary.replaceKey("/Subtype", QPDFObjectHandle::newName("/XML"));
  pdf.getRoot().replaceKey("/Metadata", stream);
}

void SetLanguageAndTitle(QPDF& pdf, QPDFObjectHandle information, const Properties& properties) {
  QPDFObjectHandle root = pdf.getRoot();
  if (properties.language) root.replaceKey("/Lang", TextString(*properties.language));
  if (!information.hasKey("/Title")) return;
  QPDFObjectHandle preferences = root.getKey("/ViewerPreferences");
  if (!preferences.isDictionary()) {
    preferences = root.replaceKeyAndGetNew("/ViewerPreferences", QPDFObjectHandle::newDictionary());
  }
  preferences.replaceKey("/DisplayDocTitle", QPDFObjectHandle::newBool(true));
}

}  // namespace

void SetMetadata(QPDF& pdf, const FinishOptions& options) {
  QPDFObjectHandle information = Information(pdf);
  SetTexts(information, options.properties);
  SetDates(information, options);
  SetLanguageAndTitle(pdf, information, options.properties);
  const bool needsPacket =
      options.properties != Properties() || options.pdfA != PdfA::kNone || pdf.getRoot().hasKey("/Metadata");
  if (needsPacket) SetPacket(pdf, WriteXmp(PacketFor(information, options)));
}

}  // namespace hdiplot
