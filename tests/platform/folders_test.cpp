#include "platform/folders.h"

#include <cstdlib>
#include <optional>

#include "support/store_test.h"

namespace zelvane {
namespace {

/// Sets an environment variable for one test; nullptr removes it.
class Environment {
 public:
  Environment(const char* name, const char* value) : name_(name) {
    const char* former = std::getenv(name);
    if (former != nullptr) former_ = former;
    Set(value);
  }
  ~Environment() { Set(former_ ? former_->c_str() : nullptr); }
  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;

 private:
  void Set(const char* value) const { value != nullptr ? setenv(name_, value, 1) : unsetenv(name_); }

  const char* name_;
  std::optional<std::string> former_;
};

TEST(Folders, ABuildTreeFindsTheDataOfItsSourcesUnlessTheEnvironmentNamesAnotherFolder) {
  const Environment none("ZELVANE_DATA_DIR", nullptr);
  EXPECT_TRUE(std::filesystem::equivalent(ProgramDataFolder(), ZELVANE_DATA)) << ProgramDataFolder();
  const Environment other("ZELVANE_DATA_DIR", "/some/where");
  EXPECT_EQ(ProgramDataFolder(), "/some/where");
}

TEST(Folders, TheUsersFolderFollowsTheDesktopsConvention) {
#if defined(__linux__)
  using Case = std::tuple<const char*, const char*, const char*>;
  for (const auto& [configHome, userHome, folder] :
       {Case{"/conf", "/home/someone", "/conf/zelvane"},
        Case{"conf", "/home/someone", "/home/someone/.config/zelvane"}, Case{nullptr, nullptr, ""}}) {
    const Environment config("XDG_CONFIG_HOME", configHome);
    const Environment home("HOME", userHome);
    EXPECT_EQ(UserConfigFolder(), folder);
  }
#else
  GTEST_SKIP() << "another system's convention";
#endif
}

}  // namespace
}  // namespace zelvane
