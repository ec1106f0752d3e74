// Dialogs, the terminal, the viewer and the companion module. Desktop programs are replaced by scripts at the
// front of PATH that record their arguments; the terminal is a pseudo terminal.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <thread>

#include "platform/companion.h"
#include "platform/dialogs.h"
#include "tests/support/scratch.h"

namespace hdi {
namespace {

using namespace std::string_view_literals;

// Replaces a standard stream by another descriptor.
class Stream : scratch::Fixed {
 public:
  Stream(int stream, int replacement) : stream_(stream), before_(dup(stream)) { dup2(replacement, stream); }
  ~Stream() {
    dup2(before_, stream_);
    close(before_);
  }

 private:
  int stream_;
  int before_;
};

// Provides a display, and a standard input that is not a terminal.
class Desktop : public testing::Test {
 protected:
  void WriteScript(const std::string& name, const std::string& body) const {
    chmod(bin.Write(name, "#!/bin/sh\ncd '" + bin.Path() + "'\n" + body).c_str(), 0755);
  }
  // Records its arguments, one a line, then runs `body`.
  void FakeZenity(const std::string& body) const {
    WriteScript("zenity", "printf '%s\\n' \"$@\" > arguments\n" + body);
  }

  // Returns the result of a question on a terminal when `typed` is typed; `shown` receives the output.
  template <typename Question>
  auto OnTerminal(const std::string& typed, Question question) {
    int master = -1;
    int slave = -1;
    termios settings = {};
    settings.c_lflag = ICANON;  // canonical mode without echo
    settings.c_cc[VEOF] = '\x04';
    EXPECT_EQ(openpty(&master, &slave, nullptr, &settings, nullptr), 0);
    EXPECT_EQ(write(master, typed.data(), typed.size()), static_cast<ssize_t>(typed.size()));
    auto answer = [&] {
      const Stream input(STDIN_FILENO, slave);
      const Stream error(STDERR_FILENO, slave);
      return question();
    }();
    std::array<char, 1024> buffer;
    fcntl(master, F_SETFL, O_NONBLOCK);
    const ssize_t count = read(master, buffer.data(), buffer.size());
    shown.assign(buffer.data(), count > 0 ? static_cast<size_t>(count) : 0);
    close(slave);
    close(master);
    return answer;
  }

  scratch::Directory bin;
  scratch::Directory application;
  scratch::Variable searchPath{"PATH", bin.Path() + ":/usr/bin:/bin"};
  scratch::Variable display{"DISPLAY", ":99"};
  scratch::Variable wayland{"WAYLAND_DISPLAY", std::nullopt};
  scratch::Variable applicationPath{"HDI_APP_DIR", application.Path()};
  Stream noInput{STDIN_FILENO, open("/dev/null", O_RDWR)};
  int32_t noHint = 7;
  std::string shown;
};

TEST_F(Desktop, SavePathComesFromTheDialog) {
  const std::pair<const char*, std::optional<std::u16string>> kRows[] = {
      {"echo '/tmp/a plan'", u"/tmp/a plan.pdf"},
      {"echo /tmp.d/plan.PLT", u"/tmp.d/plan.PLT"},
      {"echo /tmp/plan.pdf; exit 1", std::nullopt}};
  for (const auto& [body, path] : kRows) {
    FakeZenity(body);
    EXPECT_EQ(AskSavePath(nullptr, u"-$HOME 'ü'.pdf"), path) << body;
    EXPECT_EQ(bin.Read("arguments"),
              "--file-selection\n--save\n--title=Save PDF\n--filename=-$HOME 'ü'.pdf\n"
              "--file-filter=PDF | *.pdf *.PDF\n--file-filter=All files | *\n");
  }
}

TEST_F(Desktop, ReplacingIsConfirmedInTheDialog) {
  const struct {
    const char* body;
    bool replaces;
    int32_t hint;
  } kRows[] = {{"exit 1", false, 7},
               {"exit 0", true, 0},
               // The third button reports its own text and the status of a refusal.
               {"for a; do case $a in --extra-button=*) echo \"${a#*=}\";; esac; done; exit 1", true, 1}};
  for (const auto& row : kRows) {
    FakeZenity(row.body);
    noHint = 7;
    EXPECT_EQ(AskReplaceExisting(nullptr, noHint), row.replaces) << row.body;
    EXPECT_EQ(noHint, row.hint) << row.body;
  }
}

TEST_F(Desktop, MessagesAreShownVerbatim) {
  for (const char* body : {"exit 0", "exit 1"}) {
    FakeZenity(body);
    testing::internal::CaptureStderr();
    ShowMessage(u"a<b> & \"c\" %s $(x)");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), body == "exit 0"sv ? "" : "a<b> & \"c\" %s $(x)\n");
    EXPECT_EQ(bin.Read("arguments"), "--error\n--no-markup\n--title=PDF\n--text=a<b> & \"c\" %s $(x)\n");
  }
}

