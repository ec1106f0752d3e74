#include "hdiplot/finish/xmp.h"

#include <fmt/format.h>

#include <string_view>

namespace hdiplot {

namespace {

// The byte order mark in the header says that the packet is UTF-8.
constexpr std::string_view kHead =
    "<?xpacket begin=\"\xEF\xBB\xBF\" id=\"W5M0MpCehiHzreSzNTczkc9d\"?>\n"
    "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\">\n"
    "<rdf:RDF xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">\n"
    "<rdf:Description rdf:about=\"\"\n"
    " xmlns:dc=\"http://purl.org/dc/elements/1.1/\"\n"
    " xmlns:pdf=\"http://ns.adobe.com/pdf/1.3/\"\n"
    " xmlns:pdfaid=\"http://www.aiim.org/pdfa/ns/id/\"\n"
    " xmlns:xmp=\"http://ns.adobe.com/xap/1.0/\">\n"
    "<dc:format>application/pdf</dc:format>\n";
constexpr std::string_view kTail = "</rdf:Description>\n</rdf:RDF>\n</x:xmpmeta>\n<?xpacket end=\"w\"?>\n";

// Line ends as references, as a parser would otherwise make one kind of all.
std::string Escaped(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    switch (c) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      case '\r':
        escaped += "&#13;";
        break;
      default:
        escaped += c;
    }
  }
  return escaped;
}

class XmpWriter {
 public:
  void Simple(std::string_view name, std::string_view value) {
    if (!value.empty()) text_ += fmt::format("<{0}>{1}</{0}>\n", name, Escaped(value));
  }

  // A language alternative with one text for every language.
  void Alternative(std::string_view name, std::string_view value) {
    if (value.empty()) return;
    text_ += fmt::format("<{0}><rdf:Alt><rdf:li xml:lang=\"x-default\">{1}</rdf:li></rdf:Alt></{0}>\n", name,
                         Escaped(value));
  }

  void Sequence(std::string_view name, std::string_view value) {
    if (value.empty()) return;
    text_ += fmt::format("<{0}><rdf:Seq><rdf:li>{1}</rdf:li></rdf:Seq></{0}>\n", name, Escaped(value));
  }

  [[nodiscard]] std::string Take() { return std::string(kHead) + text_ + std::string(kTail); }

 private:
  std::string text_;
};

}  // namespace

std::string WriteXmp(const XmpPacket& packet) {
  XmpWriter writer;
  writer.Alternative("dc:title", packet.title);
  writer.Sequence("dc:creator", packet.author);
  writer.Alternative("dc:description", packet.subject);
  writer.Simple("pdf:Keywords", packet.keywords);
  writer.Simple("pdf:Producer", packet.producer);
  writer.Simple("xmp:CreatorTool", packet.creator);
  writer.Simple("xmp:CreateDate", packet.created);
  writer.Simple("xmp:ModifyDate", packet.modified);
  writer.Simple("xmp:MetadataDate", packet.modified);
  if (packet.pdfAPart != 0) {
    writer.Simple("pdfaid:part", std::to_string(packet.pdfAPart));
    writer.Simple("pdfaid:conformance", "B");
  }
  return writer.Take();
}

}  // namespace hdiplot
