// The directories on Linux.
#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>

#include "platform/host_library.h"
#include "tests/support/scratch.h"

namespace {

using std::u16string;
using namespace std::string_literals;

TEST(Paths, ComeFromTheEnvironmentOrThePlatform) {
  const scratch::Variable home("HOME", "/home/ü");
  {
    const scratch::Variable variable("HDI_APP_DIR", "/opt/app//");
    EXPECT_EQ(OrvaneGetAppFullPath(), u"/opt/app"s);
  }
  {
    const scratch::Variable variable("HDI_APP_DIR", "");
    EXPECT_TRUE(std::filesystem::equivalent(hdi::ToUtf8(OrvaneGetAppFullPath()),
                                            std::filesystem::read_symlink("/proc/self/exe").parent_path()));
  }

  const struct {
    std::optional<std::string> user;
    std::optional<std::string> data;
    const char16_t* path;
  } kUser[] = {
      {"/u", "/d", u"/u/"}, {std::nullopt, "/d", u"/d/hdi/"}, {"", "relative", u"/home/ü/.local/share/hdi/"}};
  for (const auto& row : kUser) {
    const scratch::Variable user("HDI_USER_DIR", row.user);
    const scratch::Variable data("XDG_DATA_HOME", row.data);
    EXPECT_EQ(OrvaneGetAppDataPathWithBackslash(), u16string(row.path));
  }
}

}  // namespace
