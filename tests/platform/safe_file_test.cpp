#include "platform/safe_file.h"

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/store_test.h"

namespace zelvane {
namespace {

namespace fs = std::filesystem;

class SafeFileTest : public ::testing::Test {
 protected:
  std::size_t FileCount() const { return folder.Names().size(); }

  TemporaryFolder folder;
  std::string path = folder.File("model.mod");
};

TEST_F(SafeFileTest, CreatesAFileAndReplacesItWithItsPermissions) {
  ASSERT_TRUE(ReplaceFile(path, "first"));
  EXPECT_EQ(ReadWholeFile(path), "first");
  fs::permissions(path, fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
  ASSERT_TRUE(ReplaceFile(path, ""));
  EXPECT_EQ(ReadWholeFile(path), "");
  EXPECT_EQ(fs::status(path).permissions(),
            fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
  EXPECT_EQ(FileCount(), 1U);
}

TEST_F(SafeFileTest, ANewFileHasThePermissionsOfAnyNewFile) {
  const mode_t mask = ::umask(027);
  ASSERT_TRUE(ReplaceFile(path, "x"));
  ::umask(mask);
  EXPECT_EQ(static_cast<unsigned>(fs::status(path).permissions()), 0640U);
}

TEST_F(SafeFileTest, FollowsASymbolicLink) {
  fs::create_directory(folder.Path() / "real");
  fs::create_symlink("real/model.mod", path);
  for (const char* content : {"through a link to nothing", "through a link to a file"}) {
    ASSERT_TRUE(ReplaceFile(path, content));
    EXPECT_TRUE(fs::is_symlink(path));
    EXPECT_EQ(ReadWholeFile(folder.File("real/model.mod")), content);
  }
  fs::create_symlink("circle", folder.Path() / "circle");
  EXPECT_FALSE(ReplaceFile(folder.File("circle"), "x"));
}

TEST_F(SafeFileTest, RefusesWhatMayNotBeWrittenAndLeavesNothingBehind) {
  ASSERT_TRUE(ReplaceFile(path, "old"));
  fs::permissions(path, fs::perms::owner_read);
  ASSERT_EQ(::mkfifo(folder.File("pipe").c_str(), 0600), 0);
  const std::string inside = folder.Path().string();
  for (const std::string& target :
       {path, inside, inside + "/", folder.File("missing/model.mod"), path + "/model.mod", std::string(),
        std::string("a\0b", 3), std::string("/dev/full"), folder.File("pipe")}) {
    EXPECT_FALSE(ReplaceFile(target, "new")) << target;
  }
  EXPECT_EQ(ReadWholeFile(path), "old");
  EXPECT_EQ(FileCount(), 2U);
}

TEST_F(SafeFileTest, AStopAtAnyMomentLeavesTheFileAndNothingElse) {
  const std::string old(100, 'o');
  const std::string parts(5'000'000, 'n');
  const auto replace = [&] { return ReplaceFile(path, parts); };
  const auto append = [&] {
    int block = 0;
    const auto blocks = [&] { return std::string_view(parts).substr(0, ++block < 4 ? 1000 : 0); };
    return AppendToFile(path, blocks, "h") == Appended::Done;
  };
  for (const std::function<bool()>& write : {std::function<bool()>(replace), std::function<bool()>(append)}) {
    int asked = 0;
    int stopAt = 1;
    const WriteStop former = SetWriteStop([&] { return ++asked >= stopAt; });
    for (bool written = false; !written; ++stopAt, asked = 0) {
      WriteWholeFile(path, old);
      written = write();
      EXPECT_EQ(ReadWholeFile(path) == old, !written) << stopAt;
      EXPECT_EQ(FileCount(), 1U) << stopAt;
    }
    SetWriteStop(former);
    EXPECT_GT(stopAt, 3) << "more than once was asked";
  }
}

TEST_F(SafeFileTest, RemovesOldTemporaryFilesOfProcessesThatAreGone) {
  const auto older = fs::file_time_type::clock::now() - std::chrono::hours(25);
  const auto make = [&](const std::string& name, bool old) {
    WriteWholeFile(folder.File(name), "x");
    if (old) fs::last_write_time(folder.File(name), older);
  };
  const std::string gone = std::to_string(std::numeric_limits<int>::max());
  make(".zelvane-" + gone + "-7.tmp", true);
  make(".zelvane-" + gone + ".tmp", true);
  Texts kept = {"model.mod", ".zelvane-" + gone + "-8.tmp",
                ".zelvane-" + std::to_string(::getpid()) + "-9.tmp", ".zelvane-notes.txt"};
  make(kept[1], false);
  make(kept[2], true);
  make(kept[3], true);
  ASSERT_TRUE(ReplaceFile(path, "x"));
  Texts names = folder.Names();
  std::sort(names.begin(), names.end());
  std::sort(kept.begin(), kept.end());
  EXPECT_EQ(names, kept);
}

TEST_F(SafeFileTest, TakesANameAsLongAsTheSystemAllows) {
  const std::string name(255, 'n');
  ASSERT_TRUE(ReplaceFile(folder.File(name), "x"));
  EXPECT_EQ(ReadWholeFile(folder.File(name)), "x");
  EXPECT_FALSE(ReplaceFile(folder.File(name + "n"), "x"));
  EXPECT_EQ(FileCount(), 1U);
}

TEST_F(SafeFileTest, AProcessKilledInTheMiddleLeavesTheOldFile) {
  const std::string old(200'000, 'o');
  ASSERT_TRUE(ReplaceFile(path, old));
  for (const int blocksBefore : {0, 1, 5}) {
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      int blocks = 0;
      const std::string block(50'000, 'n');
      ReplaceFileInBlocks(path, [&] {
        if (blocks++ == blocksBefore) ::raise(SIGKILL);
        return std::string_view(block);
      });
      ::_exit(0);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status));
    EXPECT_TRUE(ReadWholeFile(path) == old);
  }
  EXPECT_TRUE(ReplaceFile(path, "next")) << "what the killed process left does not stand in the way";
  EXPECT_EQ(ReadWholeFile(path), "next");
}

}  // namespace
}  // namespace zelvane
