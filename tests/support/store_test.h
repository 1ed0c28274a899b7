// Fixtures that the tests share.
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

/// A message or question as the user sees it.
struct SeenPopup {
  std::string title;
  std::string text;
  bool operator==(const SeenPopup&) const = default;
};

/// A folder for one test, removed at its end.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  std::string File(std::string_view name) const;
  const std::filesystem::path& Path() const { return path_; }

  /// Writes a file and returns its path.
  std::string Written(std::string_view name, std::string_view content) const;

  /// Returns the names of everything in the folder.
  std::vector<std::string> Names() const;

 private:
  std::filesystem::path path_;
};

/// Sets every store to its state at start-up, clears the screen and records popups and notes. Answers questions from
/// `answers` (no when it is empty) and file dialogs from `choices` (cancelled when it is empty). `folder` is
/// empty.
class StoreTest : public ::testing::Test {
 protected:
  StoreTest();
  ~StoreTest() override;
  StoreTest(const StoreTest&) = delete;
  StoreTest& operator=(const StoreTest&) = delete;

  /// Returns the texts of the popups so far, without their titles.
  Texts PopupTexts() const;

  TemporaryFolder folder;
  std::vector<SeenPopup> popups;
  Texts notes;
  int errors = 0;  // those of them that are errors
  std::vector<std::string> consoleLines;
  std::vector<FileRequest> fileRequests;
  std::deque<bool> answers;
  std::deque<std::string> choices;
  int pumps = 0;                    // calls of ProcessSystemEvents
  std::function<void(int)> onPump;  // gets the number of the call, from 1

 private:
  FrontEnd former_;
};

/// Does the same with every panel on the screen, as after a start without "config.mod".
class PanelTest : public StoreTest {
 protected:
  PanelTest();
};

/// Intact and damaged recordings of other programs.
inline const std::string Recordings = std::string(ZELVANE_TEST_DATA) + "/recordings/";

/// Returns the bytes of a file; the test fails when it cannot be read.
std::string ReadWholeFile(const std::string& path);
void WriteWholeFile(const std::string& path, std::string_view content);

}  // namespace zelvane
