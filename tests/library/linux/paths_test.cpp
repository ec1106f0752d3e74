// Directories on Linux.
#include <gtest/gtest.h>

#include "platform/host_library.h"
#include "tests/support/scratch.h"

namespace {

using Value = std::optional<std::string>;

TEST(Paths, ComeFromTheEnvironmentOrThePlatform) {
  const scratch::Variable home("HOME", "/home/ü");
  const std::string own = std::filesystem::read_symlink("/proc/self/exe").parent_path();
  for (const auto& [application, path] : {std::pair("/opt/app//", std::string("/opt/app")), {"", own}}) {
    const scratch::Variable variable("HDI_APP_DIR", application);
    EXPECT_EQ(hdi::ToUtf8(OrvaneGetAppFullPath()), path);
  }
  for (const auto& [user, data, path] : {std::tuple(Value("/u"), "/d", "/u/"),
                                         {std::nullopt, "/d", "/d/hdi/"},
                                         {Value(""), "relative", "/home/ü/.local/share/hdi/"}}) {
    const scratch::Variable userVariable("HDI_USER_DIR", user);
    const scratch::Variable dataVariable("XDG_DATA_HOME", data);
    EXPECT_EQ(hdi::ToUtf8(OrvaneGetAppDataPathWithBackslash()), path);
  }
}

}  // namespace
