// The settings that the window keeps between sessions.
#pragma once

#include <QByteArray>
#include <QSettings>
#include <QString>
#include <QStringList>
#include <optional>

namespace zelvane {

inline constexpr int MaxRecentFiles = 10;

/// Kept in "desktop.ini" of the user's configuration folder. Without such a folder, or where it cannot be
/// written, everything holds for this session alone.
class Settings {
 public:
  /// `keep` false: nothing is read and nothing kept, for runs from scripts.
  explicit Settings(bool keep);

  QString lastFolder() const;
  void setLastFolder(const QString& folder);

  /// Newest first, each once.
  QStringList recentFiles() const { return recentFiles_; }
  void addRecentFile(const QString& path);
  void clearRecentFiles();

  /// Any other thing to remember, by its key.
  QVariant value(const QString& key, const QVariant& unset = {}) const;
  void setValue(const QString& key, const QVariant& value);

  /// A switch; `unset` where the key is missing or holds another word than true and false.
  bool flag(const QString& key, bool unset) const;

  /// Sizes of `count` parts in pixels. Empty where the key is missing or holds anything but so many positive
  /// numbers.
  QList<int> sizes(const QString& key, qsizetype count) const;
  void setSizes(const QString& key, const QList<int>& sizes);

 private:
  std::optional<QSettings> file_;
  QVariantMap session_;  // in place of the file
  QString lastFolder_;
  QStringList recentFiles_;
};

}  // namespace zelvane
