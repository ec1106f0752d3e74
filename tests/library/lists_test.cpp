// The directories and the device list.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <string>

#include "platform/host_library.h"
#include "tests/platform/scratch.h"

namespace {

using std::u16string;
using namespace std::string_literals;

TEST(Paths, ComeFromTheEnvironmentOrThePlatform) {
  const scratch::Variable home("HOME", "/home/ü");
  {
    const scratch::Variable variable("HDI_APP_DIR", "/opt/app//");
    EXPECT_EQ(OrvaneGetAppFullPath(), u"/opt/app"s);
  }
  {
    const scratch::Variable variable("HDI_APP_DIR", "");
    EXPECT_TRUE(std::filesystem::equivalent(hdi::ToUtf8(OrvaneGetAppFullPath()),
                                            std::filesystem::read_symlink("/proc/self/exe").parent_path()));
  }

  const struct {
    std::optional<std::string> user;
    std::optional<std::string> data;
    const char16_t* path;
  } kUser[] = {
      {"/u", "/d", u"/u/"}, {std::nullopt, "/d", u"/d/hdi/"}, {"", "relative", u"/home/ü/.local/share/hdi/"}};
  for (const auto& row : kUser) {
    const scratch::Variable user("HDI_USER_DIR", row.user);
    const scratch::Variable data("XDG_DATA_HOME", row.data);
    EXPECT_EQ(OrvaneGetAppDataPathWithBackslash(), u16string(row.path));
  }
}

class DeviceList : public testing::Test {
 protected:
  // The list in a buffer of `capacity`, which is filled with X before.
  u16string List(const std::string& content, size_t capacity) {
    folder.Write("pdf.ini", content);
    u16string buffer(capacity, u'X');
    needed = HT_ListCloseDriver(buffer.data(), static_cast<int32_t>(capacity), listFile.c_str());
    return buffer;
  }

  scratch::Directory folder;
  u16string listFile = folder.Path16("pdf.ini");
  int32_t needed = -1;
};

TEST_F(DeviceList, NamesSectionsInFileOrder) {
  const std::string content = "; c\n[General]\nx=[y]\n\n[Plotter \xC3\xBC]\n[]\n[general]\n[PDF]\nName=P\n";
  const u16string whole = u"General\0Plotter ü\0PDF\0\0"s;
  EXPECT_EQ(List(content, whole.size()), whole);
  EXPECT_EQ(needed, static_cast<int32_t>(whole.size()));
  EXPECT_EQ(HT_ListCloseDriver(nullptr, 0, listFile.c_str()), needed);
  EXPECT_EQ(List(content, whole.size() + 2), whole + u"XX");
  // Names that don't fit are left out.
  EXPECT_EQ(List(content, whole.size() - 1).substr(0, 20), u"General\0Plotter ü\0\0X"s);
  EXPECT_EQ(needed, static_cast<int32_t>(whole.size()));
  EXPECT_EQ(List(content, 8), u"\0\0XXXXXX"s);
  EXPECT_EQ(List("key=1\n", 3), u"\0\0X"s);
  EXPECT_EQ(HT_ListCloseDriver(nullptr, 0, folder.Path16("none.ini").c_str()), 0);
}

TEST_F(DeviceList, TheInstalledFileHasADevice) {
  const u16string installed = hdi::ToUtf16(HDI_BUILD_DIR) + u"/pdf.ini";
  std::array<char16_t, 64> buffer = {};
  EXPECT_EQ(HT_ListCloseDriver(buffer.data(), 64, installed.c_str()), 13);
  EXPECT_EQ(u16string(buffer.data(), 13), u"General\0PDF\0\0"s);
}

}  // namespace
