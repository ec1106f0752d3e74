// The functions that take the place of the real desktop's.
#include "tests/windows/border/desktop.h"

// clang-format off
#include <windows.h>  // first, as the others take its types for granted
#include <commdlg.h>
#include <shellapi.h>
// clang-format on

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "tests/border/border.h"
#include "tests/windows/border/import_patch.h"

namespace border {
namespace fs = std::filesystem;
namespace {

std::wstring Text(const wchar_t* text) { return text == nullptr ? L"" : text; }

// A list whose end is an empty text.
std::wstring Joined(const wchar_t* list) {
  std::wstring joined;
  for (; list != nullptr && *list != 0; list += std::wcslen(list) + 1) joined += Text(list) + L'|';
  return joined;
}

BOOL WINAPI AskForFile(OPENFILENAMEW* dialog) {
  TheDesktop().dialogs.push_back({dialog->hwndOwner, Text(dialog->lpstrFile), Joined(dialog->lpstrFilter),
                                  Text(dialog->lpstrDefExt), dialog->Flags});
  const fs::path proposed(dialog->lpstrFile);
  const fs::path log(Variable("HDI_TEST_LOG").value());
  std::ofstream(log, std::ios::app) << "save " << proposed.string() << '\n';

  const std::wstring choice = fs::path(Variable("HDI_TEST_CHOICE").value_or("")).wstring();
  if (choice.empty() || choice.size() >= dialog->nMaxFile) return FALSE;
  *std::copy(choice.begin(), choice.end(), dialog->lpstrFile) = 0;
  return TRUE;
}

int WINAPI ShowMessage(HWND, const wchar_t* text, const wchar_t*, UINT type) {
  TheDesktop().messages.push_back({Text(text), type});
  return IDOK;
}

HINSTANCE WINAPI StartViewer(HWND owner, const wchar_t* verb, const wchar_t* file, const wchar_t* parameters,
                             const wchar_t* directory, int show) {
  const bool plain = Text(parameters).empty() && Text(directory).empty();
  TheDesktop().viewings.push_back({owner, Text(verb), Text(file), plain, show});
  return nullptr;  // that it failed is nobody's concern
}

BOOL WINAPI Write(HANDLE file, const void* data, DWORD size, DWORD* written, OVERLAPPED* overlapped) {
  const DWORD error = TheDesktop().writeError;
  if (error == ERROR_SUCCESS) return WriteFile(file, data, size, written, overlapped);
  *written = 0;
  SetLastError(error);
  return FALSE;
}

}  // namespace

Desktop& TheDesktop() {
  static Desktop desktop;
  return desktop;
}

void AttachDesktop(HMODULE module) {
  ReplaceImport(module, "COMDLG32.dll", "GetSaveFileNameW", reinterpret_cast<void*>(&AskForFile));
  ReplaceImport(module, "USER32.dll", "MessageBoxW", reinterpret_cast<void*>(&ShowMessage));
  ReplaceImport(module, "KERNEL32.dll", "WriteFile", reinterpret_cast<void*>(&Write));
  ReplaceImport(module, "SHELL32.dll", "ShellExecuteW", reinterpret_cast<void*>(&StartViewer));
}

void SetUpDesktop(Sandbox&) { TheDesktop() = {}; }

// Somebody always sits there: a dialog without $HDI_TEST_CHOICE is cancelled.
void SetUpUser(Sandbox&) {}

}  // namespace border
