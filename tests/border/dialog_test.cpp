// Jobs that ask the user: the save dialog, the question about an existing file, the properties.
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
    sandbox.SetVariable("HDI_TEST_CHOICE", chosen.string());
  }

  void InstallCompanion() const { fs::copy_file(BORDER_COMPANION, sandbox.App() / "PDF-UI.dll"); }
  void Answer(int answer, int hint) {
    sandbox.SetVariable("HDI_TEST_ANSWER", std::to_string(answer));
    sandbox.SetVariable("HDI_TEST_HINT", std::to_string(hint));
  }
  void MakeOld() const { std::ofstream(chosen) << "old"; }
  [[nodiscard]] bool OldIsThere() const { return ReadFile(chosen) == "old"; }
  // Starts and, when that succeeds, ends a document on a fresh device of `driver`.
  static int32_t Plot(Driver driver, const char16_t* output, const char16_t* docName = nullptr,
                      void* window = nullptr) {
    WriteAt<int32_t>(driver.Settings(), kOpenAfterPlot, 0);
    Device device(driver);
    device.Open();
    EXPECT_EQ(device.Call(49, window), 1);
    const int32_t started = device.StartDoc(output, docName);
    EXPECT_EQ(device.Started(), started);
    return started == 1 ? device.EndDoc() : started;
  }

  fs::path chosen = sandbox.Out() / "chosen.pdf";
};

TEST_F(DialogTest, AnySpellingOfFileAsks) {
  for (const char16_t* output : {u"FILE:", u"file:", u"FiLe:"}) {
    EXPECT_EQ(Plot(FirstDriver(), output), 1);
    EXPECT_TRUE(IsSoundPdf(chosen));
    EXPECT_TRUE(fs::remove(chosen));
  }
}

TEST_F(DialogTest, ProposedName) {
  const std::pair<const char16_t*, const char*> cases[] = {
      {u"c:\\x\\plan.dwg", "plan.pdf"},        {u"plan", "Drawing1.pdf"}, {u"a.b.c", "a.b.pdf"},
      {u"c:\\x.y\\plan", "Drawing1.pdf"},      {u"", "Drawing1.pdf"},     {nullptr, "Drawing1.pdf"},
      {u"/me/site plan.dxf", "site plan.pdf"}, {u".dwg", "Drawing1.pdf"}};
  sandbox.SetVariable("HDI_TEST_CHOICE", "");
  for (const auto& [docName, proposed] : cases) {
    fs::remove(sandbox.LogFile());
    EXPECT_EQ(Plot(FirstDriver(), u"FILE:", docName), 0) << "a cancelled dialog stops the job";
    const std::string log = sandbox.Log();
    const size_t at = log.find(proposed);
    ASSERT_NE(at, std::string::npos) << log;
    EXPECT_TRUE(at > 0 && (log[at - 1] == '=' || log[at - 1] == '/')) << "the whole name: " << log;
  }
  EXPECT_TRUE(fs::is_empty(sandbox.Out()));
}

TEST_F(DialogTest, OnlyAChosenFileIsAskedFor) {
  MakeOld();
  EXPECT_EQ(Plot(FirstDriver(), u"FILE:"), 0);
  EXPECT_NE(sandbox.Log().find("--question"), std::string::npos);
  EXPECT_TRUE(OldIsThere());
  sandbox.SetVariable("HDI_TEST_QUESTION", "0");
  EXPECT_EQ(Plot(FirstDriver(), u"FILE:"), 1);
  EXPECT_TRUE(IsSoundPdf(chosen));

  fs::remove(sandbox.LogFile());
  MakeOld();
  EXPECT_EQ(Plot(FirstDriver(), sandbox.OutPath("chosen.pdf").c_str()), 1) << "a path that the host gives";
  EXPECT_EQ(sandbox.Log(), "");
  EXPECT_FALSE(OldIsThere());
}

TEST_F(DialogTest, CompanionAsksAndItsAnswerIsKept) {
  const fs::path userFile = sandbox.User() / "PDF.ini";
  InstallCompanion();
  MakeOld();
  for (const int no : {0, 2, -1}) {
    Answer(no, 7);
    EXPECT_EQ(Plot(FirstDriver(), u"FILE:"), 0) << no;
    EXPECT_TRUE(OldIsThere()) << "1 alone is yes";
  }
  EXPECT_FALSE(fs::exists(userFile));

  Answer(1, 5);
  EXPECT_EQ(Plot(FirstDriver(), u"FILE:", nullptr, reinterpret_cast<void*>(0x1234)), 1);
  EXPECT_TRUE(IsSoundPdf(chosen));
  EXPECT_NE(sandbox.Log().find("parent 4660\nhint 0\n"), std::string::npos) << sandbox.Log();
  EXPECT_EQ(ReadFile(userFile), "[PDFBase]\nPDFSaveNotHint=1\n");

  fs::remove(sandbox.LogFile());
  EXPECT_EQ(Plot(FirstDriver(), u"FILE:"), 1) << "not asked again";
  EXPECT_EQ(sandbox.Log().find("hint"), std::string::npos) << sandbox.Log();

  Answer(1, 0);
  list.Create();
  EXPECT_EQ(Plot(list.At(2), u"FILE:"), 1);
  EXPECT_NE(sandbox.Log().find("hint 0"), std::string::npos) << "a saved choice does not come back";
  EXPECT_EQ(ReadFile(userFile), "[PDFBase]\nPDFSaveNotHint=0\n");
}

TEST_F(DialogTest, SettingOfTheDevicesSectionSparesTheQuestion) {
  const std::pair<const char*, bool> cases[] = {{"12", false}, {"abc", true}, {"0", true}, {"", true}};
  for (const auto& [value, asked] : cases) {
    sandbox.WriteList(std::string("[general]\n[A]\nPDFSaveNotHint=") + value + "\n");
    list.Create();
    MakeOld();
    EXPECT_EQ(Plot(list.At(list.Size() - 1), u"FILE:"), asked ? 0 : 1) << value;
    EXPECT_EQ(OldIsThere(), asked) << value;
  }
}

TEST_F(DialogTest, PropertiesEditTheRecordInPlace) {
  const Driver driver = FirstDriver();
  const Record before = driver.Copy();
  EXPECT_EQ(driver.Call<int32_t>(4, static_cast<void*>(nullptr)), 1);
  EXPECT_EQ(driver.Copy(), before) << "without a companion";
  InstallCompanion();
  EXPECT_EQ(driver.Call<int32_t>(4, reinterpret_cast<void*>(77)), 1) << "the dialog's own answer is ignored";
  EXPECT_EQ(sandbox.Log(), "properties 77\n");
  EXPECT_EQ(ReadAt<uint32_t>(driver.Settings(), kBackground), 0xFFFFFF01U);
}

}  // namespace
}  // namespace border
