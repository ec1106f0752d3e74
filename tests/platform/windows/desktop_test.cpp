// Dialogs, the viewer, write errors, the companion module and the string table. The desktop functions that
// this program would import are replaced by functions that record their arguments.
#include <gtest/gtest.h>
#include <windows.h>
// These require the types of <windows.h>.
#include <commdlg.h>
#include <shellapi.h>

#include <cwchar>
#include <filesystem>
#include <string>
#include <system_error>
#include <utility>

#include "platform/companion.h"
#include "platform/dialogs.h"
#include "platform/files.h"
#include "platform/font_subsetter.h"
#include "platform/message_texts.h"
#include "platform/windows/parent_window.h"
#include "tests/support/scratch.h"

namespace {

std::wstring noted;
int answer = 1;
DWORD writeError = ERROR_SUCCESS;

BOOL WINAPI NoteSaveDialog(OPENFILENAMEW* dialog) {
  noted = std::wstring(dialog->lpstrFile) + L'|' + dialog->lpstrDefExt + L'|';
  for (const wchar_t* filter = dialog->lpstrFilter; *filter != 0; filter += std::wcslen(filter) + 1)
    noted += std::wstring(filter) + L'|';
  noted += std::to_wstring(reinterpret_cast<uintptr_t>(dialog->hwndOwner));
  EXPECT_EQ(dialog->Flags & (OFN_HIDEREADONLY | OFN_OVERWRITEPROMPT), DWORD{OFN_HIDEREADONLY});
  std::wcscpy(dialog->lpstrFile, L"C:\\ü plan.pdf");
  return answer;
}

int WINAPI NoteMessage(HWND, const wchar_t* text, const wchar_t* title, UINT type) {
  noted = std::wstring(title) + L'|' + text + L'|' + std::to_wstring(type & MB_TYPEMASK);
  return answer;
}

HINSTANCE WINAPI NoteViewer(HWND owner, const wchar_t* verb, const wchar_t* file, const wchar_t* parameters,
                            const wchar_t* directory, int show) {
  EXPECT_TRUE(owner == nullptr && parameters == nullptr && directory == nullptr);
  noted = std::wstring(verb) + L'|' + file + L'|' + std::to_wstring(show);
  return nullptr;
}

BOOL WINAPI WriteOrFail(HANDLE file, const void* data, DWORD size, DWORD* written, OVERLAPPED* overlapped) {
  static const auto kReal = reinterpret_cast<decltype(&WriteFile)>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"KERNEL32.dll"), "WriteFile")));
  if (writeError == ERROR_SUCCESS) return kReal(file, data, size, written, overlapped);
  SetLastError(writeError);
  return FALSE;
}

}  // namespace

// Import table slots, which the linker would otherwise take from the system's libraries.
extern "C" {
decltype(&NoteSaveDialog) __imp_GetSaveFileNameW = NoteSaveDialog;
decltype(&NoteMessage) __imp_MessageBoxW = NoteMessage;
decltype(&NoteViewer) __imp_ShellExecuteW = NoteViewer;
decltype(&WriteOrFail) __imp_WriteFile = WriteOrFail;
}

