#include "desktop/main_status.h"

#include <QFileInfo>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <cmath>

#include "desktop/text.h"
#include "model/model_store.h"
#include "screen/screen.h"
#include "shell/entry.h"

namespace zelvane {
namespace {

constexpr int ProgressSteps = 1000;

}  // namespace

MainStatus::MainStatus(QWidget* parent)
    : QStatusBar(parent),
      file_(new QLabel(this)),
      length_(new QLabel(this)),
      form_(new QLabel(this)),
      progress_(new QProgressBar(this)),
      stop_(new QPushButton("Stop", this)) {
  progress_->setRange(0, ProgressSteps);
  progress_->setFixedWidth(220);
  stop_->setFocusPolicy(Qt::NoFocus);
  stop_->setToolTip("Stop the run (Esc)");
  connect(stop_, &QPushButton::clicked, this, [] { Press(ControlNamed("StopRun")); });
  file_->setContentsMargins(8, 0, 12, 0);
  length_->setContentsMargins(0, 0, 12, 0);
  addWidget(file_);
  addWidget(length_);
  addWidget(form_);
  addPermanentWidget(progress_);
  addPermanentWidget(stop_);
  progress_->hide();
  stop_->hide();
}

void MainStatus::refresh() {
  const QString path = ToQt(Model.ModelFileName);
  file_->setText(path.isEmpty() ? QStringLiteral("No model file") : QFileInfo(path).fileName());
  file_->setToolTip(path);
  length_->setText("Sweep " + ToQt(CompactNumber(ControlNamed("SweepLength").number, 6)) + " ms");
  form_->setText(ToQt(ShownText(ControlNamed("ModelForm"))));
}

void MainStatus::showProgress(double fraction, const QString& text) {
  const bool running = fraction >= 0.0;
  progress_->setVisible(running);
  stop_->setVisible(running);
  if (!running) return;
  progress_->setValue(static_cast<int>(std::lround(std::min(fraction, 1.0) * ProgressSteps)));
  progress_->setFormat(text.isEmpty() ? QStringLiteral("%p%") : text + "  %p%");
}

}  // namespace zelvane
