// What a job asks and tells on Windows: the dialog as it is opened, the question about an existing file, the
// message about one that is held open, in each language, the viewer, and the failure of a disk.
#include "tests/windows/border/desktop.h"

// clang-format off
#include <windows.h>  // first, as the other takes its types for granted
#include <commdlg.h>
// clang-format on

#include <fstream>
#include <optional>
#include <system_error>

#include "tests/border/border.h"
#include "tests/windows/border/file_holder.h"

namespace border {
namespace {
namespace fs = std::filesystem;

constexpr unsigned kInUse = 4007;
constexpr unsigned kBitmapFailed = 4011;
constexpr const wchar_t* kInUseEnglish = L" Being used, please specify other files name.";

class DesktopTest : public BorderTest {
 protected:
  DesktopTest() {
    device.Open();
    std::ofstream(file) << "old";
  }

  int32_t Plot(const char16_t* output) {
    if (device.StartDocument(output) != 1) return 0;
    device.PlotPage();
    return device.EndDocument();
  }

  fs::path file = sandbox.Out() / "drawing.pdf";
  Driver driver = FirstDriver();
  Device device{driver};
};

TEST_F(DesktopTest, SaveDialogBelongsToTheHostsWindow) {
  const auto window = reinterpret_cast<HWND>(uintptr_t{0x1234});
  for (const HWND given : {window, HWND{nullptr}}) {
    TheDesktop() = {};
    EXPECT_EQ(device.Call(49, given), 1);
    EXPECT_EQ(device.StartDocument(u"FILE:", u"C:\\plans\\site plan.dwg"), 0) << "cancelled";
    ASSERT_EQ(TheDesktop().dialogs.size(), 1U);
    const SaveDialog& dialog = TheDesktop().dialogs.front();
    EXPECT_EQ(dialog.owner, given == nullptr ? GetDesktopWindow() : given);
    EXPECT_EQ(dialog.proposed, L"site plan.pdf");
    EXPECT_EQ(dialog.filter, L"*.pdf|*.pdf|*.*|*.*|");
    EXPECT_TRUE(dialog.extension.ends_with(L"pdf"));
    EXPECT_NE(dialog.flags & OFN_HIDEREADONLY, 0U);
    EXPECT_EQ(dialog.flags & OFN_OVERWRITEPROMPT, 0U) << "the companion module asks";
  }
  EXPECT_TRUE(TheDesktop().messages.empty());
}

TEST_F(DesktopTest, ExistingFileStaysWhenNobodyCanBeAsked) {
  sandbox.SetVariable("HDI_TEST_CHOICE", file.string());
  EXPECT_EQ(device.StartDocument(u"FILE:"), 0) << "without a companion module";
  fs::copy_file(fs::path(HDI_BUILD_DIR) / "HDIDriver.dll", sandbox.App() / "PDF-UI.dll");
  EXPECT_EQ(device.StartDocument(u"FILE:"), 0) << "with one that lacks the function";
  EXPECT_EQ(driver.Call<int32_t>(4, HWND{nullptr}), 1);
  EXPECT_EQ(ReadFile(file), "old");
  EXPECT_TRUE(TheDesktop().messages.empty());
  EXPECT_EQ(GetModuleHandleW(L"PDF-UI.dll"), nullptr) << "it was loaded for the question only";
}

TEST_F(DesktopTest, CompanionWithoutAWindowLiesOverTheDesktop) {
  fs::copy_file(BORDER_COMPANION, sandbox.App() / "PDF-UI.dll");
  sandbox.SetVariable("HDI_TEST_CHOICE", file.string());
  sandbox.SetVariable("HDI_TEST_ANSWER", "0");
  sandbox.SetVariable("HDI_TEST_HINT", "0");
  EXPECT_EQ(device.StartDocument(u"FILE:"), 0);
  const auto desktop = reinterpret_cast<uintptr_t>(GetDesktopWindow());
  EXPECT_NE(sandbox.Log().find("parent " + std::to_string(desktop) + "\nhint 0\n"), std::string::npos);
  EXPECT_EQ(GetModuleHandleW(L"PDF-UI.dll"), nullptr);
}

TEST_F(DesktopTest, FileThatAnotherProcessHoldsStaysAsItWas) {
  FileHolder holder(file);
  ASSERT_TRUE(holder.IsHeld());
  EXPECT_EQ(Plot(file.u16string().c_str()), 0);
  EXPECT_EQ(device.Started(), 0);
  ASSERT_EQ(TheDesktop().messages.size(), 1U);
  const Message& message = TheDesktop().messages.front();
  EXPECT_EQ(message.text, file.wstring() + kInUseEnglish);
  EXPECT_EQ(message.type & MB_TYPEMASK, UINT{MB_OK});

  holder.Release();
  EXPECT_EQ(ReadFile(file), "old");
  EXPECT_EQ(Plot(file.u16string().c_str()), 1) << "the job was still open";
  EXPECT_TRUE(IsSoundPdf(file));
  EXPECT_EQ(TheDesktop().messages.size(), 1U);
}

TEST_F(DesktopTest, FileIsTheDriversOwnWhileItIsMade) {
  ASSERT_EQ(device.StartDocument(file.u16string().c_str()), 1);
  constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  const HANDLE other = CreateFileW(file.c_str(), GENERIC_READ, kShareAll, nullptr, OPEN_EXISTING, 0, nullptr);
  EXPECT_EQ(GetLastError(), DWORD{ERROR_SHARING_VIOLATION});
  EXPECT_EQ(other, INVALID_HANDLE_VALUE);
  if (other != INVALID_HANDLE_VALUE) CloseHandle(other);
  device.PlotPage();
  EXPECT_EQ(device.EndDocument(), 1);
  EXPECT_TRUE(FileHolder(file).IsHeld()) << "nobody else has the finished one";
}

TEST_F(DesktopTest, FullDiskIsSilentAndOtherFailuresReachTheHost) {
  TheDesktop().writeError = ERROR_DISK_FULL;
  EXPECT_EQ(Plot(file.u16string().c_str()), 1);
  EXPECT_EQ(ReadFile(file), "");
  EXPECT_TRUE(TheDesktop().messages.empty());

  // The module brings its own C++ library, as this program does.
  TheDesktop().writeError = ERROR_WRITE_FAULT;
  device.SetStarted(0);
  EXPECT_THROW(Plot(file.u16string().c_str()), std::system_error);
  EXPECT_TRUE(FileHolder(file).IsHeld()) << "the driver has let go of it";
  EXPECT_EQ(device.Close(), 1);
}

TEST_F(DesktopTest, ViewerIsStartedUnlessItIsTurnedOff) {
  EXPECT_EQ(Plot(file.u16string().c_str()), 1);
  EXPECT_TRUE(TheDesktop().viewings.empty());

  driver.Call<int32_t>(19, uint32_t{189}, int64_t{1});
  device.SetStarted(0);
  EXPECT_EQ(Plot(file.u16string().c_str()), 1) << "whatever the viewer answers";
  ASSERT_EQ(TheDesktop().viewings.size(), 1U);
  const Viewing& viewing = TheDesktop().viewings.front();
  EXPECT_EQ(viewing.owner, nullptr);
  EXPECT_EQ(viewing.verb, L"open");
  EXPECT_EQ(viewing.file, file.wstring());
  EXPECT_TRUE(viewing.plain);
  EXPECT_EQ(viewing.show, 5);
}

// A text of the module in one language and no other, nothing when there is no such text.
std::optional<std::wstring> TextIn(WORD language, unsigned id) {
  constexpr unsigned kTextsInABlock = 16;
  const HMODULE module = GetModuleHandleW(L"PDF.hdi");
  const HRSRC found = FindResourceExW(module, RT_STRING, MAKEINTRESOURCEW(id / kTextsInABlock + 1), language);
  if (found == nullptr) return std::nullopt;
  const auto* text = static_cast<const wchar_t*>(LockResource(LoadResource(module, found)));
  for (unsigned i = 0; i < id % kTextsInABlock; ++i) text += 1 + *text;
  return std::wstring(text + 1, *text);
}

struct Language {
  WORD id;
  const wchar_t* inUse;
  const wchar_t* bitmapFailed;
};
const Language kLanguages[] = {
    {MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), kInUseEnglish, L"Fail to create bitmap!"},
    {MAKELANGID(LANG_CHINESE, SUBLANG_CHINESE_TRADITIONAL), L" 正在使用.請指定其他文件名.",
     L"建立點陣圖失敗!"},
    {MAKELANGID(LANG_CHINESE, SUBLANG_CHINESE_SIMPLIFIED), L" 正在使用.请指定其它文件名.", L"创建位图失败!"},
    {MAKELANGID(LANG_JAPANESE, SUBLANG_DEFAULT), kInUseEnglish, L"ビットマップの創建を失敗しました!"}};

// The thread's language for a while.
class ThreadLanguage : Fixed {
 public:
  explicit ThreadLanguage(WORD language) : locale_(GetThreadLocale()), language_(GetThreadUILanguage()) {
    SetThreadLocale(MAKELCID(language, SORT_DEFAULT));
    SetThreadUILanguage(language);
  }
  ~ThreadLanguage() {
    SetThreadLocale(locale_);
    SetThreadUILanguage(language_);
  }

 private:
  LCID locale_;
  LANGID language_;
};

TEST_F(DesktopTest, TextsInFourLanguages) {
  FileHolder holder(file);
  ASSERT_TRUE(holder.IsHeld());
  for (const Language& language : kLanguages) {
    EXPECT_EQ(TextIn(language.id, kInUse), language.inUse);
    EXPECT_EQ(TextIn(language.id, kBitmapFailed), language.bitmapFailed);
    const ThreadLanguage thread(language.id);
    TheDesktop() = {};
    EXPECT_EQ(device.StartDocument(file.u16string().c_str()), 0);
    ASSERT_EQ(TheDesktop().messages.size(), 1U);
    EXPECT_EQ(TheDesktop().messages.front().text, file.wstring() + language.inUse);
  }
}

}  // namespace
}  // namespace border
