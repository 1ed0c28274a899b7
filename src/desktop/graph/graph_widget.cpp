#include "desktop/graph/graph_widget.h"

#include <qcustomplot.h>

#include <algorithm>
#include <cmath>

#include "desktop/graph/graph_cursors.h"
#include "desktop/graph/graph_export.h"
#include "desktop/graph/graph_menu.h"
#include "desktop/graph/graph_mouse.h"
#include "desktop/graph/graph_picture.h"
#include "desktop/graph/number_ticker.h"
#include "desktop/graph/zoom_bar.h"
#include "desktop/graph/zoom_buttons.h"
#include "desktop/graph/zoom_strip.h"
#include "platform/index.h"
#include "screen/graph_text.h"

namespace zelvane {
namespace {

constexpr int RightMargin = 14;                          // pixels; half of the last number along x
constexpr QMargins LeastMargins(66, 8, RightMargin, 0);  // most numbers fit into the left one
constexpr int BelowPlot = 45;                            // pixels of the numbers and title along x
constexpr int TickRoomX = 60;                            // pixels that a number along x needs
constexpr int TickRoomY = 22;
constexpr int MostTicks = 5;
constexpr int XStripThickness = 20;  // pixels
constexpr int YStripThickness = 40;  // pixels
constexpr double KeyZoom = 0.8;      // factor of the span
constexpr double KeyShare = 0.1;     // share of the span
constexpr std::size_t MostCopiedRows = 1'000'000;

constexpr char TooManyRows[] =
    "There are more than 1000000 rows in view. Zoom in first, or export them as a CSV file.";

/// A move of the view by one key, in spans; y counts upward.
struct KeyMove {
  int key;
  double x;
  double y;
};
constexpr KeyMove KeyMoves[] = {{Qt::Key_Left, -KeyShare, 0.0}, {Qt::Key_Right, KeyShare, 0.0},
                                {Qt::Key_Up, 0.0, KeyShare},    {Qt::Key_Down, 0.0, -KeyShare},
                                {Qt::Key_PageUp, -1.0, 0.0},    {Qt::Key_PageDown, 1.0, 0.0}};

void ColourAxis(QCPAxis* axis, const GraphColours& colours, const QFont& font) {
  axis->setBasePen(QPen(colours.frame, 1.0));
  axis->setTickPen(QPen(colours.frame, 1.0));
  axis->setSubTickPen(QPen(colours.frame, 1.0));
  axis->setTickLabelColor(colours.text);
  axis->setLabelColor(colours.text);
  axis->setTickLabelFont(font);
  axis->setLabelFont(font);
  axis->grid()->setPen(QPen(colours.grid, 0.0, Qt::DotLine));
  axis->grid()->setZeroLinePen(QPen(colours.grid, 0.0));
}

void ShowAxis(QCPAxis* axis, const Axis& record, const DataRange& range,
              const QSharedPointer<NumberTicker>& ticker) {
  axis->setScaleType(record.log ? QCPAxis::stLogarithmic : QCPAxis::stLinear);
  ticker->setDecimals(record.decimals);
  ticker->setGain(record.gain);
  if (!record.log) {
    axis->setTicker(ticker);
  } else if (axis->ticker() == ticker) {
    axis->setTicker(QSharedPointer<QCPAxisTickerLog>::create());
  }
  axis->setRange(range.min, range.max);
}

}  // namespace

GraphWidget::GraphWidget(Graph& graph, QWidget* parent)
    : QWidget(parent),
      graph_(graph),
      plot_(new QCustomPlot(this)),
      picture_(new GraphPicture(graph, plot_->xAxis, plot_->yAxis)),
      cursors_(new GraphCursors(graph, plot_)),
      readout_(new QLabel(this)),
      xTicker_(new NumberTicker),
      yTicker_(new NumberTicker) {
  setFocusPolicy(Qt::StrongFocus);
  setAccessibleName(QString::fromStdString(graph.name + " graph"));
  plot_->setFocusPolicy(Qt::NoFocus);
  plot_->setPlottingHints(QCP::phCacheLabels);  // without an own repaint of the window for each graph
  plot_->setLocale(QLocale::c());               // a full stop as decimal mark, as in every file
  plot_->axisRect()->setMinimumMargins(LeastMargins);
  for (QCPAxis* axis : {plot_->xAxis, plot_->yAxis}) axis->setNumberFormat(QStringLiteral("gb"));
  cursors_->setLayer(QStringLiteral("overlay"));
  readout_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  readout_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  readout_->setContextMenuPolicy(Qt::PreventContextMenu);
  if (graph.zooms) addZoomControls();
  new GraphMouse(*this);
  connect(plot_, &QCustomPlot::beforeReplot, picture_, &GraphPicture::sync);
  connect(plot_, &QCustomPlot::afterLayout, this, &GraphWidget::placeZoomControls);
  applyColours(false);
  refresh();
}

void GraphWidget::addZoomControls() {
  xStrip_ = new ZoomStripArea(graph_, 'x', this);
  yStrip_ = new ZoomStripArea(graph_, 'y', this);
  xBar_ = new ZoomBar(graph_, 'x', this);
  yBar_ = new ZoomBar(graph_, 'y', this);
  for (ZoomStripArea* strip : {xStrip_, yStrip_})
    connect(strip, &ZoomStripArea::zoomed, this, &GraphWidget::refresh);
  for (ZoomBar* bar : {xBar_, yBar_}) connect(bar, &ZoomBar::scrolled, this, &GraphWidget::refresh);
  for (const char* name : {"left", "right", "up", "down", "xcontract", "xexpand", "ycontract", "yexpand"}) {
    buttons_.push_back(new ZoomGraphButton(graph_, name, this));
    connect(buttons_.back(), &ZoomGraphButton::zoomed, this, &GraphWidget::refresh);
  }
}

void GraphWidget::refresh() {
  applyAxes();
  showReadout();
  if (xBar_ != nullptr) {
    xBar_->update();
    yBar_->update();
  }
  plot_->replot(QCustomPlot::rpQueuedReplot);
}

void GraphWidget::applyAxes() {
  if (showsX_) plot_->xAxis->setLabel(QString::fromStdString(graph_.x.title));
  showYTitle();
  ShowAxis(plot_->xAxis, graph_.x, PictureRange(graph_, 'x'), xTicker_);
  ShowAxis(plot_->yAxis, graph_.y, PictureRange(graph_, 'y'), yTicker_);
  limitTicks();
}

/// Shows the title of y along the axis. On a low graph it loses its middle and keeps its unit.
void GraphWidget::showYTitle() {
  const QFontMetrics metrics(plot_->yAxis->labelFont());
  plot_->yAxis->setLabel(metrics.elidedText(QString::fromStdString(graph_.y.title), Qt::ElideMiddle,
                                            plot_->height() - (showsX_ ? BelowPlot : 0)));
}

void GraphWidget::applyColours(bool forPaper) {
  const GraphColours colours = forPaper ? PaperColours() : ColoursOf(palette());
  plot_->setBackground(forPaper ? colours.background : palette().color(QPalette::Window));
  plot_->axisRect()->setBackground(colours.background);
  for (QCPAxis* axis : {plot_->xAxis, plot_->yAxis}) {
    ColourAxis(axis, colours, font());
    if (!forPaper) axis->setLabelColor(palette().color(QPalette::WindowText));
    if (!forPaper) axis->setTickLabelColor(palette().color(QPalette::WindowText));
    if (!forPaper && hasFocus()) axis->setBasePen(QPen(palette().color(QPalette::Highlight), 2.0));
  }
  picture_->setColours(colours);
  cursors_->setColours(colours);
}

void GraphWidget::showReadout() {
  std::vector<Cursor> cursors = cursors_->shown();
  for (std::size_t k = 0; k < cursors.size(); ++k) {
    const bool told = readoutCursors_.empty() || std::find(readoutCursors_.begin(), readoutCursors_.end(),
                                                           static_cast<int>(k) + 1) != readoutCursors_.end();
    cursors[k].enabled = cursors[k].enabled && told;
  }
  const std::string text = CursorReadout(cursors, graph_.x.title, graph_.x.gain);
  const bool wasEmpty = readout_->text().isEmpty();
  readout_->setText(QString::fromStdString(text));
  readout_->setToolTip(readout_->text());
  if (wasEmpty != text.empty()) placePlot();
}

// -- Layout --

void GraphWidget::placePlot() {
  const int top = readout_->text().isEmpty() ? 0 : fontMetrics().height() + 4;
  const int bar = graph_.zooms ? ZoomBarThickness : 0;
  readout_->setGeometry(0, 0, width() - bar - RightMargin, top);
  // Before the layout has set a size the widget is tiny, and a plot needs at least one pixel.
  plot_->setGeometry(0, top, std::max(width() - bar, 1), std::max(height() - top - bar, 1));
  limitTicks();
  showYTitle();
}

/// Leaves room for the numbers of the axes.
void GraphWidget::limitTicks() {
  const int wide = plot_->width() - LeastMargins.left();
  const int high = plot_->height() - (showsX_ ? BelowPlot : 0);
  plot_->xAxis->ticker()->setTickCount(std::clamp(wide / TickRoomX, 1, MostTicks));
  plot_->yAxis->ticker()->setTickCount(std::clamp(high / TickRoomY, 1, MostTicks));
}

/// Keeps the plot area where longer numbers have moved it: it must not jump under the mouse.
void GraphWidget::keepMargin() {
  QCPAxisRect& area = *plot_->axisRect();
  QMargins least = area.minimumMargins();
  least.setLeft(std::max(least.left(), area.margins().left()));
  area.setMinimumMargins(least);
}

void GraphWidget::setShowsX(bool shows) {
  if (shows == showsX_) return;
  showsX_ = shows;
  plot_->xAxis->setLabel({});
  plot_->xAxis->setTickLabels(shows);
  placePlot();
  applyAxes();
}

void GraphWidget::standOn(GraphWidget& below) {
  setShowsX(false);
  connect(plot_, &QCustomPlot::afterLayout, &below, [this, &below] { matchMargin(below); });
  connect(below.plot_, &QCustomPlot::afterLayout, this, [this, &below] { below.matchMargin(*this); });
}

/// Makes the left margin of the other graph as wide as this one's.
void GraphWidget::matchMargin(GraphWidget& other) {
  QCPAxisRect& area = *other.plot_->axisRect();
  QMargins least = area.minimumMargins();
  const int left = plot_->axisRect()->margins().left();
  if (least.left() >= left) return;
  least.setLeft(left);
  area.setMinimumMargins(least);
  other.plot_->replot(QCustomPlot::rpQueuedReplot);
}

/// Places strips, bars and buttons around the present plot area.
void GraphWidget::placeZoomControls() {
  keepMargin();
  if (xBar_ == nullptr) return;
  const QRect area = plot_->axisRect()->rect().translated(plot_->pos());
  constexpr int bar = ZoomBarThickness;
  const int right = width() - bar;
  const int bottom = height() - bar;
  // The margin above and below an automatic view is not part of the view: the strip is as long as the view.
  const DataRange view = ViewRange(graph_, 'y');
  int top = area.top();
  int end = area.bottom() + 1;
  if (view.max > view.min) {
    top = std::max(top, plot_->y() + static_cast<int>(std::lround(plot_->yAxis->coordToPixel(view.max))));
    end = std::min(end, plot_->y() + static_cast<int>(std::lround(plot_->yAxis->coordToPixel(view.min))));
  }
  xStrip_->setGeometry(area.left(), area.bottom() + 1, area.width(), XStripThickness);
  yStrip_->setGeometry(area.left() - YStripThickness, top, YStripThickness, std::max(end - top, 1));
  xBar_->setGeometry(area.left() + bar, bottom, area.width() - 2 * bar, bar);
  yBar_->setGeometry(right, area.top() + bar, bar, area.height() - 2 * bar);
  const QPoint places[] = {{area.left(), bottom},
                           {area.right() + 1 - bar, bottom},
                           {right, area.top()},
                           {right, area.bottom() + 1 - bar},
                           {area.left() - 34, bottom + 2},
                           {area.left() - 18, bottom + 2},
                           {right, area.bottom() + 4},
                           {right, area.bottom() + 20}};
  for (std::size_t i = 0; i < buttons_.size(); ++i) buttons_[i]->move(places[i]);
}

// -- What mouse, keys and menu do --

void GraphWidget::showAll() {
  plot_->axisRect()->setMinimumMargins(LeastMargins);
  ZoomFullScale(graph_);
  refresh();
}

void GraphWidget::openMenu(const QPoint& globalPosition) {
  NewGraphMenu(*this)->popup(globalPosition);
}

void GraphWidget::zoomAt(const QPointF& pixel, double factor, bool x, bool y) {
  if (y) ZoomAbout(graph_, 'y', plot_->yAxis->pixelToCoord(pixel.y()), factor);
  if (x) ZoomAbout(graph_, 'x', plot_->xAxis->pixelToCoord(pixel.x()), factor);  // y may follow x
  refresh();
}

void GraphWidget::dragCursor(int cursor, const QPointF& pixel) {
  lastCursor_ = cursor;
  cursors_->drag(cursor, pixel, cursorsFollow_);
  tellDragged(cursor);
  showReadout();
  cursors_->layer()->replot();
}

/// Tells the owner of the graph where a cursor shows. During a run it may not use the trace.
void GraphWidget::tellDragged(int cursor) {
  if (graph_.cursorDragged == nullptr || Screen.busy > 0) return;
  graph_.cursorDragged(graph_, cursor, cursors_->shown()[Index(cursor) - 1].x);
}

void GraphWidget::placeCorner(bool opposite, const QPointF& pixel) {
  const QRect area = plot_->axisRect()->rect();
  const double x = std::clamp(pixel.x(), area.left() + 0.0, area.right() + 0.0);
  const double y = std::clamp(pixel.y(), area.top() + 0.0, area.bottom() + 0.0);
  MoveCursor(graph_, graph_.areaCursor + (opposite ? 1 : 0), plot_->xAxis->pixelToCoord(x),
             plot_->yAxis->pixelToCoord(y));
  refresh();
}

void GraphWidget::endAreaChoice() {
  if (Control* command = FindCommand(graph_.areaCommand)) Press(*command);
}

void GraphWidget::dropCursor() {
  cursors_->drop();  // during a run a cursor may not move, and shows at its old place again
  refresh();
}

void GraphWidget::bringCursors() {
  ZoomBringCursors(graph_);
  refresh();
}

template <typename Function>
auto GraphWidget::onPaper(Function&& function) {
  applyColours(true);
  cursors_->setVisible(false);
  picture_->sync();
  auto result = function();
  cursors_->setVisible(true);
  applyColours(false);
  refresh();
  return result;
}

void GraphWidget::copyPicture() {
  QGuiApplication::clipboard()->setImage(onPaper([this] { return GraphImage(*plot_); }));
}

void GraphWidget::copyData() {
  const auto text = GraphText(graph_, PictureRange(graph_, 'x'), '\t', MostCopiedRows);
  if (text)
    QGuiApplication::clipboard()->setText(QString::fromStdString(*text));
  else
    MessagePopup(NoticeTitle, TooManyRows);
}

void GraphWidget::saveAs(const QString& ending) {
  FileRequest request;
  request.title = "Export " + graph_.name;
  request.defaultName = graph_.name + ending.toStdString();
  request.filter = (QLatin1Char('*') + ending).toStdString();
  request.save = true;
  const auto chosen = FileSelectPopup(request);
  if (!chosen) return;
  QString path = QString::fromStdString(*chosen);
  if (!path.endsWith(ending, Qt::CaseInsensitive)) path += ending;
  const bool written = ending == QLatin1String(".csv")
                           ? WriteGraphFile(graph_, path.toStdString())
                           : onPaper([&] { return WriteGraphPicture(*plot_, path); });
  if (!written) FileErrorPopup(FileOpenFailed);
}

// -- Events --

void GraphWidget::keyPressEvent(QKeyEvent* event) {
  const bool control = event->modifiers().testFlag(Qt::ControlModifier);
  if (event->key() == Qt::Key_Home) {
    showAll();
  } else if (event->key() == Qt::Key_Escape && cursors_->dragging()) {
    cursors_->cancel();
    tellDragged(lastCursor_);
    refresh();
  } else if (control && event->key() >= Qt::Key_Left && event->key() <= Qt::Key_Down) {
    shiftCursor(event->key());
  } else if (!scrollKey(event->key()) && !zoomKey(event->key(), control)) {
    QWidget::keyPressEvent(event);
  }
}

bool GraphWidget::scrollKey(int key) {
  for (const KeyMove& move : KeyMoves) {
    if (move.key != key) continue;
    const char axis = move.x != 0.0 ? 'x' : 'y';
    ZoomPan(graph_, axis, PictureRange(graph_, axis), move.x + move.y);
    refresh();
    return true;
  }
  return false;
}

bool GraphWidget::zoomKey(int key, bool y) {
  const bool in = key == Qt::Key_Plus || key == Qt::Key_Equal;
  if (!in && key != Qt::Key_Minus) return false;
  zoomAt(plot_->axisRect()->rect().center(), in ? KeyZoom : 1.0 / KeyZoom, !y, y);
  return true;
}

/// Moves the cursor that was moved last, or else the first, by one pixel.
void GraphWidget::shiftCursor(int key) {
  for (const KeyMove& move : KeyMoves) {
    if (move.key != key) continue;
    const int count = static_cast<int>(graph_.cursors.size());
    for (int k = 1; k <= count && lastCursor_ == 0; ++k) {
      if (graph_.cursors[Index(k) - 1].enabled) lastCursor_ = k;
    }
    if (lastCursor_ == 0) return;
    const Cursor& cursor = graph_.cursors[Index(lastCursor_) - 1];
    const QPointF from(plot_->xAxis->coordToPixel(cursor.x), plot_->yAxis->coordToPixel(cursor.y));
    const QPointF step(move.x / KeyShare, -move.y / KeyShare);
    cursors_->drag(lastCursor_, from + step, cursorsFollow_ && move.x != 0.0);
    dropCursor();
    return;
  }
}

void GraphWidget::contextMenuEvent(QContextMenuEvent* event) {
  openMenu(event->globalPos());
}

void GraphWidget::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() != QEvent::PaletteChange && event->type() != QEvent::FontChange) return;
  applyColours(false);
  refresh();
}

void GraphWidget::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  placePlot();
}

void GraphWidget::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  refresh();
}

void GraphWidget::focusInEvent(QFocusEvent* event) {
  QWidget::focusInEvent(event);
  applyColours(false);
  refresh();
}

void GraphWidget::focusOutEvent(QFocusEvent* event) {
  QWidget::focusOutEvent(event);
  applyColours(false);
  refresh();
}

}  // namespace zelvane
