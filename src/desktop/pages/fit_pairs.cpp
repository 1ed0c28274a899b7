#include "desktop/pages/fit_pairs.h"

#include <QGridLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QVBoxLayout>

#include "desktop/graph/graph_colours.h"
#include "desktop/widgets/control_widget.h"
#include "desktop/widgets/elided_label.h"
#include "desktop/widgets/scroll_down.h"
#include "desktop/widgets/style_property.h"
#include "desktop/widgets/text.h"
#include "fit/fit_panel.h"
#include "fit/fit_store.h"
#include "platform/index.h"
#include "screen/entry.h"

namespace zelvane {
namespace {

constexpr int SwatchWidth = 4;  // pixels
constexpr int SwatchMargin = 5;
constexpr int NumberWidth = 16;

constexpr char NoRecording[] = "no recording";
constexpr char NoStimulus[] = "no stimulus";
constexpr char DropHint[] =
    "Drop recordings and stimulus files (.stm) here, several at once. Files with the same name become a pair.";

const FitWaveform& WaveOf(int wave) {
  return Fit.Wave[Index(wave)];
}

std::string Numbered(const char* name, int wave) {
  return name + ('[' + std::to_string(wave)) + ']';
}

void ShowName(ElidedLabel& label, const std::string& name, const char* whenEmpty) {
  label.showText(name.empty() ? QString(whenEmpty) : ToQt(name));
  SetStyleProperty(&label, "role", name.empty() ? "muted" : "");
}

}  // namespace

FitPair::FitPair(int wave, QWidget* parent)
    : QFrame(parent), wave_(wave), number_(new QLabel(QString::number(wave), this)) {
  setObjectName("FitPair");
  setProperty("role", "pair");
  setToolTip("Click to show this waveform");
  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(SwatchWidth + 2 * SwatchMargin, 4, 4, 4);
  grid->setHorizontalSpacing(6);
  grid->setVerticalSpacing(2);
  grid->setColumnStretch(2, 1);
  number_->setProperty("role", "value");
  number_->setMinimumWidth(NumberWidth);
  grid->addWidget(number_, 0, 0);
  data_ = addLine(0, "FitDataOn", NoRecording);
  stimulus_ = addLine(1, "FitStimOn", NoStimulus);
}

ElidedLabel* FitPair::addLine(int row, const char* control, const char* whenEmpty) {
  auto* grid = static_cast<QGridLayout*>(layout());
  switches_.push_back(
      new ControlWidget(ControlNamed(Numbered(control, wave_)), this, ControlWidget::Look::Bare));
  auto* name = new ElidedLabel(this);
  ShowName(*name, {}, whenEmpty);
  grid->addWidget(switches_.back(), row, 1);
  grid->addWidget(name, row, 2);
  return name;
}

bool FitPair::used() const {
  const FitWaveform& wave = WaveOf(wave_);
  return wave.WaveLoaded != 0 || wave.DataOn != 0 || wave.StimOn != 0 || !wave.StimName.empty();
}

void FitPair::refresh() {
  for (ControlWidget* onOff : switches_) onOff->refresh();
  ShowName(*data_, WaveOf(wave_).DataName, NoRecording);
  ShowName(*stimulus_, WaveOf(wave_).StimName, NoStimulus);
  SetStyleProperty(this, "chosen", Fit.FitShownWave == wave_);
  update();
}

void FitPair::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) EnterTyped(ControlNamed("FitShownWave"), std::to_string(wave_));
}

/// Draws the colour of the curve at the left edge.
void FitPair::paintEvent(QPaintEvent* event) {
  QFrame::paintEvent(event);
  if (WaveOf(wave_).WaveLoaded == 0) return;
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(VisibleColour(FitCurveColour(wave_), ColoursOf(palette())));
  painter.drawRoundedRect(SwatchMargin, SwatchMargin, SwatchWidth, height() - 2 * SwatchMargin, 2, 2);
}

FitPairs::FitPairs(QWidget* parent) : QScrollArea(parent), hint_(new QLabel(DropHint, this)) {
  auto* content = new QWidget(this);
  auto* layout = new QVBoxLayout(content);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(2);
  for (int wave = 1; wave <= MaxFitWaveforms; ++wave) {
    pairs_.push_back(new FitPair(wave, content));
    layout->addWidget(pairs_.back());
  }
  hint_->setWordWrap(true);
  hint_->setProperty("role", "muted");
  hint_->setContentsMargins(6, 4, 4, 0);
  layout->addWidget(hint_);
  layout->addStretch();
  ScrollDown(*this, content);
}

void FitPairs::refresh() {
  std::size_t last = 0;
  for (std::size_t i = 0; i < pairs_.size(); ++i) {
    if (pairs_[i]->used()) last = i + 1;
  }
  for (std::size_t i = 0; i < pairs_.size(); ++i) {
    pairs_[i]->setVisible(i <= last);
    if (i <= last) pairs_[i]->refresh();
  }
  hint_->setVisible(last < 2);
}

}  // namespace zelvane
