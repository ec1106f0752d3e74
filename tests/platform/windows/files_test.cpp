// Files on Windows: held open, and devices.
#include "platform/files.h"

#include <gtest/gtest.h>
#include <windows.h>

#include "platform/windows/wide.h"
#include "tests/support/scratch.h"

namespace hdi {
namespace {

TEST(WindowsFiles, WhatAnotherHoldsOpenStaysAsItIs) {
  const scratch::Directory folder;
  folder.Write("held ü.pdf", "content");
  const std::u16string path = folder.Path16("held ü.pdf");
  const HANDLE held = CreateFileW(Wide(path), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(held, INVALID_HANDLE_VALUE);
  OutputFile file;
  EXPECT_TRUE(FileExists(path));
  EXPECT_FALSE(RemoveFile(path));
  EXPECT_FALSE(file.Open(path));
  CloseHandle(held);
  EXPECT_EQ(folder.Read("held ü.pdf"), "content");

  EXPECT_TRUE(RemoveFile(path));
  EXPECT_TRUE(file.Open(path));
  OutputFile second;
  EXPECT_FALSE(second.Open(path));
  EXPECT_FALSE(RemoveFile(path));
  file.Close();
  EXPECT_TRUE(second.Open(path));
}

TEST(WindowsFiles, DevicesTakeOutputAndAreNoFiles) {
  EXPECT_FALSE(FileExists(u"NUL"));
  OutputFile file;
  ASSERT_TRUE(file.Open(u"NUL"));
  EXPECT_NO_THROW(file.Write("x", 1));
  EXPECT_TRUE(FileExists(u"C:\\"));
}

}  // namespace
}  // namespace hdi
