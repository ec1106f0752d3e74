// The lowest layer of reading a DXF: the text as groups, each a code on one line and its value on the next.
// Group n stands on lines 2n-1 and 2n, which is what every message about a broken file rests on.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace hdiplot {

// Something is wrong at a line of the DXF. Thrown inside the reader only; ReadDxf adds the file's name.
struct DxfFault {
  size_t line;
  std::string message;
};

struct Group {
  int code = 0;
  size_t line = 0;         // of the code; the value stands on the next one
  std::string_view value;  // without the blanks around it; points into the text
  std::string_view raw;    // the whole line, for a text in which blanks count
  double real = 0;         // the value of a code that stands for a real number
  int64_t integer = 0;     // the value of a code that stands for a whole number

  size_t ValueLine() const { return line + 1; }
};

enum class ValueKind { kText, kReal, kInteger };

// What the values of a group code are. Codes outside of 0 to 1071 do not exist.
ValueKind KindOfGroup(int code);

// A piece of the file for a message: in quotes, shortened, with nothing in it that upsets a terminal.
std::string Quoted(std::string_view text);

// A type of entity as a message names it: printable ASCII, and not long.
std::string TypeName(std::string_view type);

enum class ValueCheck {
  kNone,         // numbers are left unread: for sections that nobody looks into
  kNumber,       // numbers are read, and have to be finite numbers
  kCoordinates,  // and real numbers have to be of a size that a drawing can have
};

class GroupReader {
 public:
  // The text has to outlive the reader and the groups. Lines end in LF, CR LF or CR.
  explicit GroupReader(std::string_view text);

  // The next group that is no comment (999); false at the end of the text. Throws DxfFault.
  bool Next(Group& group);

  void SetValueCheck(ValueCheck check) { check_ = check; }

  // The last line read, 0 before the first.
  size_t Line() const { return line_; }

 private:
  bool NextLine(std::string_view& content);
  int ReadCode(std::string_view content) const;
  void ReadNumber(Group& group) const;

  std::string_view text_;
  size_t position_ = 0;
  size_t line_ = 0;
  char lineEnd_;
  ValueCheck check_ = ValueCheck::kNumber;
};

}  // namespace hdiplot
