// Jobs that ask the user: the save dialog, the question about an existing file, and the properties.
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
  // Plots a document on a new device of `driver`, asking the user for the output.
  static int32_t Plot(Driver driver, const char16_t* docName = nullptr, void* window = nullptr) {
    Device device(driver);
    device.Open();
    EXPECT_EQ(device.Call(49, window), 1);
    return device.Plot(u"FILE:", docName);
  }

  fs::path chosen = sandbox.Out() / "chosen.pdf";
};

TEST_F(DialogTest, AsksForAnySpellingAndTakesTheAnswerVerbatim) {
  const fs::path plotted = sandbox.Out() / "plan.plt";
  for (const char16_t* output : {u"FILE:", u"file:", u"FiLe:"}) {
    sandbox.SetVariable("HDI_TEST_CHOICE", plotted.string());
    Device device(FirstDriver());
    device.Open();
    EXPECT_EQ(device.Plot(output, u"c:\\x\\plan.dwg"), 1);
    EXPECT_EQ(sandbox.Log(), "save plan.pdf\n");
    EXPECT_TRUE(fs::remove(plotted));
    sandbox.SetVariable("HDI_TEST_CHOICE", "");
    EXPECT_EQ(device.Close(), 1);
    EXPECT_EQ(Plot(FirstDriver()), 0) << "cancelled";
    EXPECT_EQ(sandbox.Log(), "save Drawing1.pdf\n") << "the document has no name";
    EXPECT_TRUE(fs::is_empty(sandbox.Out()));
  }
}

TEST_F(DialogTest, CompanionAsksAndItsAnswerIsKept) {
  const fs::path userFile = sandbox.User() / "PDF.ini";
  InstallCompanion();
  MakeOld();
  for (const int no : {0, 2, -1}) {
    Answer(no, 7);
    EXPECT_EQ(Plot(FirstDriver()), 0) << no;
    EXPECT_TRUE(OldIsThere()) << "only 1 is yes";
  }
  EXPECT_FALSE(fs::exists(userFile));

  Answer(1, 5);
  (void)sandbox.Log();
  EXPECT_EQ(Plot(FirstDriver(), nullptr, reinterpret_cast<void*>(0x1234)), 1);
  EXPECT_TRUE(IsSoundPdf(chosen));
  EXPECT_EQ(sandbox.Log(), "save Drawing1.pdf\nparent 4660\nhint 0\n");
  EXPECT_EQ(ReadFile(userFile, std::ios::in), "[PDFBase]\nPDFSaveNotHint=1\n");

  EXPECT_EQ(Plot(FirstDriver()), 1);
  EXPECT_EQ(sandbox.Log(), "save Drawing1.pdf\n") << "not asked again";

  Answer(1, 0);
  EXPECT_EQ(Plot(LastDriverOf("[general]\n[A]\n")), 1);
  EXPECT_NE(sandbox.Log().find("hint 0"), std::string::npos) << "a saved choice is not read back";
  EXPECT_EQ(ReadFile(userFile, std::ios::in), "[PDFBase]\nPDFSaveNotHint=0\n");
}

TEST_F(DialogTest, SettingOfTheDeviceSkipsTheQuestion) {
  for (const auto& [value, asked] : {std::pair("12", false),
                                     {"abc", true},
                                     {"0", true},
                                     {"", true},
                                     {"1\nPrivateFile=other.ini", false}}) {
    MakeOld();
    EXPECT_EQ(Plot(LastDriverOf(std::string("[general]\n[A]\nPDFSaveNotHint=") + value + "\n")),
              asked ? 0 : 1);
    EXPECT_EQ(OldIsThere(), asked) << value;
  }
}

TEST_F(DialogTest, PropertiesEditTheRecordInPlace) {
  const Driver driver = FirstDriver();
  const Record before = driver.Copy();
  EXPECT_EQ(driver.Call<int32_t>(4, static_cast<void*>(nullptr)), 1);
  EXPECT_EQ(driver.Copy(), before) << "without a companion";
  InstallCompanion();
  EXPECT_EQ(driver.Call<int32_t>(4, reinterpret_cast<void*>(77)), 1) << "the dialog's result is ignored";
  EXPECT_EQ(sandbox.Log(), "properties 77\n");
  EXPECT_EQ(ReadAt<uint32_t>(driver.Settings(), kBackground), 0xFFFFFF01U);
}

}  // namespace
}  // namespace border
