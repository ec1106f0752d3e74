// Dialogs, the terminal, the viewer and the companion module. Programs of the desktop are scripts that stand
// first in PATH and note their arguments; the terminal is a pseudo terminal.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <thread>

#include "platform/companion.h"
#include "platform/dialogs.h"
#include "tests/support/scratch.h"

namespace hdi {
namespace {

// Puts another descriptor in a standard stream's place.
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

class Desktop : public testing::Test {
 protected:
  void WriteScript(const std::string& name, const std::string& body) const {
    chmod(bin.Write(name, "#!/bin/sh\n" + body).c_str(), 0755);
  }

  // Notes its arguments, one a line, prints `reply` and ends with `status`.
  void FakeZenity(const std::string& reply, int status) {
    WriteScript("zenity", "printf '%s\\n' \"$@\" > '" + bin.Path("arguments") + "'\nprintf '%s' '" + reply +
                              "'\nexit " + std::to_string(status) + "\n");
  }

  // What a question on a terminal gives when `typed` is typed; what was shown goes to `shown`.
  template <typename Question>
  auto OnTerminal(const std::string& typed, Question question) {
    int master = -1;
    int slave = -1;
    EXPECT_EQ(openpty(&master, &slave, nullptr, nullptr, nullptr), 0);
    termios settings = {};
    tcgetattr(slave, &settings);
    settings.c_lflag &= ~static_cast<tcflag_t>(ECHO);  // leaves the question alone in what is shown
    tcsetattr(slave, TCSANOW, &settings);
    EXPECT_EQ(write(master, typed.data(), typed.size()), static_cast<ssize_t>(typed.size()));
    auto answer = [&] {
      const Stream input(STDIN_FILENO, slave);
      const Stream error(STDERR_FILENO, slave);
      return question();
    }();
    close(slave);
    // The text comes in pieces; behind the last one reading fails, as nobody holds the other end.
    shown.clear();
    std::array<char, 1024> buffer;
    for (ssize_t count = 1; count > 0;) {
      count = read(master, buffer.data(), buffer.size());
      if (count > 0) shown.append(buffer.data(), static_cast<size_t>(count));
    }
    close(master);
    return answer;
  }

  [[nodiscard]] std::string Arguments() const { return bin.Read("arguments"); }

