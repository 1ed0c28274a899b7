#include "support/store_test.h"

#include <fstream>
#include <random>
#include <sstream>

#include "app/application.h"
#include "app/stores.h"

namespace zelvane {

StoreTest::StoreTest() {
  AllocateStores();
  ResetStores();
  ClearScreen();
  FrontEnd recorder;
  recorder.message = [this](MessageTitle title, std::string_view text) {
    popups.push_back({std::string(title.words), std::string(text)});
    if (title.kind == MessageKind::Error) ++errors;
  };
  recorder.note = [this](std::string_view sentence) { notes.emplace_back(sentence); };
  recorder.confirm = [this](std::string_view title, std::string_view text) {
    popups.push_back({std::string(title), std::string(text)});
    if (answers.empty()) return false;
    const bool answer = answers.front();
    answers.pop_front();
    return answer;
  };
  recorder.files = [this](const FileRequest& request) {
    fileRequests.push_back(request);
    if (choices.empty()) return Texts{};
    Texts chosen{choices.front()};
    choices.pop_front();
    return chosen;
  };
  recorder.pump = [this] {
    ++pumps;
    if (onPump) onPump(pumps);
  };
  recorder.console = [this](std::string_view line) { consoleLines.emplace_back(line); };
  former_ = SetFrontEnd(std::move(recorder));
}

StoreTest::~StoreTest() {
  SetFrontEnd(std::move(former_));
}

Texts StoreTest::PopupTexts() const {
  Texts texts;
  for (const SeenPopup& popup : popups) texts.push_back(popup.text);
  return texts;
}

PanelTest::PanelTest() {
  AddAllPanels();
  WriteAllControls();
}

TemporaryFolder::TemporaryFolder() {
  std::random_device device;
  const auto base = std::filesystem::temp_directory_path();
  do {
    path_ = base / ("zelvane-test-" + std::to_string(device()));
  } while (!std::filesystem::create_directory(path_));
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;  // a test may have removed rights; the folder is temporary
  std::filesystem::permissions(path_, std::filesystem::perms::owner_all, ignored);
  std::filesystem::remove_all(path_, ignored);
}

std::string TemporaryFolder::File(std::string_view name) const {
  return (path_ / name).string();
}

std::string TemporaryFolder::Written(std::string_view name, std::string_view content) const {
  WriteWholeFile(File(name), content);
  return File(name);
}

Texts TemporaryFolder::Names() const {
  Texts names;
  for (const auto& entry : std::filesystem::directory_iterator(path_))
    names.push_back(entry.path().filename().string());
  return names;
}

std::string ReadWholeFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  EXPECT_TRUE(in.good()) << path;
  std::ostringstream content;
  content << in.rdbuf();
  return content.str();
}

void WriteWholeFile(const std::string& path, std::string_view content) {
  std::ofstream out(path, std::ios::binary);
  out << content;
  EXPECT_TRUE(out.good()) << path;
}

}  // namespace zelvane
