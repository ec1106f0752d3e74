// Dialogs and the viewer on Windows.
#include "platform/dialogs.h"

// clang-format off
#include <windows.h>  // first, as the others take its types for granted
#include <commdlg.h>
#include <shellapi.h>
// clang-format on

#include <algorithm>
#include <cstdio>

#include "platform/unicode.h"
#include "platform/windows/wide.h"

namespace hdi {

std::optional<std::u16string> AskSavePath(void* parentWindow, const std::u16string& proposedName) {
  constexpr size_t kLongestPath = 32768;
  std::u16string path(kLongestPath, u'\0');
  std::copy_n(proposedName.begin(), std::min(proposedName.size(), kLongestPath - 1), path.begin());

  OPENFILENAMEW dialog = {};
  dialog.lStructSize = sizeof dialog;
  dialog.hwndOwner = parentWindow == nullptr ? GetDesktopWindow() : static_cast<HWND>(parentWindow);
  dialog.lpstrFilter = L"*.pdf\0*.pdf\0*.*\0*.*\0";
  dialog.lpstrFile = Wide(path.data());
  dialog.nMaxFile = static_cast<DWORD>(path.size());
  dialog.lpstrDefExt = L"pdf";  // a pattern would be appended literally
  // The modern dialog. The companion module asks about replacing an existing file.
  dialog.Flags = OFN_HIDEREADONLY | OFN_EXPLORER | OFN_ENABLESIZING;
  if (!GetSaveFileNameW(&dialog)) return std::nullopt;
  path.resize(path.find(u'\0'));
  return path;
}

void ShowMessage(const std::u16string& text) {
  const int answer = MessageBoxW(GetActiveWindow(), Wide(text), L"PDF", MB_OK | MB_ICONEXCLAMATION);
  if (answer > 0) return;
  // There is no desktop.
  std::fprintf(stderr, "%s\n", ToUtf8(text).c_str());
}

void OpenInViewer(const std::u16string& path) {
  ShellExecuteW(nullptr, L"open", Wide(path), nullptr, nullptr, SW_SHOW);
}

}  // namespace hdi
