// Fixtures shared by the tests.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <deque>
#include <filesystem>

#include "model/model_store.h"
#include "screen/screen.h"

namespace zelvane {

using Texts = std::vector<std::string>;
using Floats = std::vector<float>;

/// A message or question as the user saw it.
struct SeenPopup {
  std::string title;
  std::string text;
  bool operator==(const SeenPopup&) const = default;
};

/// A folder of the test's own, removed at its end.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  std::string File(std::string_view name) const;
  const std::filesystem::path& Path() const { return path_; }

  /// Writes a file and gives its path.
  std::string Written(std::string_view name, std::string_view content) const;

  /// Names of all that lies in the folder.
  std::vector<std::string> Names() const;

 private:
  std::filesystem::path path_;
};

/// Every store is as at start-up, the screen is empty, and popups are recorded. Questions are answered from
/// `answers` (no when it is empty), file dialogs from `choices` (cancelled when it is empty). `folder` is empty.
class StoreTest : public ::testing::Test {
 protected:
  StoreTest();
  ~StoreTest() override;
  StoreTest(const StoreTest&) = delete;
  StoreTest& operator=(const StoreTest&) = delete;

  /// Texts of the popups shown so far, without their titles.
  Texts PopupTexts() const;

  TemporaryFolder folder;
  std::vector<SeenPopup> popups;
  int errors = 0;  // messages among them that are errors
  std::vector<std::string> consoleLines;
  std::vector<FileRequest> fileRequests;
  std::deque<bool> answers;
  std::deque<std::string> choices;
  int pumps = 0;                    // calls of ProcessSystemEvents
  std::function<void(int)> onPump;  // told the number of the call, from 1

 private:
  FrontEnd former_;
};

/// The same with every panel on the screen, as after a start without "config.mod".
class PanelTest : public StoreTest {
 protected:
  PanelTest();
};

/// Recordings of other programs, intact and damaged ones.
inline const std::string Recordings = std::string(ZELVANE_TEST_DATA) + "/recordings/";

/// The bytes of a file; a test failure when it cannot be read.
std::string ReadWholeFile(const std::string& path);
void WriteWholeFile(const std::string& path, std::string_view content);

}  // namespace zelvane
