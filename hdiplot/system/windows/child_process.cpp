#include "hdiplot/system/child_process.h"

#include <windows.h>

#include <array>
#include <memory>
#include <mutex>
#include <system_error>
#include <thread>

#include "platform/unicode.h"
#include "platform/windows/wide.h"

namespace hdiplot {
namespace {

struct CloseHandles {
  void operator()(void* handle) const { CloseHandle(handle); }
};
using Handle = std::unique_ptr<void, CloseHandles>;

[[noreturn]] void Fail(const std::string& what) {
  throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), what);
}

struct Pipe {
  Pipe() {
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    HANDLE readEnd = nullptr;
    HANDLE writeEnd = nullptr;
    if (CreatePipe(&readEnd, &writeEnd, &inherited, 0) == 0) Fail("pipe");
    reader.reset(readEnd);
    writer.reset(writeEnd);
    SetHandleInformation(readEnd, HANDLE_FLAG_INHERIT, 0);
  }

  void ReadAll(std::string& text) const {
    std::array<char, 4096> block;
    DWORD size = 0;
    while (ReadFile(reader.get(), block.data(), static_cast<DWORD>(block.size()), &size, nullptr) != 0 &&
           size > 0) {
      text.append(block.data(), size);
    }
  }

  Handle reader;
  Handle writer;
};

// A word as CommandLineToArgvW reads it: in quotes, with backslashes doubled before a quote.
std::u16string Quoted(const std::u16string& word) {
  std::u16string quoted = u"\"";
  size_t backslashes = 0;
  for (const char16_t unit : word) {
    if (unit == u'"') quoted.append(backslashes + 1, u'\\');
    backslashes = unit == u'\\' ? backslashes + 1 : 0;
    quoted += unit;
  }
  return quoted.append(backslashes, u'\\') + u'"';
}

// Only the handles of one child at a time can be inherited.
std::mutex& StartMutex() {
  static std::mutex mutex;
  return mutex;
}

// A group for the child and what it starts.
Handle LimitedGroup(const ChildLimits& limits) {
  Handle group(CreateJobObjectW(nullptr, nullptr));
  if (!group) Fail("job object");
  JOBOBJECT_EXTENDED_LIMIT_INFORMATION information{};
  if (limits.bytes > 0) {
    information.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_PROCESS_MEMORY;
    information.ProcessMemoryLimit = static_cast<SIZE_T>(limits.bytes);
  }
  SetInformationJobObject(group.get(), JobObjectExtendedLimitInformation, &information, sizeof information);
  return group;
}

}  // namespace

std::filesystem::path FindProgram(const std::string& name) {
  constexpr DWORD kLongest = 32768;
  std::wstring file(kLongest, L'\0');
  const std::u16string wide = hdi::ToUtf16(name);
  const DWORD length = SearchPathW(nullptr, hdi::Wide(wide.c_str()), L".exe", kLongest, file.data(), nullptr);
  if (length == 0 || length >= kLongest) return {};
  file.resize(length);
  return file;
}

ChildRun RunChild(const std::filesystem::path& program, const std::vector<std::string>& words,
                  const ChildLimits& limits) {
  std::u16string line = Quoted(program.u16string());
  for (const std::string& word : words) line += u' ' + Quoted(hdi::ToUtf16(word));

  Handle process;
  const Handle group = LimitedGroup(limits);
  std::unique_lock lock(StartMutex());
  Pipe output;
  Pipe messages;
  STARTUPINFOW start{};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdOutput = output.writer.get();
  start.hStdError = messages.writer.get();
  PROCESS_INFORMATION started{};
  if (CreateProcessW(program.c_str(), hdi::Wide(line.data()), nullptr, nullptr, TRUE, CREATE_SUSPENDED,
                     nullptr, nullptr, &start, &started) == 0) {
    Fail(program.string());
  }
  process.reset(started.hProcess);
  AssignProcessToJobObject(group.get(), process.get());
  ResumeThread(started.hThread);
  CloseHandle(started.hThread);
  output.writer.reset();
  messages.writer.reset();
  lock.unlock();

  ChildRun run;
  std::thread watchdog([&] {
    const DWORD most = limits.seconds > 0 ? limits.seconds * 1000 : INFINITE;
    run.wasTooSlow = WaitForSingleObject(process.get(), most) == WAIT_TIMEOUT;
    if (run.wasTooSlow) TerminateJobObject(group.get(), 1);
  });
  std::thread reader([&] { messages.ReadAll(run.messages); });
  output.ReadAll(run.output);
  reader.join();
  watchdog.join();
  WaitForSingleObject(process.get(), INFINITE);
  DWORD status = 0;
  GetExitCodeProcess(process.get(), &status);
  run.status = static_cast<int>(status);
  return run;
}

}  // namespace hdiplot
