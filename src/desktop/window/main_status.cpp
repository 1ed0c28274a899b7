#include "desktop/window/main_status.h"

#include <QFileInfo>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <algorithm>
#include <cmath>

#include "desktop/widgets/elided_label.h"
#include "desktop/widgets/text.h"
#include "desktop/window/note_line.h"
#include "model/model_store.h"
#include "screen/entry.h"
#include "screen/screen.h"

namespace zelvane {
namespace {

constexpr int ProgressSteps = 1000;
constexpr int LeastProgressWidth = 240;  // pixels
constexpr int MostProgressWidth = 380;
constexpr char PercentText[] = "%p%";

/// Returns "12.3 s", or "3:05" from one minute on.
QString ElapsedText(qint64 ms) {
  if (ms < 60'000) return QString::number(static_cast<double>(ms / 100) / 10.0, 'f', 1) + " s";
  return QStringLiteral("%1:%2").arg(ms / 60'000).arg(ms / 1000 % 60, 2, 10, QChar('0'));
}

}  // namespace

MainStatus::MainStatus(QWidget* parent)
    : QStatusBar(parent),
      note_(new NoteLine(this)),
      file_(new ElidedLabel(this)),
      data_(new ElidedLabel(this)),
      length_(new QLabel(this)),
      form_(new QLabel(this)),
      progress_(new QProgressBar(this)),
      stop_(new QPushButton("Stop", this)) {
  progress_->setRange(0, ProgressSteps);
  progress_->setMinimumWidth(LeastProgressWidth);
  progress_->setMaximumWidth(MostProgressWidth);
  stop_->setFocusPolicy(Qt::NoFocus);
  stop_->setToolTip("Stop the run or the analysis (Esc)");
  connect(stop_, &QPushButton::clicked, this, &MainStatus::stopPressed);
  file_->setContentsMargins(8, 0, 12, 0);
  data_->setContentsMargins(0, 0, 12, 0);
  length_->setContentsMargins(0, 0, 12, 0);
  connect(note_, &NoteLine::clicked, this, &MainStatus::notesWanted);
  connect(note_, &NoteLine::shown, this, &MainStatus::refresh);
  addWidget(note_, 1);
  addWidget(file_);
  addWidget(data_);
  addWidget(length_);
  addWidget(form_);
  addPermanentWidget(progress_, 1);
  addPermanentWidget(stop_);
  progress_->hide();
  stop_->hide();
}

void MainStatus::refresh() {
  const QString path = ToQt(Model.ModelFileName);
  file_->showText(path.isEmpty() ? QStringLiteral("No model file") : QFileInfo(path).fileName(), path);
  const QString shown = ToQt(ControlNamed("DataName").text);  // for a run the path of the model
  data_->showText(QFileInfo(shown).fileName(), shown);
  const bool free = note_->isHidden();
  data_->setVisible(free && !shown.isEmpty() && shown != path);
  for (QWidget* fact :
       {static_cast<QWidget*>(file_), static_cast<QWidget*>(length_), static_cast<QWidget*>(form_)})
    fact->setVisible(free);
  length_->setText("Sweep " + ToQt(CompactNumber(ControlNamed("SweepLength").number, 6)) + " ms");
  form_->setText(ToQt(ShownText(ControlNamed("ModelForm"))));
}

void MainStatus::showNote(const QString& sentence) {
  note_->showNote(sentence);
}

void MainStatus::showProgress(double fraction, const QString& text) {
  if (fraction < 0.0) {
    sinceStart_.invalidate();
    runText_.clear();
    progress_->hide();
    stop_->hide();
    return;
  }
  runText_ = text.isEmpty() ? text : text + "  ";
  showFraction(fraction);
}

void MainStatus::showFraction(double fraction) {
  if (!sinceStart_.isValid()) {
    sinceStart_.start();
    progress_->show();
    stop_->show();
  }
  // The text first: setting the value paints at once, and only one paint is wanted.
  progress_->setFormat(runText_ + PercentText + "  " + ElapsedText(sinceStart_.elapsed()));
  progress_->setValue(static_cast<int>(std::lround(std::clamp(fraction, 0.0, 1.0) * ProgressSteps)));
}

}  // namespace zelvane