TEST_F(Desktop, WithoutADisplayMessagesGoToStandardError) {
  const scratch::Variable noDisplay("DISPLAY", std::nullopt);
  FakeZenity("echo /tmp/plan.pdf");
  testing::internal::CaptureStderr();
  EXPECT_EQ(AskSavePath(nullptr, u"x.pdf"), std::nullopt);
  EXPECT_FALSE(AskReplaceExisting(nullptr, noHint));
  ShowMessage(u"/tmp/ü.pdf Being used");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "/tmp/ü.pdf Being used\n");
  EXPECT_EQ(noHint, 7);
  EXPECT_EQ(bin.Read("arguments"), "");
  const scratch::Variable aDisplay("WAYLAND_DISPLAY", "wayland-0");
  EXPECT_TRUE(AskReplaceExisting(nullptr, noHint));
}

TEST_F(Desktop, WithoutADialogProgramTheTerminalAsks) {
  const scratch::Variable noProgram("PATH", bin.Path());
  const auto save = [] { return AskSavePath(nullptr, u"plan.pdf"); };
  const std::pair<const char*, std::optional<std::u16string>> kPaths[] = {
      {"/tmp/o u t\n", u"/tmp/o u t.pdf"},
      {"\n", u"plan.pdf"},
      {"/tmp/\n", u"/tmp/plan.pdf"},
      {"\x04", std::nullopt}};  // end of input
  for (const auto& [typed, path] : kPaths) {
    EXPECT_EQ(OnTerminal(typed, save), path) << typed;
    EXPECT_EQ(shown, "Save as [plan.pdf]: ");
  }
  // A yes sets the hint; a no leaves it unchanged.
  const std::pair<const char*, int32_t> kAnswers[] = {{"Yes\n", 0}, {"y\n", 0}, {"a\n", 1}, {"All\n", 1},
                                                      {"n\n", 7},   {"\n", 7},  {"\x04", 7}};
  for (const auto& [typed, hint] : kAnswers) {
    noHint = 7;
    EXPECT_EQ(OnTerminal(typed, [&] { return AskReplaceExisting(nullptr, noHint); }), hint != 7) << typed;
    EXPECT_EQ(noHint, hint) << typed;
  }
}

TEST_F(Desktop, ViewerIsDetached) {
  // Records its arguments and its session, but only after the file "go" exists.
  WriteScript("xdg-open",
              "while [ ! -e go ]; do sleep 0.02; done\n"
              "{ printf '%s\\n' \"$@\"; cut -d' ' -f6 /proc/$$/stat; } > part\nmv part noted\n");
  std::array<int, 2> hostsOwn;
  ASSERT_EQ(pipe(hostsOwn.data()), 0);
  OpenInViewer(u"-a b:c.pdf");
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "no child is left";
  close(hostsOwn[1]);
  char byte = 0;
  EXPECT_EQ(read(hostsOwn[0], &byte, 1), 0) << "no other process has the pipe open";
  close(hostsOwn[0]);

  EXPECT_FALSE(std::filesystem::exists(bin.Path("noted")));
  bin.Write("go", "");
  for (int i = 0; i < 500 && !std::filesystem::exists(bin.Path("noted")); ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  const std::string noted = bin.Read("noted");
  ASSERT_TRUE(noted.starts_with("./-a b:c.pdf\n")) << noted;
  EXPECT_NE(std::stoi(noted.substr(noted.find('\n') + 1)), getsid(0));

  const scratch::Variable path("PATH", application.Path());
  OpenInViewer(u"/tmp/x.pdf");  // no such program
}

TEST_F(Desktop, CompanionWithoutTheFunctionsAnswersNo) {
  std::filesystem::copy_file(HDI_BUILD_DIR "/libHDIDriver.so", application.Path("PDF-UI.dll"));
  FakeZenity("exit 0");
  EXPECT_FALSE(AskReplaceExisting(nullptr, noHint));
  EXPECT_EQ(noHint, 7);
  EXPECT_EQ(bin.Read("arguments"), "");
  EditProperties(nullptr, nullptr);
}

}  // namespace
}  // namespace hdi
