// Jobs that ask the user: the save dialog, the question about an existing file, the properties.
#include <fcntl.h>
#include <unistd.h>

#include <fstream>

#include "border.h"

namespace border {
namespace {
namespace fs = std::filesystem;

// The desktop's dialogs: notes the arguments and answers as the environment says.
constexpr const char* kZenity = R"(
echo "zenity $*" >> "$HDI_TEST_LOG"
case "$*" in
  *--question*) exit "$HDI_TEST_QUESTION" ;;
  *--file-selection*) [ -n "$HDI_TEST_CHOICE" ] || exit 1; echo "$HDI_TEST_CHOICE" ;;
esac
)";

class DialogTest : public BorderTest {
 protected:
  DialogTest() {
    sandbox.AddTool("zenity", kZenity);
    sandbox.SetVariable("DISPLAY", ":99");
    sandbox.SetVariable("HDI_TEST_QUESTION", "1");
    Choose("chosen.pdf");
  }

  void Choose(const std::string& name) {
    sandbox.SetVariable("HDI_TEST_CHOICE", name.empty() ? name : (sandbox.Out() / name).string());
  }
  void InstallCompanion(const char* file) { fs::copy_file(file, sandbox.App() / "PDF-UI.dll"); }
  void Answer(int answer, int hint) {
    sandbox.SetVariable("HDI_TEST_ANSWER", std::to_string(answer));
    sandbox.SetVariable("HDI_TEST_HINT", std::to_string(hint));
  }
  void MakeOld() const { std::ofstream(sandbox.Out() / "chosen.pdf") << "old"; }
  [[nodiscard]] bool OldIsThere() const {
    std::ifstream file(sandbox.Out() / "chosen.pdf");
    return std::string(std::istreambuf_iterator<char>(file), {}) == "old";
  }
  // Starts and, when that succeeds, ends a document on a fresh device of `driver`.
  static int32_t Plot(Driver driver, const char16_t* output, const char16_t* docName = nullptr,
                      void* window = nullptr) {
    Device device(driver);
    device.Open();
    EXPECT_EQ(device.Call(49, window), 1);
    const int32_t started = device.StartDoc(output, docName);
    EXPECT_EQ(device.Started(), started);
    return started == 1 ? device.EndDoc() : started;
  }
};

TEST_F(DialogTest, AnySpellingOfFileAsks) {
  for (const char16_t* output : {u"FILE:", u"file:", u"FiLe:"}) {
    EXPECT_EQ(Plot(FirstDriver(), output), 1);
    EXPECT_TRUE(IsSoundPdf(sandbox.Out() / "chosen.pdf"));
    EXPECT_TRUE(fs::remove(sandbox.Out() / "chosen.pdf"));
  }
  EXPECT_FALSE(fs::exists("FILE:")) << "the word is no name";
  EXPECT_FALSE(fs::exists("FILE:.pdf"));
}

TEST_F(DialogTest, ProposedName) {
  const std::pair<const char16_t*, const char*> cases[] = {{u"c:\\x\\plan.dwg", "plan.pdf"},
                                                           {u"plan", "Drawing1.pdf"},
                                                           {u"a.b.c", "a.b.pdf"},
                                                           {u"c:\\x.y\\plan", "Drawing1.pdf"},
                                                           {u"", "Drawing1.pdf"},
                                                           {nullptr, "Drawing1.pdf"},
                                                           {u".dwg", "Drawing1.pdf"},
                                                           {u"/home/me/site plan.dxf", "site plan.pdf"}};
  Choose("");
  for (const auto& [docName, proposed] : cases) {
    fs::remove(sandbox.Out().parent_path() / "log");
    EXPECT_EQ(Plot(FirstDriver(), u"FILE:", docName), 0);
    const std::string log = sandbox.Log();
    const size_t at = log.find(proposed);
    ASSERT_NE(at, std::string::npos) << log;
    EXPECT_TRUE(at > 0 && (log[at - 1] == '=' || log[at - 1] == '/')) << "the whole name: " << log;
  }
}

TEST_F(DialogTest, CancelledDialogStopsTheJobAndTouchesNothing) {
  MakeOld();
  Choose("");
  testing::internal::CaptureStderr();
  EXPECT_EQ(Plot(FirstDriver(), u"FILE:"), 0);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_TRUE(OldIsThere());
}

TEST_F(DialogTest, NobodyToAskIsNo) {
  sandbox.SetVariable("DISPLAY", std::nullopt);
  const int input = dup(STDIN_FILENO);
  const int nothing = open("/dev/null", O_RDONLY);
  dup2(nothing, STDIN_FILENO);
  EXPECT_EQ(Plot(FirstDriver(), u"FILE:", u"plan.dwg"), 0);
  dup2(input, STDIN_FILENO);
  close(nothing);
  close(input);
  EXPECT_EQ(sandbox.Log(), "");
  EXPECT_TRUE(fs::is_empty(sandbox.Out()));
}

