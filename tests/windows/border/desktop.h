// A desktop that only notes what the module asks it to show, and a disk that fails when it is told to.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace border {

struct SaveDialog {
  HWND owner;
  std::wstring proposed;
  std::wstring filter;  // names and patterns by turns, with a bar behind each
  std::wstring extension;
  DWORD flags;
};

struct Message {
  std::wstring text;
  UINT type;
};

struct Viewing {
  HWND owner;
  std::wstring verb;
  std::wstring file;
  bool plain;  // without parameters and directory
  int show;
};

struct Desktop {
  std::vector<SaveDialog> dialogs;
  std::vector<Message> messages;
  std::vector<Viewing> viewings;
  DWORD writeError = ERROR_SUCCESS;  // what every write fails with
};

// The one desktop, emptied by SetUpDesktop.
[[nodiscard]] Desktop& TheDesktop();

// Has a module of that desktop instead of the real one.
void AttachDesktop(HMODULE module);

}  // namespace border
