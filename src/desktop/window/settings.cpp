#include "desktop/window/settings.h"

#include <QDir>
#include <QFileInfo>

#include "desktop/widgets/text.h"
#include "platform/folders.h"

namespace zelvane {
namespace {

constexpr char LastFolderKey[] = "files/lastFolder";
constexpr char RecentFilesKey[] = "files/recent";

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
  const QString whole = QFileInfo(path).absoluteFilePath();
  recentFiles_.removeAll(whole);
  recentFiles_.prepend(whole);
  recentFiles_ = recentFiles_.mid(0, MaxRecentFiles);
  setValue(RecentFilesKey, recentFiles_);
}

void Settings::clearRecentFiles() {
  recentFiles_.clear();
  setValue(RecentFilesKey, recentFiles_);
}

QVariant Settings::value(const QString& key, const QVariant& unset) const {
  return file_ ? file_->value(key, unset) : unset;
}

void Settings::setValue(const QString& key, const QVariant& value) {
  if (file_) file_->setValue(key, value);
}

}  // namespace zelvane