namespace hdi {
namespace {

TEST(Desktop, ShowsTheSystemDialogsAndViewer) {
  const std::wstring desktop = std::to_wstring(reinterpret_cast<uintptr_t>(GetDesktopWindow()));
  answer = 1;
  EXPECT_EQ(AskSavePath(reinterpret_cast<void*>(0x1234), u"plan.pdf"), u"C:\\ü plan.pdf");
  EXPECT_EQ(noted, L"plan.pdf|pdf|*.pdf|*.pdf|*.*|*.*|4660");
  answer = 0;
  EXPECT_EQ(AskSavePath(nullptr, u"plan.pdf"), std::nullopt) << "cancelled";
  EXPECT_EQ(noted, L"plan.pdf|pdf|*.pdf|*.pdf|*.*|*.*|" + desktop);

  for (answer = 1; answer >= 0; --answer) {
    testing::internal::CaptureStderr();
    ShowMessage(u"ü in use");
    EXPECT_EQ(noted, L"PDF|ü in use|0");
    EXPECT_EQ(testing::internal::GetCapturedStderr().empty(), answer == 1);
  }
  OpenInViewer(u"C:\\ü.pdf");
  EXPECT_EQ(noted, L"open|C:\\ü.pdf|5");
}

TEST(Desktop, OnlyAFullDiskIsSilent) {
  const scratch::Directory folder;
  OutputFile file;
  ASSERT_TRUE(file.Open(folder.Path16("a.pdf")));
  for (const DWORD error : {ERROR_DISK_FULL, ERROR_HANDLE_DISK_FULL}) {
    writeError = error;
    EXPECT_NO_THROW(file.Write("x", 1)) << error;
  }
  writeError = ERROR_WRITE_FAULT;
  EXPECT_THROW(file.Write("x", 1), std::system_error);
  writeError = ERROR_SUCCESS;
}

TEST(FontSubsetter, IsTheSystemsOwn) { EXPECT_NE(FindCreateFontPackage(), nullptr); }

TEST(Companion, MissingModulesAndFunctionsAnswerNo) {
  const scratch::Directory folder;
  const scratch::Variable application("HDI_APP_DIR", folder.Path());
  int32_t noHint = 0;
  EXPECT_FALSE(AskReplaceExisting(nullptr, noHint));
  std::filesystem::copy_file(HDI_BUILD_DIR "/HDIDriver.dll", folder.Path("PDF-UI.dll"));
  EXPECT_FALSE(AskReplaceExisting(nullptr, noHint));
  EXPECT_EQ(noHint, 0);
  EditProperties(nullptr, nullptr);
}

TEST(Companion, GetsTheWindowAndAnswers) {
  const scratch::Variable application("HDI_APP_DIR", HDI_COMPANION_DIR);
  int32_t noHint = 0;
  EXPECT_TRUE(AskReplaceExisting(nullptr, noHint));
  EXPECT_EQ(noHint, 1);
  EXPECT_FALSE(AskReplaceExisting(nullptr, noHint));
  EXPECT_EQ(noHint, 1);

  ParentWindow parent = {};
  EditProperties(&noHint, reinterpret_cast<HT_Driver*>(&parent));
  EXPECT_EQ(parent.size, 16U);
  EXPECT_EQ(parent.version, 1U);
  EXPECT_EQ(parent.window, &noHint);
  EXPECT_EQ(GetModuleHandleW(L"PDF-UI.dll"), nullptr);
}

TEST(MessageTexts, ComeFromTheModuleInTheUserLanguage) {
  EXPECT_EQ(MessageText(kTextFileInUse), u"");
  const std::wstring driver = std::filesystem::path(HDI_DRIVER_PATH).make_preferred().wstring();
  ASSERT_NE(LoadLibraryExW(driver.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH), nullptr)
      << GetLastError();
  const std::u16string english = u" Being used, please specify other files name.";
  const struct {
    LANGID language;
    std::u16string inUse;
    std::u16string noBitmap;
  } kRows[] = {{MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), english, u"Fail to create bitmap!"},
               {MAKELANGID(LANG_CHINESE, SUBLANG_CHINESE_TRADITIONAL), u" 正在使用.請指定其他文件名.",
                u"建立點陣圖失敗!"},
               {MAKELANGID(LANG_CHINESE, SUBLANG_CHINESE_SIMPLIFIED), u" 正在使用.请指定其它文件名.",
                u"创建位图失败!"},
               {MAKELANGID(LANG_JAPANESE, SUBLANG_DEFAULT), english, u"ビットマップの創建を失敗しました!"},
               {MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN), english, u"Fail to create bitmap!"}};
  for (const auto& row : kRows) {
    SetThreadUILanguage(row.language);
    SetThreadLocale(MAKELCID(row.language, SORT_DEFAULT));
    EXPECT_EQ(MessageText(kTextFileInUse), row.inUse) << row.language;
    EXPECT_EQ(MessageText(kTextBitmapFailed), row.noBitmap) << row.language;
  }
  EXPECT_EQ(MessageText(4008), u"");
}

}  // namespace
}  // namespace hdi
