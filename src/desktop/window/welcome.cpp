#include "desktop/window/welcome.h"

#include <QDir>
#include <QFile>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace zelvane {
namespace {

constexpr int LongestTitle = 300;  // bytes of a title line
constexpr int PathRole = Qt::UserRole;

constexpr char Intro[] =
    "Draw a kinetic scheme of an ion channel, give it a stimulus and run it.\n\n"
    "1.  Model: switch states on and type the rates of their links.\n"
    "2.  Stimulus: a step of voltage or of a drug, trains, waveforms.\n"
    "3.  Run (F5): the response appears below the scheme.\n\n"
    "Right-click any item to see what it is. Or start with a published model:";

}  // namespace

std::vector<ExampleModel> ExampleModels(const QString& folder) {
  std::vector<ExampleModel> models;
  if (folder.isEmpty()) return models;
  for (const QFileInfo& info : QDir(folder).entryInfoList({"*.mod"}, QDir::Files, QDir::Name)) {
    QFile file(info.filePath());
    if (!file.open(QIODevice::ReadOnly)) continue;
    file.readLine(LongestTitle);  // the magic
    const QString title = QString::fromUtf8(file.readLine(LongestTitle)).trimmed();
    models.push_back({info.filePath(), title.isEmpty() ? info.completeBaseName() : title});
  }
  return models;
}

Welcome::Welcome(const QString& modelsFolder, QWidget* parent) : QDialog(parent) {
  setWindowTitle("Welcome to Zelvane");
  setObjectName("Welcome");
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(24, 20, 24, 18);
  layout->setSpacing(12);
  auto* heading = new QLabel("Welcome to Zelvane", this);
  heading->setProperty("role", "title");
  auto* intro = new QLabel(Intro, this);
  intro->setWordWrap(true);
  auto* list = new QListWidget(this);
  for (const ExampleModel& model : ExampleModels(modelsFolder)) {
    auto* item = new QListWidgetItem(model.title, list);
    item->setData(PathRole, model.path);
    item->setToolTip(model.path);
  }
  list->setMinimumSize(720, 330);
  list->setSpacing(3);
  list->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
  list->setWordWrap(true);  // titles name their sources and must not be cut
  list->setTextElideMode(Qt::ElideNone);
  list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  const auto choose = [this](const QListWidgetItem* item) {
    if (!isVisible()) return;  // a click has already chosen
    const QString path = item->data(PathRole).toString();
    accept();
    emit modelChosen(path);
  };
  connect(list, &QListWidget::itemClicked, this, choose);
  connect(list, &QListWidget::itemActivated, this, choose);
  auto* start = new QPushButton("Start with the present model", this);
  connect(start, &QPushButton::clicked, this, &QDialog::accept);
  start->setDefault(true);
  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(start);
  layout->addWidget(heading);
  layout->addWidget(intro);
  layout->addWidget(list, 1);
  layout->addLayout(buttons);
  start->setFocus();
}

}  // namespace zelvane
