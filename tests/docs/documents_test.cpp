// The examples in README, manual, help pages and the page of the command language run as they are shown.
#include <climits>
#include <set>
#include <sstream>

#include "headless/drive/drive_session.h"
#include "support/shell.h"
#include "support/store_test.h"

namespace zelvane {
namespace {

namespace fs = std::filesystem;

const fs::path Source = ZELVANE_SOURCE;

/// A block of code of a page: lines indented by four blanks, or between fences.
struct Block {
  std::string page;
  int line = 0;      // of its first line
  std::string kind;  // the word after the fence; "sh" runs as written, "console" shows commands after "$ "
  std::string text;
};

std::vector<Block> BlocksOf(const fs::path& page) {
  std::vector<Block> blocks;
  std::istringstream lines(ReadWholeFile(page.string()));
  std::string kind;
  bool fenced = false;
  bool open = false;
  int number = 0;
  for (std::string line; std::getline(lines, line);) {
    ++number;
    if (line.starts_with("```")) {
      fenced = !fenced;
      open = false;
      kind = fenced ? line.substr(3) : std::string();
      continue;
    }
    const bool indented = !fenced && line.starts_with("    ");
    if (!fenced && !indented) {
      open = open && line.empty();  // a blank line may be part of a block
      continue;
    }
    if (!open) blocks.push_back({page.filename().string(), number, kind, {}});
    open = true;
    blocks.back().text += (indented ? line.substr(4) : line) + '\n';
  }
  return blocks;
}

std::vector<fs::path> Pages() {
  std::vector<fs::path> pages{Source / "README.md", Source / "docs" / "drive.md"};
  for (const fs::path& folder : {Source / "docs" / "manual", Source / "data" / "help"}) {
    for (const auto& entry : fs::directory_iterator(folder)) {
      if (entry.path().extension() == ".md") pages.push_back(entry.path());
    }
  }
  return pages;
}

std::vector<Block> AllBlocks() {
  std::vector<Block> blocks;
  for (const fs::path& page : Pages()) {
    for (Block& block : BlocksOf(page)) blocks.push_back(std::move(block));
  }
  return blocks;
}

/// Returns the first shell blocks of a page, joined.
std::string ShellOf(const fs::path& page, int most = INT_MAX) {
  std::string commands;
  for (const Block& block : BlocksOf(page)) {
    if (block.kind == "sh" && most-- > 0) commands += block.text;
  }
  return commands;
}

/// Returns what a reader types once for all pages.
std::string Preparation() {
  return ShellOf(Source / "docs" / "manual" / "command-line.md", 1);
}

std::set<std::string> CommandTable() {
  std::set<std::string> names;
  for (const std::span<const DriveCommand> commands : {ActionCommands(), QueryCommands()}) {
    for (const DriveCommand& command : commands) names.emplace(command.name);
  }
  return names;
}

/// Returns whether every line begins with a command of the command language.
bool IsScript(const Block& block) {
  const std::set<std::string> commands = CommandTable();
  std::istringstream lines(block.text);
  for (std::string line; std::getline(lines, line);) {
    if (!line.empty() && !commands.contains(line.substr(0, line.find(' ')))) return false;
  }
  return true;
}

/// A folder in which the relative paths of the documents lead to the right files.
class DocumentsTest : public ::testing::Test {
 protected:
  DocumentsTest() {
    fs::create_directories(folder.Path() / "build/run/src/apps");
    fs::create_symlink(ZELVANE_CLI, folder.Path() / "build/run/src/apps/zelvane-cli");
    for (const char* name : {"data", "tests"})
      fs::create_directory_symlink(Source / name, folder.Path() / name);
  }

  ShellResult Run(const std::string& script) {
    const std::string path = folder.Written("script.sh", script);
    return Shell("cd '" + folder.Path().string() + "' && bash -euo pipefail '" + path + "' < /dev/null 2>&1");
  }

  TemporaryFolder folder;
};

TEST_F(DocumentsTest, ShellCommandsRunAsWritten) {
  int found = 0;
  for (const fs::path& page : Pages()) {
    const std::string commands = ShellOf(page);
    if (commands.empty()) continue;
    ++found;
    const ShellResult result = Run(page.filename() == "README.md" ? commands : Preparation() + commands);
    EXPECT_EQ(result.status, 0) << page << '\n' << result.out;
    EXPECT_EQ(result.out.find("\"error\""), std::string::npos) << page << '\n' << result.out;
  }
  EXPECT_GE(found, 5);
}

TEST_F(DocumentsTest, ScriptsOfTheCommandLanguageRunAsWritten) {
  int found = 0;
  for (const Block& block : AllBlocks()) {
    if (!block.kind.empty() || !IsScript(block)) continue;
    ++found;
    folder.Written("script.drive", block.text);
    const ShellResult result = Run(Preparation() + "zelvane-cli drive --dir data script.drive\n");
    EXPECT_EQ(result.status, 0) << block.page << ", line " << block.line << '\n' << result.out;
    EXPECT_EQ(result.out.find("\"error\""), std::string::npos) << block.page << '\n' << result.out;
  }
  EXPECT_GE(found, 1);
}

/// "$ command", followed by the objects that it writes.
TEST_F(DocumentsTest, PrintedAnswersAreThoseOfTheProgram) {
  int found = 0;
  for (const Block& block : AllBlocks()) {
    const std::size_t end = block.text.find('\n');
    if (!block.text.starts_with("$ ") || block.text[end + 1] != '{') continue;
    ++found;
    EXPECT_EQ(Run(Preparation() + block.text.substr(2, end - 1)).out, block.text.substr(end + 1))
        << block.page;
  }
  EXPECT_GE(found, 1);
}

TEST(CommandLanguagePage, NamesEveryCommandAndNoOther) {
  std::istringstream lines(ReadWholeFile((Source / "docs" / "drive.md").string()));
  std::set<std::string> named;
  for (std::string line; std::getline(lines, line) && !line.starts_with("## Events");) {
    if (!line.starts_with("| `")) continue;
    const std::string_view cell = std::string_view(line).substr(0, line.find(" | "));
    for (std::size_t tick = cell.find('`'); tick != std::string_view::npos; tick = cell.find('`', tick + 1)) {
      const std::size_t close = cell.find('`', tick + 1);
      const std::string_view words = cell.substr(tick + 1, close - tick - 1);
      named.emplace(words.substr(0, words.find(' ')));
      tick = close;
    }
  }
  EXPECT_EQ(named, CommandTable());
}

}  // namespace
}  // namespace zelvane
