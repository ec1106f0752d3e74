// The holder is this program itself, started with an argument. It tells through one pipe that it has the
// file, and waits for the end of the other.
#include "tests/windows/border/file_holder.h"

// clang-format off
#include <windows.h>  // first, as the other takes its types for granted
#include <shellapi.h>
// clang-format on

#include <array>
#include <string>

namespace border {
namespace {

constexpr const wchar_t* kHold = L"--hold";

struct Pipe {
  HANDLE reading = nullptr;
  HANDLE writing = nullptr;
};

// A pipe with one end for the holder.
Pipe MakePipe(HANDLE Pipe::*inherited) {
  Pipe pipe;
  CreatePipe(&pipe.reading, &pipe.writing, nullptr, 0);
  SetHandleInformation(pipe.*inherited, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
  return pipe;
}

std::wstring OwnFileName() {
  std::array<wchar_t, MAX_PATH> name = {};
  GetModuleFileNameW(nullptr, name.data(), MAX_PATH);
  return name.data();
}

// False when the pipe has ended.
bool ReadByte(HANDLE pipe, char& byte) {
  DWORD size = 0;
  return ReadFile(pipe, &byte, 1, &size, nullptr) && size == 1;
}

void Hold(const wchar_t* file) {
  const HANDLE handle = CreateFileW(file, GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  const char held = handle == INVALID_HANDLE_VALUE ? 'n' : 'y';
  DWORD size = 0;
  WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), &held, 1, &size, nullptr);
  char none = 0;
  ReadByte(GetStdHandle(STD_INPUT_HANDLE), none);
  if (handle != INVALID_HANDLE_VALUE) CloseHandle(handle);
}

}  // namespace

FileHolder::FileHolder(const std::filesystem::path& file) {
  const Pipe lifeline = MakePipe(&Pipe::reading);
  const Pipe answer = MakePipe(&Pipe::writing);
  STARTUPINFOW start = {};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdInput = lifeline.reading;
  start.hStdOutput = answer.writing;
  start.hStdError = GetStdHandle(STD_ERROR_HANDLE);
  std::wstring command = L'"' + OwnFileName() + L"\" " + kHold + L" \"" + file.wstring() + L'"';
  PROCESS_INFORMATION info = {};
  if (CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start, &info)) {
    CloseHandle(info.hThread);
    process_ = info.hProcess;
  }
  CloseHandle(lifeline.reading);
  CloseHandle(answer.writing);
  lifeline_ = lifeline.writing;
  char held = 0;
  held_ = ReadByte(answer.reading, held) && held == 'y';
  CloseHandle(answer.reading);
}

FileHolder::~FileHolder() { Release(); }

void FileHolder::Release() {
  if (lifeline_ == nullptr) return;
  CloseHandle(lifeline_);
  lifeline_ = nullptr;
  WaitForSingleObject(process_, INFINITE);
  CloseHandle(process_);
  held_ = false;
}

bool RanAsFileHolder() {
  int count = 0;
  wchar_t** arguments = CommandLineToArgvW(GetCommandLineW(), &count);
  const bool asked = count == 3 && std::wstring(arguments[1]) == kHold;
  if (asked) Hold(arguments[2]);
  LocalFree(arguments);
  return asked;
}

}  // namespace border
