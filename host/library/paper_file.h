// A paper list in a settings file, in this form:
//
//   [Papers]
//   Format=1
//
//   [Paper 9]
//   Name=A4
//   Width=2100
//   Height=2970
//   Left=50
//   Top=170
//   Right=50
//   Bottom=170
//
// [Papers] comes first, so that a file that is cut short or belongs to something else is not taken for an
// empty list. Each paper is a section with its id (1 to 32767, each once) in the name, in the list's order.
// Lengths are whole tenths of a millimetre for the sheet held upright; width and height are needed and above
// zero, a margin that is missing is 0. Names longer than 63 units are cut. platform/profile.h tells
// what holds for lines, blanks, quotes and character encodings. Anything else makes the file a broken one.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/host_library.h"
#include "platform/profile.h"

namespace hdi {

class PaperFile {
 public:
  // Reads the list of `path`. Without that file the list comes from the file of the same name in the
  // application's directory, and without that too it is the built-in one. When the file that there is is
  // broken, the list is the built-in one as well, and one line on standard error, once a process for each
  // file, says where.
  explicit PaperFile(const std::u16string& path);

  [[nodiscard]] const std::vector<PaperSize>& Papers() const { return papers_; }

  // These change the list and save it to the path. They return whether that was done; afterwards, done or
  // not, the object is of no further use. A broken user's file is never written, as that would lose what its
  // owner can still mend. The user's other lines, comments among them, stay.
  bool Put(const PaperSize& paper);  // in place of the paper with its id, or at the list's end
  bool Remove(int32_t id);

 private:
  enum class ReadResult { kRead, kMissing, kBroken };

  ReadResult Read(const std::u16string& path);
  void UseBuiltInPapers();
  bool PutIntoProfile(const PaperSize& paper);

  std::u16string path_;
  Profile profile_;
  std::vector<PaperSize> papers_;
  bool writable_ = true;
};

}  // namespace hdi