  scratch::Directory bin;
  scratch::Directory application;
  scratch::Variable searchPath{"PATH", bin.Path() + ":/usr/bin:/bin"};
  scratch::Variable display{"DISPLAY", ":99"};
  scratch::Variable wayland{"WAYLAND_DISPLAY", std::nullopt};
  scratch::Variable applicationPath{"HDI_APP_DIR", application.Path()};
  std::string shown;
};

// No display, and standard input is no terminal even when the tests are run on one.
class NoDesktop : public Desktop {
 protected:
  scratch::Variable noDisplay{"DISPLAY", std::nullopt};
  int nullDevice = open("/dev/null", O_RDWR);
  Stream nullInput{STDIN_FILENO, nullDevice};
};

TEST_F(Desktop, SavePathComesFromTheDialog) {
  FakeZenity("/tmp/a plan\n", 0);
  EXPECT_EQ(AskSavePath(nullptr, u"-$HOME 'ü'.pdf"), u"/tmp/a plan.pdf");
  EXPECT_NE(Arguments().find("--file-selection\n--save\n"), std::string::npos);
  EXPECT_NE(Arguments().find("\n--filename=-$HOME 'ü'.pdf\n"), std::string::npos) << Arguments();
  EXPECT_EQ(Arguments().find("overwrite"), std::string::npos);
  FakeZenity("/tmp.d/plan.PLT\n", 0);
  EXPECT_EQ(AskSavePath(nullptr, u"x.pdf"), u"/tmp.d/plan.PLT");
  FakeZenity("/tmp/plan.pdf\n", 1);
  EXPECT_EQ(AskSavePath(nullptr, u"x.pdf"), std::nullopt);
}

TEST_F(Desktop, ReplacingIsAskedInTheDialog) {
  int32_t noHint = 7;
  FakeZenity("", 1);
  EXPECT_FALSE(AskReplaceExisting(nullptr, noHint));
  EXPECT_EQ(noHint, 7);
  FakeZenity("", 0);
  EXPECT_TRUE(AskReplaceExisting(nullptr, noHint));
  EXPECT_EQ(noHint, 0);
  // The third button answers with its own text and the status of a refusal.
  WriteScript("zenity", "for a; do case $a in --extra-button=*) echo \"${a#*=}\";; esac; done; exit 1\n");
  EXPECT_TRUE(AskReplaceExisting(nullptr, noHint));
  EXPECT_EQ(noHint, 1);
}

TEST_F(Desktop, MessagesAreShownAsTheyStand) {
  FakeZenity("", 0);
  testing::internal::CaptureStderr();
  ShowMessage(u"a<b> & \"c\" %s $(x)");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_NE(Arguments().find("--error\n"), std::string::npos);
  EXPECT_NE(Arguments().find("--no-markup\n"), std::string::npos);
  EXPECT_NE(Arguments().find("--text=a<b> & \"c\" %s $(x)\n"), std::string::npos) << Arguments();
}

TEST_F(NoDesktop, AnswersNoAndWritesMessagesToStandardError) {
  FakeZenity("/tmp/plan.pdf\n", 0);
  int32_t noHint = 7;
  testing::internal::CaptureStderr();
  EXPECT_EQ(AskSavePath(nullptr, u"x.pdf"), std::nullopt);
  EXPECT_FALSE(AskReplaceExisting(nullptr, noHint));
  ShowMessage(u"/tmp/ü.pdf Being used");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "/tmp/ü.pdf Being used\n");
  EXPECT_EQ(noHint, 7);
  EXPECT_EQ(Arguments(), "");
}

TEST_F(NoDesktop, QuestionsGoToATerminal) {
  const auto save = [] { return AskSavePath(nullptr, u"plan.pdf"); };
  EXPECT_EQ(OnTerminal("/tmp/o u t\n", save), u"/tmp/o u t.pdf");
  EXPECT_EQ(shown, "Save as [plan.pdf]: ");
  EXPECT_EQ(OnTerminal("\n", save), u"plan.pdf");
  EXPECT_EQ(OnTerminal("/tmp/\n", save), u"/tmp/plan.pdf");
  EXPECT_EQ(OnTerminal("\x04", save), std::nullopt);  // the end of input

  // The answers yes carry the hint that they leave; the others leave it alone.
  const std::pair<const char*, int32_t> cases[] = {
      {"Yes\n", 0}, {"a\n", 1}, {"n\n", 7}, {"\n", 7}, {"\x04", 7}};
  for (const auto& [typed, hint] : cases) {
    int32_t noHint = 7;
    EXPECT_EQ(OnTerminal(typed, [&] { return AskReplaceExisting(nullptr, noHint); }), hint != 7) << typed;
    EXPECT_EQ(noHint, hint) << typed;
  }

  const scratch::Variable aDisplay("DISPLAY", ":99");
  const scratch::Variable noProgram("PATH", bin.Path());
  EXPECT_EQ(OnTerminal("\n", save), u"plan.pdf");
}

TEST_F(Desktop, TheViewerRunsOnItsOwn) {
  // It notes its arguments and its session only after it has been told to go on.
  WriteScript("xdg-open", "while [ ! -e '" + bin.Path("go") + "' ]; do sleep 0.02; done\n" +
                              "{ printf '%s\\n' \"$@\"; cut -d' ' -f6 /proc/$$/stat; } > '" +
                              bin.Path("part") + "'\nmv '" + bin.Path("part") + "' '" + bin.Path("noted") +
                              "'\n");
  std::array<int, 2> hostsOwn;
  ASSERT_EQ(pipe(hostsOwn.data()), 0);
  OpenInViewer(u"-a b:c.pdf");
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_EQ(errno, ECHILD);
  // Nobody but this process holds the pipe open.
  close(hostsOwn[1]);
  char byte = 0;
  EXPECT_EQ(read(hostsOwn[0], &byte, 1), 0);
  close(hostsOwn[0]);

  EXPECT_FALSE(std::filesystem::exists(bin.Path("noted")));
  bin.Write("go", "");
  for (int i = 0; i < 500 && !std::filesystem::exists(bin.Path("noted")); ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  const std::string noted = bin.Read("noted");
  ASSERT_NE(noted, "");
  EXPECT_EQ(noted.substr(0, noted.find('\n')), "./-a b:c.pdf");
  EXPECT_NE(std::stoi(noted.substr(noted.find('\n') + 1)), getsid(0));

  const scratch::Variable path("PATH", application.Path());
  OpenInViewer(u"/tmp/x.pdf");  // no such program
}

TEST_F(Desktop, ACompanionWithoutTheFunctionsAnswersNo) {
  const scratch::Variable directory("HDI_APP_DIR", HDI_EMPTY_COMPANION_DIR);
  FakeZenity("", 0);
  int32_t noHint = 7;
  EXPECT_FALSE(AskReplaceExisting(nullptr, noHint));
  EXPECT_EQ(noHint, 7);
  EXPECT_EQ(Arguments(), "");
  EditProperties(nullptr, nullptr);
}

}  // namespace
}  // namespace hdi
