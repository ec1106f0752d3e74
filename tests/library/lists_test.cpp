// The device list.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>

#include "platform/host_library.h"
#include "tests/support/scratch.h"

namespace {

using std::u16string;
using namespace std::string_literals;

class DeviceList : public testing::Test {
 protected:
  // The list in a buffer of `capacity`, which is filled with X before. The file is UTF-16, which every
  // platform reads alike.
  u16string List(const u16string& content, size_t capacity) {
    const u16string units = u'\xFEFF' + content;
    folder.Write("pdf.ini",
                 std::string(reinterpret_cast<const char*>(units.data()), units.size() * sizeof(char16_t)));
    u16string buffer(capacity, u'X');
    needed = HT_ListCloseDriver(buffer.data(), static_cast<int32_t>(capacity), listFile.c_str());
    return buffer;
  }

  scratch::Directory folder;
  u16string listFile = folder.Path16("pdf.ini");
  int32_t needed = -1;
};

TEST_F(DeviceList, NamesSectionsInFileOrder) {
  const u16string content = u"; c\n[General]\nx=[y]\n\n[Plotter ü]\n[]\n[general]\n[PDF]\nName=P\n";
  const u16string whole = u"General\0Plotter ü\0PDF\0\0"s;
  EXPECT_EQ(List(content, whole.size()), whole);
  EXPECT_EQ(needed, static_cast<int32_t>(whole.size()));
  EXPECT_EQ(HT_ListCloseDriver(nullptr, 0, listFile.c_str()), needed);
  EXPECT_EQ(List(content, whole.size() + 2), whole + u"XX");
  // Names that don't fit are left out.
  EXPECT_EQ(List(content, whole.size() - 1).substr(0, 20), u"General\0Plotter ü\0\0X"s);
  EXPECT_EQ(needed, static_cast<int32_t>(whole.size()));
  EXPECT_EQ(List(content, 8), u"\0\0XXXXXX"s);
  EXPECT_EQ(List(u"key=1\n", 3), u"\0\0X"s);
  EXPECT_EQ(HT_ListCloseDriver(nullptr, 0, folder.Path16("none.ini").c_str()), 0);
}

TEST_F(DeviceList, TheInstalledFileHasADevice) {
  const u16string installed = hdi::ToUtf16(HDI_BUILD_DIR) + u"/pdf.ini";
  std::array<char16_t, 64> buffer = {};
  EXPECT_EQ(HT_ListCloseDriver(buffer.data(), 64, installed.c_str()), 13);
  EXPECT_EQ(u16string(buffer.data(), 13), u"General\0PDF\0\0"s);
}

}  // namespace
