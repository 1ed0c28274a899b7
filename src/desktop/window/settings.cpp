#include "desktop/window/settings.h"

#include <QDir>
#include <QFileInfo>

#include "desktop/widgets/text.h"
#include "platform/folders.h"

namespace zelvane {
namespace {

constexpr char LastFolderKey[] = "files/lastFolder";
constexpr char RecentFilesKey[] = "files/recent";
constexpr int MostPixels = 100'000;  // a larger number is not the size of a part

}  // namespace

Settings::Settings(bool keep) {
  const std::string folder = UserConfigFolder();
  if (!keep || folder.empty()) return;
  file_.emplace(QDir(ToQt(folder)).filePath("desktop.ini"), QSettings::IniFormat);
  lastFolder_ = file_->value(LastFolderKey).toString();
  recentFiles_ = file_->value(RecentFilesKey).toStringList().mid(0, MaxRecentFiles);
}

QString Settings::lastFolder() const {
  return QFileInfo(lastFolder_).isDir() ? lastFolder_ : QDir::currentPath();
}

void Settings::setLastFolder(const QString& folder) {
  lastFolder_ = folder;
  setValue(LastFolderKey, folder);
}

void Settings::addRecentFile(const QString& path) {
  const QString fullPath = QFileInfo(path).absoluteFilePath();
  recentFiles_.removeAll(fullPath);
  recentFiles_.prepend(fullPath);
  recentFiles_ = recentFiles_.mid(0, MaxRecentFiles);
  setValue(RecentFilesKey, recentFiles_);
}

void Settings::clearRecentFiles() {
  recentFiles_.clear();
  setValue(RecentFilesKey, recentFiles_);
}

QVariant Settings::value(const QString& key, const QVariant& unset) const {
  return file_ ? file_->value(key, unset) : session_.value(key, unset);
}

void Settings::setValue(const QString& key, const QVariant& value) {
  if (file_)
    file_->setValue(key, value);
  else
    session_[key] = value;
}

bool Settings::flag(const QString& key, bool unset) const {
  const QString word = value(key).toString();
  return word == "true" || (unset && word != "false");
}

QList<int> Settings::sizes(const QString& key, qsizetype count) const {
  QList<int> sizes;
  for (const QString& word : value(key).toStringList()) {
    const int size = word.toInt();  // 0 for a word that is not a number
    if (size <= 0 || size > MostPixels) return {};
    sizes.push_back(size);
  }
  return sizes.size() == count ? sizes : QList<int>{};
}

void Settings::setSizes(const QString& key, const QList<int>& sizes) {
  QStringList words;
  for (const int size : sizes) words.push_back(QString::number(size));
  setValue(key, words);
}

}  // namespace zelvane