TEST_F(DialogTest, DesktopAsksBeforeReplacing) {
  MakeOld();
  EXPECT_EQ(Plot(FirstDriver(), u"FILE:"), 0);
  EXPECT_NE(sandbox.Log().find("--question"), std::string::npos);
  EXPECT_TRUE(OldIsThere());
  sandbox.SetVariable("HDI_TEST_QUESTION", "0");
  EXPECT_EQ(Plot(FirstDriver(), u"FILE:"), 1);
  EXPECT_TRUE(IsSoundPdf(sandbox.Out() / "chosen.pdf"));
}

TEST_F(DialogTest, CompanionAsksAndItsAnswerIsKept) {
  InstallCompanion(BORDER_COMPANION);
  MakeOld();
  for (const int no : {0, 2, -1}) {
    Answer(no, 7);
    EXPECT_EQ(Plot(FirstDriver(), u"FILE:"), 0) << no;
    EXPECT_TRUE(OldIsThere()) << "1 alone is yes";
  }
  EXPECT_FALSE(fs::exists(sandbox.User() / "PDF.ini"));

  Answer(1, 5);
  EXPECT_EQ(Plot(FirstDriver(), u"FILE:", nullptr, reinterpret_cast<void*>(0x1234)), 1);
  EXPECT_TRUE(IsSoundPdf(sandbox.Out() / "chosen.pdf"));
  EXPECT_NE(sandbox.Log().find("parent 4660\nhint 0\n"), std::string::npos) << sandbox.Log();
  const std::string user = RunCommand("cat '" + (sandbox.User() / "PDF.ini").string() + "'").second;
  EXPECT_NE(user.find("[PDFBase]"), std::string::npos) << user;
  EXPECT_NE(user.find("PDFSaveNotHint=1"), std::string::npos) << user;

  fs::remove(sandbox.Out().parent_path() / "log");
  MakeOld();
  EXPECT_EQ(Plot(FirstDriver(), u"FILE:"), 1) << "not asked again";
  EXPECT_EQ(sandbox.Log().find("hint"), std::string::npos) << sandbox.Log();
  EXPECT_FALSE(OldIsThere());

  DriverList fresh(module);
  fresh.Create();
  WriteAt<int32_t>(fresh.At(0).Settings(), kOpenAfterPlot, 0);
  Answer(1, 0);
  EXPECT_EQ(Plot(fresh.At(0), u"FILE:"), 1);
  EXPECT_NE(sandbox.Log().find("hint 0"), std::string::npos) << "a saved choice does not come back";
  const std::string again = RunCommand("cat '" + (sandbox.User() / "PDF.ini").string() + "'").second;
  EXPECT_NE(again.find("PDFSaveNotHint=0"), std::string::npos) << again;
}

TEST_F(DialogTest, CompanionWithoutTheFunctionRefuses) {
  InstallCompanion(BORDER_EMPTY_COMPANION);
  sandbox.SetVariable("HDI_TEST_QUESTION", "0");
  MakeOld();
  EXPECT_EQ(Plot(FirstDriver(), u"FILE:"), 0);
  EXPECT_TRUE(OldIsThere());
  EXPECT_EQ(FirstDriver().Call<int32_t>(4, static_cast<void*>(nullptr)), 1);
}

TEST_F(DialogTest, SettingOfTheDevicesSectionSparesTheQuestion) {
  struct Case {
    const char* value;
    bool asked;
  };
  for (const Case& test : {Case{"1", false}, {"12", false}, {"abc", true}, {"0", true}, {"", true}}) {
    sandbox.WriteList(std::string("[general]\n[A]\nPDFSaveNotHint=") + test.value + "\n");
    DriverList drivers(module);
    drivers.Create();
    WriteAt<int32_t>(drivers.At(0).Settings(), kOpenAfterPlot, 0);
    MakeOld();
    EXPECT_EQ(Plot(drivers.At(0), u"FILE:"), test.asked ? 0 : 1) << test.value;
    EXPECT_EQ(OldIsThere(), test.asked) << test.value;
  }
}

TEST_F(DialogTest, PropertiesEditTheRecordInPlace) {
  InstallCompanion(BORDER_COMPANION);
  const Driver driver = FirstDriver();
  EXPECT_EQ(driver.Call<int32_t>(4, reinterpret_cast<void*>(77)), 1) << "the dialog's own answer is ignored";
  EXPECT_EQ(sandbox.Log(), "properties 77\n");
  EXPECT_EQ(ReadAt<uint32_t>(driver.Settings(), kBackground), 0xFFFFFF01U);
}

TEST_F(DialogTest, NamedOutputIsReplacedWithoutAQuestion) {
  MakeOld();
  EXPECT_EQ(Plot(FirstDriver(), Utf16((sandbox.Out() / "chosen.pdf").string()).c_str()), 1);
  EXPECT_EQ(sandbox.Log(), "");
  EXPECT_FALSE(OldIsThere());
}

}  // namespace
}  // namespace border
