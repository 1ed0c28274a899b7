// Random commands over all names of the program: nothing may crash, hang or leave the program busy. Meant for the
// sanitizers. The environment variable ZELVANE_RANDOM_COMMANDS sets their number.
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <map>
#include <random>
#include <sstream>

#include "headless/drive/drive_session.h"
#include "support/drive_test.h"

namespace zelvane {
namespace {

constexpr int CommandsOfScript = 200;  // then the program starts again
constexpr int DefaultCommands = 2000;
constexpr std::chrono::milliseconds Patience{20};  // then work is stopped, as by the stop button

class RandomCommandsTest : public DriveTest {
 protected:
  RandomCommandsTest() : former_(std::filesystem::current_path()) {
    std::filesystem::current_path(folder.Path());  // typed names of files are below it
    CopyFiles();
    Run("press AddNewModel");
    CollectNames();
  }
  ~RandomCommandsTest() override { std::filesystem::current_path(former_); }

  /// Brings the files back to their first state: commands write over them, and long files take their time.
  void CopyFiles() {
    for (const std::string& name : folder.Names()) std::filesystem::remove_all(folder.File(name));
    for (const char* name :
         {"abf1/abf-v1.abf", "abf2/20101002.abf", "broken/abf2_data_cut.abf", "broken/abf1_data_odd.abf",
          "derived/odd_quoting.atf", "broken/atf_short_row.atf", "derived/single_column_interval.asc"}) {
      std::filesystem::copy(Recordings + name, folder.Path());
    }
    std::filesystem::copy(ZELVANE_DATA "/models/ampa_jonas_1993.mod", folder.Path());
  }

  /// Fills the words that stand for the placeholders of the usage of a command.
  void CollectNames() {
    for (const Control& control : Screen.controls) {
      words_["NAME"].push_back(control.name);
      words_["CALLBACK"].push_back(control.command.empty() ? control.name : control.command);
    }
    for (const MenuItem& item : Screen.menu) words_["CALLBACK"].push_back(item.command);
    words_["FIELD"] = words_["NAME"];
    for (const auto& [name, field] : AllFields()) words_["NAME"].push_back(field.name);
    for (const Panel& panel : Screen.panels) words_["PANEL"].push_back(panel.name);
    for (const Graph& graph : Screen.graphs) words_["GRAPH"].push_back(graph.name);
    for (const Table& table : Screen.tables) words_["TABLE"].push_back(table.name);
    for (const TextBox& box : Screen.textBoxes) words_["NAME"].push_back(box.name);
    words_["PATH"] = folder.Names();
    for (const char* name : {"new.abf", "new.txt", "new.mod", "new.tbl", "new.res", "new.stm", "new.lst",
                             "new.drive", "absent", ".", "/dev/full", "/dev/null"}) {
      words_["PATH"].emplace_back(name);
    }
    words_["KEY"] = {"Enter", "Escape", "Delete", "x"};
    words_["BUTTON"] = {"xexpand", "xcontract", "yexpand", "ycontract", "left", "right", "up", "down"};
    for (const char* word :
         {"0",          "1",     "2",      "3",      "4",   "5",    "10",  "20",         "100",
          "1000",       "0.5",   "0.01",   "1e-6",   "-1",  "-0.5", "1e6", "2147483647", "-2147483648",
          "4294967296", "1e300", "-1e300", "1e-300", "nan", "inf",  "abc", "\"\"",       "\"two words\"",
          "\xC3\xA9",   "on",    "off"}) {
      words_["VALUE"].emplace_back(word);
    }
    words_["VALUE"].emplace_back(300, 'L');
  }

  std::size_t Below(std::size_t count) {
    return std::uniform_int_distribution<std::size_t>(0, count - 1)(random_);
  }
  const std::string& AnyOf(const Texts& words) { return words[Below(words.size())]; }

  /// Returns a word for one of a usage: a name of its kind, one of its alternatives, or the word itself.
  std::string WordFor(std::string usage) {
    std::erase_if(usage, [](char c) { return c == '[' || c == ']' || c == '.'; });
    if (Below(50) == 0) return AnyOf(words_["VALUE"]);
    if (const auto words = words_.find(usage); words != words_.end()) return AnyOf(words->second);
    if (const std::size_t bar = usage.find('|'); bar != std::string::npos)
      return Below(2) == 0 ? usage.substr(0, bar) : usage.substr(bar + 1);
    return std::isupper(static_cast<unsigned char>(usage.front())) != 0 ? AnyOf(words_["VALUE"]) : usage;
  }

  /// Returns a command, after answers for what it may ask.
  std::string RandomLine() {
    static const Texts frequent = {"enter NAME VALUE", "press CALLBACK", "open PATH",
                                   "during N press CALLBACK"};
    std::string lines;
    for (const char* usage : {"answer yes|no", "choose PATH", "reply FIELD VALUE ok|cancel", ""}) {
      const bool isLast = *usage == '\0';
      if (!isLast && Below(3) != 0) continue;
      std::string chosen = isLast ? AnyOf(frequent) : usage;
      if (isLast && Below(2) == 0) {
        const auto commands = Below(3) == 0 ? QueryCommands() : ActionCommands();
        chosen = commands[Below(commands.size())].usage;
        chosen = chosen.substr(0, chosen.find(" | "));
      }
      std::istringstream words(chosen);
      std::string line;
      for (std::string word; words >> word;)
        line += (line.empty() ? "" : " ") + (line.empty() ? word : WordFor(word));
      lines += line + '\n';
    }
    return lines;
  }

  /// Plays a script in the running program. Work is stopped after a moment.
  std::string Play(const std::string& script) {
    std::istringstream in(script);
    std::ostringstream out;
    auto begin = std::chrono::steady_clock::now();
    const auto stopInTime = [&begin] {
      if (std::chrono::steady_clock::now() - begin > Patience) RequestStop();
    };
    DriveHost host;
    host.frontEnd.pump = stopInTime;
    host.frontEnd.breathe = [stopInTime](double) { stopInTime(); };
    host.afterLine = [&begin] { begin = std::chrono::steady_clock::now(); };
    while (in) PlayDrive(in, out, host);  // some commands end the program
    return out.str();
  }

  std::mt19937 random_{20'261'123};
  std::map<std::string, Texts, std::less<>> words_;

 private:
  std::filesystem::path former_;
};

TEST_F(RandomCommandsTest, NoCommandCrashesOrLeavesTheProgramBusy) {
  const char* wanted = std::getenv("ZELVANE_RANDOM_COMMANDS");
  const int commands = wanted != nullptr ? std::atoi(wanted) : DefaultCommands;
  const std::string kept =
      (std::filesystem::temp_directory_path() / ("zelvane-random-" + std::to_string(::getpid()) + ".drive"))
          .string();
  for (int done = 0; done < commands; done += CommandsOfScript) {
    std::string script;
    for (int k = 0; k < CommandsOfScript; ++k) script += RandomLine();
    WriteWholeFile(kept, script);  // is there after a crash
    CopyFiles();
    Run("open ampa_jonas_1993.mod; enter NumPoints 200; press AcquireData");
    EXPECT_NO_THROW(ParsedLines(Play(script))) << kept;
    EXPECT_EQ(Screen.busy, 0) << kept;
    ASSERT_FALSE(HasFailure());
  }
  std::filesystem::remove(kept);
}

}  // namespace
}  // namespace zelvane
