#include "tests/hdiplot_dxf/dxf_writing.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "host/hdiplot/dxf/dxf_reader.h"
#include "host/hdiplot/errors.h"

namespace dxf_writing {
namespace {

std::string Section(std::string_view name, std::string_view content) {
  if (content.empty()) return "";
  return Groups("0 SECTION|2 " + std::string(name)) + Groups(content) + Groups("0 ENDSEC");
}

class File {
 public:
  explicit File(const std::string& text) {
    std::string pattern = (std::filesystem::temp_directory_path() / "hdi-dxf-XXXXXX").string();
    directory_ = mkdtemp(pattern.data());
    std::ofstream(Path(), std::ios::binary) << text;
  }
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  ~File() { std::filesystem::remove_all(directory_); }

  [[nodiscard]] std::filesystem::path Path() const { return directory_ / "drawing.dxf"; }

 private:
  std::filesystem::path directory_;
};

}  // namespace

std::string Groups(std::string_view shortForm) {
  std::string text;
  while (!shortForm.empty()) {
    const std::string_view group = shortForm.substr(0, shortForm.find('|'));
    shortForm.remove_prefix(std::min(group.size() + 1, shortForm.size()));
    const size_t blank = std::min(group.find(' '), group.size());
    text.append(group.substr(0, blank)).append("\n");
    text.append(group.substr(std::min(blank + 1, group.size()))).append("\n");
  }
  return text;
}

std::string WithEntities(std::string_view entities) { return WithSections("", "", "", entities); }

std::string WithSections(std::string_view header, std::string_view tables, std::string_view blocks,
                         std::string_view entities) {
  return Section("HEADER", header) + Section("TABLES", tables) + Section("BLOCKS", blocks) +
         Section("ENTITIES", entities) + Groups("0 EOF");
}

std::string WithObjects(std::string file, std::string_view objects) {
  return file.insert(file.rfind("0\nEOF"), Section("OBJECTS", objects));
}

hdiplot::Drawing Read(const std::string& text) { return hdiplot::ReadDxf(File(text).Path()); }

std::string ErrorOf(const std::string& text) {
  const File file(text);
  try {
    hdiplot::ReadDxf(file.Path());
  } catch (const hdiplot::FileError& error) {
    const std::string message = error.what();
    const std::string directory = file.Path().parent_path().string() + "/";
    return message.starts_with(directory) ? message.substr(directory.size()) : "not of the file: " + message;
  }
  return "";
}

std::string Specimen() {
  const std::string file = WithSections(
      "9 $ACADVER|1 AC1015|9 $DWGCODEPAGE|3 ANSI_1252|9 $INSUNITS|70 4|9 $EXTMIN|10 1e20|20 1e20|30 1e20",
      "0 TABLE|2 LTYPE|70 1|0 LTYPE|2 DASHED|70 0|3 __ __|72 65|73 2|40 0.75|49 0.5|74 0|49 -0.25|74 0|0 "
      "ENDTAB|"
      "0 TABLE|2 LAYER|70 1|0 LAYER|2 WALLS|70 0|62 3|6 DASHED|370 25|290 1|0 ENDTAB|"
      "0 TABLE|2 STYLE|70 1|0 STYLE|2 NOTES|70 0|40 2.5|41 0.8|50 15|71 2|3 simplex|4 |1001 FONTS|1000 "
      "DejaVu "
      "Sans|1071 50331682|0 ENDTAB",
      "0 BLOCK|8 0|2 LEAF|70 0|10 1|20 2|30 0|3 LEAF|0 LINE|8 0|10 0|20 0|11 1|21 1|0 TEXT|8 0|10 0|20 0|40 "
      "1|1 "
      "abc|0 ATTDEF|10 0|20 0|40 1|1 d|2 E|70 2|0 ENDBLK|8 0|"
      "0 BLOCK|8 0|2 TREE|70 0|10 0|20 0|0 INSERT|2 leaf|10 5|20 5|41 2|42 2|50 30|70 3|71 2|44 10|45 20|0 "
      "ENDBLK",
      "0 LINE|8 WALLS|62 1|10 0|20 0|30 0|11 10|21 10|31 0|1001 APP|1000 note|1040 1.5|"
      "0 LWPOLYLINE|8 WALLS|90 3|70 1|38 0|10 0|20 0|40 1|41 2|42 0.5|10 5|20 0|10 5|20 5|210 0|220 0|230 -1|"
      "0 POLYLINE|8 0|66 1|70 1|10 0|20 0|30 0|0 VERTEX|10 0|20 0|42 1|0 VERTEX|10 3|20 0|0 SEQEND|8 0|"
      "0 POLYLINE|66 1|70 64|71 4|72 1|0 VERTEX|10 0|20 0|70 192|0 VERTEX|10 1|20 0|70 192|0 VERTEX|10 1|20 "
      "1|70 "
      "192|0 VERTEX|10 0|20 0|70 128|71 1|72 -2|73 3|0 SEQEND|"
      "0 ARC|10 1|20 1|40 2|50 10|51 80|210 0.5|220 0|230 0.5|0 CIRCLE|10 1|20 1|40 2|"
      "0 ELLIPSE|10 1|20 1|30 0|11 3|21 0|31 0|40 0.5|41 0|42 3|"
      "0 SPLINE|70 8|71 3|72 8|73 4|74 0|40 0|40 0|40 0|40 0|40 1|40 1|40 1|40 1|10 0|20 0|10 1|20 2|10 3|20 "
      "2|10 "
      "4|20 0|0 SPLINE|71 3|74 2|11 0|21 0|11 5|21 5|"
      "0 POINT|10 1|20 2|0 SOLID|10 0|20 0|11 1|21 0|12 0|22 1|13 1|23 1|"
      "0 3DFACE|10 0|20 0|11 1|21 0|12 1|22 1|13 0|23 1|70 2|"
      "0 HATCH|10 0|20 0|30 0|210 0|220 0|230 1|2 ANSI31|70 0|71 0|91 2|92 2|72 1|73 1|93 3|10 0|20 0|42 "
      "0.5|10 5|20 "
      "0|42 0|10 5|20 5|42 0|97 0|92 1|93 3|72 1|10 0|20 0|11 1|21 0|72 2|10 0|20 0|40 1|50 0|51 90|73 1|72 "
      "4|94 1|73 "
      "0|74 0|95 4|96 2|40 0|40 0|40 1|40 1|10 0|20 1|10 0|20 0|97 1|330 1F|75 0|76 1|52 0|41 1|77 0|78 1|53 "
      "45|43 "
      "0|44 0|45 -1|46 1|79 2|49 1|49 -1|98 1|10 0|20 0|"
      "0 INSERT|66 1|2 TREE|10 1|20 1|210 0|220 0|230 -1|0 ATTRIB|10 0|20 0|40 1|1 a|2 B|70 0|11 3|21 3|72 "
      "5|51 10|0 SEQEND|"
      "0 DIMENSION|2 LEAF|10 0|20 0|70 0|0 LEADER|72 0|76 2|10 0|20 0|10 1|20 1|0 MTEXT|102 "
      "{ACAD_XDICTIONARY|360 D1|102 "
      "}|10 0|20 0|40 1|41 9|44 1.5|71 5|"
      "3 some \\U+00E4\\M+182A0 |1 text|7 NOTES|50 10|11 1|21 1|31 0|73 2|210 0|220 0.6|230 0.8|101 Embedded "
      "Object|70 1|"
      "0 IMAGE|10 1|20 2|11 0.5|21 0|12 0|22 0.5|13 8|23 4|340 A1|70 15|280 1|281 60|71 2|91 3|14 0|24 0|14 "
      "7|24 0|14 7|24 3|290 1|0 WIPEOUT|10 1|20 2|11 4|21 0|12 0|22 4|13 1|23 1|71 1|91 2|14 -0.5|24 -0.5|14 "
      "0.5|24 0.5");
  return WithObjects(
      file,
      "0 XRECORD|40 none|0 IMAGEDEF|5 A1|1 a.png|10 8|20 4|0 DICTIONARY|5 D1|3 ACAD_FIELD|360 D2|"
      "0 DICTIONARY|5 D2|3 TEXT|360 F1|0 FIELD|5 F1|1 _text|2 %<\\_FldIdx 0>%|90 1|360 F2|"
      "0 FIELD|5 F2|1 AcVar|2 \\AcVar Author \\href \"a.html##0\"");
}

}  // namespace dxf_writing
