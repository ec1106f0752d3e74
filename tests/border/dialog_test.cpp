// Jobs that ask the user: the save dialog, the question about an existing file, the properties.
#include <fstream>

#include "tests/border/border.h"

namespace border {
namespace {
namespace fs = std::filesystem;

class DialogTest : public BorderTest {
 protected:
  DialogTest() {
    SetUpUser(sandbox);
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
    const int32_t started = device.StartDocument(output, docName);
    EXPECT_EQ(device.Started(), started);
    return started == 1 ? device.EndDocument() : started;
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
    EXPECT_EQ(sandbox.Log(), std::string("save ") + proposed + "\n");
  }
  EXPECT_TRUE(fs::is_empty(sandbox.Out()));
}

TEST_F(DialogTest, PathThatTheHostGivesIsReplacedUnasked) {
  MakeOld();
  EXPECT_EQ(Plot(FirstDriver(), sandbox.OutPath("chosen.pdf").c_str()), 1);
  EXPECT_EQ(sandbox.Log(), "");
  EXPECT_TRUE(IsSoundPdf(chosen));
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
  EXPECT_EQ(ReadText(userFile), "[PDFBase]\nPDFSaveNotHint=1\n");

  fs::remove(sandbox.LogFile());
  EXPECT_EQ(Plot(FirstDriver(), u"FILE:"), 1) << "not asked again";
  EXPECT_EQ(sandbox.Log().find("hint"), std::string::npos) << sandbox.Log();

  Answer(1, 0);
  list.Create();
  EXPECT_EQ(Plot(list.At(2), u"FILE:"), 1);
  EXPECT_NE(sandbox.Log().find("hint 0"), std::string::npos) << "a saved choice does not come back";
  EXPECT_EQ(ReadText(userFile), "[PDFBase]\nPDFSaveNotHint=0\n");
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
