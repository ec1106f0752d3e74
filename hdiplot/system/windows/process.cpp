#include "hdiplot/system/process.h"

#include <fcntl.h>
#include <io.h>
#include <windows.h>
// Needs <windows.h>.
#include <shellapi.h>

// A macro of the system's headers, which would rename our function.
#undef SetEnvironmentVariable

#include <array>
#include <cstdio>
#include <cstdlib>

#include "platform/environment.h"
#include "platform/unicode.h"
#include "platform/windows/wide.h"

namespace hdiplot {

namespace {

// The console outlives the process.
UINT& CodePageBefore() {
  static UINT codePage = 0;
  return codePage;
}

void HaveConsoleTakeUtf8() {
  CodePageBefore() = GetConsoleOutputCP();
  if (CodePageBefore() == 0) return;  // there is no console
  SetConsoleOutputCP(CP_UTF8);
  std::atexit([] { SetConsoleOutputCP(CodePageBefore()); });
}

}  // namespace

void PrepareProcess() {
  for (std::FILE* stream : {stdin, stdout, stderr}) _setmode(_fileno(stream), _O_BINARY);
  HaveConsoleTakeUtf8();
  // A drive without a disk, or a module with a missing dependency, is an error of the call without a dialog.
  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX);
}

std::vector<std::string> CommandLineWords(int argc, const char* const* argv) {
  int count = 0;
  wchar_t** units = CommandLineToArgvW(GetCommandLineW(), &count);
  if (units == nullptr) return {argv, argv + argc};
  std::vector<std::string> words;
  for (int i = 0; i < count; ++i) words.push_back(hdi::ToUtf8(hdi::Units(units[i])));
  LocalFree(units);
  return words;
}

std::filesystem::path ExecutableFile() { return hdi::Wide(hdi::ProcessFileName()); }

void SetEnvironmentVariable(const std::string& name, const std::string& value) {
  SetEnvironmentVariableW(hdi::Wide(hdi::ToUtf16(name)), hdi::Wide(hdi::ToUtf16(value)));
}

std::string ProcessNumber() { return std::to_string(GetCurrentProcessId()); }

std::optional<std::string> AskForPassword(const std::string& prompt) {
  void* console = GetStdHandle(STD_INPUT_HANDLE);
  DWORD before = 0;
  if (GetConsoleMode(console, &before) == 0) return std::nullopt;
  SetConsoleMode(console, (before | ENABLE_LINE_INPUT) & ~static_cast<DWORD>(ENABLE_ECHO_INPUT));
  std::fputs(prompt.c_str(), stderr);
  std::array<wchar_t, 256> line{};  // the last stays 0
  DWORD count = 0;
  const bool isRead =
      ReadConsoleW(console, line.data(), static_cast<DWORD>(line.size() - 1), &count, nullptr) != 0;
  SetConsoleMode(console, before);
  std::fputc('\n', stderr);
  if (!isRead) return std::nullopt;
  while (count > 0 && (line[count - 1] == L'\n' || line[count - 1] == L'\r')) --count;
  line[count] = L'\0';
  return hdi::ToUtf8(hdi::Units(line.data()));
}

bool StandardErrorIsTerminal() {
  void* console = GetStdHandle(STD_ERROR_HANDLE);
  DWORD mode = 0;
  return GetConsoleMode(console, &mode) != 0 &&
         SetConsoleMode(console, mode | ENABLE_PROCESSED_OUTPUT | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

}  // namespace hdiplot
