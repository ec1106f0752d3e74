// A paper list in a settings file of this form:
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
// [Papers] comes first, so that a truncated or foreign file is not taken for an empty list. Each paper is a
// section named by its unique id (1 to 32767), in list order. Lengths are whole tenths of a millimetre in
// portrait; width and height are required and positive, a missing margin is 0. Names are truncated to 63
// units. platform/profile.h defines lines, blanks, quotes and character encodings. Anything else makes the
// file broken.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/host_library.h"
#include "platform/profile.h"

namespace hdi {

class PaperFile {
 public:
  // Reads the list of `path`. If that file is missing, reads the file of the same name in the application's
  // directory; if that is missing, too, uses the built-in list. A broken file also results in the built-in
  // list, with one line on standard error a file and process that gives the place.
  explicit PaperFile(const std::u16string& path);

  [[nodiscard]] const std::vector<PaperSize>& Papers() const { return papers_; }

  // These change the list and save it to the path. They return whether that succeeded; either way, the object
  // must not be used afterwards. A broken user's file is never written, since its owner can still repair it.
  // All other lines of the user's file, including comments, are kept.
  bool Put(const PaperSize& paper);  // replaces the paper with its id, or appends
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
