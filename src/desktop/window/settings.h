// The settings that the window keeps between sessions.
#pragma once

#include <QByteArray>
#include <QSettings>
#include <QString>
#include <QStringList>
#include <optional>

namespace zelvane {

inline constexpr int MaxRecentFiles = 10;

/// Kept in "desktop.ini" of the user's configuration folder. Without that folder, or where it cannot be
/// written, the settings last for this session only.
class Settings {
 public:
  /// With `keep` false reads and writes no file, for runs from scripts.
  explicit Settings(bool keep);

  QString lastFolder() const;
  void setLastFolder(const QString& folder);

  /// Returns the files read last, newest first, each once.
  QStringList recentFiles() const { return recentFiles_; }
  void addRecentFile(const QString& path);
  void clearRecentFiles();

  /// Returns any other remembered thing, by its key.
  QVariant value(const QString& key, const QVariant& unset = {}) const;
  void setValue(const QString& key, const QVariant& value);

  /// Returns a switch, or `unset` where the key is missing or holds a word other than true and false.
  bool flag(const QString& key, bool unset) const;

  /// Returns the sizes of `count` parts in pixels. Empty where the key is missing or holds anything but
  /// `count` positive numbers.
  QList<int> sizes(const QString& key, qsizetype count) const;
  void setSizes(const QString& key, const QList<int>& sizes);

 private:
  std::optional<QSettings> file_;
  QVariantMap session_;  // used instead of the file
  QString lastFolder_;
  QStringList recentFiles_;
};

}  // namespace zelvane
