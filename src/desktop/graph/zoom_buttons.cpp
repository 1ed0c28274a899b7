#include "desktop/graph/zoom_buttons.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <array>
#include <cassert>
#include <string_view>

#include "screen/zoom_graph.h"

namespace zelvane {
namespace {

constexpr int FirstWaitMs = 500;
constexpr int LaterWaitMs = 100;

struct ButtonFace {
  std::string_view name;
  bool scrolls;
  int turn;  // degrees by which its picture is turned; 0 = points to the right
  const char* help;
};
constexpr std::array<ButtonFace, 8> Faces{{
    {"left", true, 180, "Scroll to the left"},
    {"right", true, 0, "Scroll to the right"},
    {"up", true, 270, "Scroll up"},
    {"down", true, 90, "Scroll down"},
    {"xexpand", false, 0, "Show half the span of the x axis"},
    {"xcontract", false, 0, "Show twice the span of the x axis"},
    {"yexpand", false, 90, "Show half the span of the y axis"},
    {"ycontract", false, 90, "Show twice the span of the y axis"},
}};

const ButtonFace& FaceOf(std::string_view name) {
  for (const ButtonFace& face : Faces) {
    if (face.name == name) return face;
  }
  assert(false);
  return Faces.front();
}

/// Draws an arrow head at (x, 0) that points to the right or, with a negative size, to the left.
void DrawHead(QPainter& painter, double x, double size) {
  QPainterPath head;
  head.moveTo(x + size, 0.0);
  head.lineTo(x, -3.5);
  head.lineTo(x, 3.5);
  head.closeSubpath();
  painter.drawPath(head);
}

}  // namespace

ZoomGraphButton::ZoomGraphButton(Graph& graph, std::string name, QWidget* parent)
    : QAbstractButton(parent), graph_(graph), name_(std::move(name)), help_(FaceOf(name_).help) {
  setObjectName(QString::fromStdString(name_));
  setToolTip(help_);
  setAccessibleName(help_);
  setFocusPolicy(Qt::NoFocus);  // the keys of the graph do the same
  setContextMenuPolicy(Qt::PreventContextMenu);
  resize(sizeHint());
  if (!FaceOf(name_).scrolls) {
    connect(this, &QAbstractButton::clicked, this, &ZoomGraphButton::act);
    return;
  }
  setAutoRepeat(true);
  setAutoRepeatDelay(FirstWaitMs);
  setAutoRepeatInterval(LaterWaitMs);
  connect(this, &QAbstractButton::pressed, this, &ZoomGraphButton::act);
}

QSize ZoomGraphButton::sizeHint() const {
  return FaceOf(name_).scrolls ? QSize(15, 15) : QSize(14, 12);
}

void ZoomGraphButton::act() {
  ZoomButton(graph_, name_);
  emit zoomed();
}

void ZoomGraphButton::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::RightButton) MessagePopup(HelpTitle, help_.toStdString());
  QAbstractButton::mousePressEvent(event);
}

void ZoomGraphButton::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  if (underMouse() || isDown()) {
    QColor tint = palette().color(QPalette::Highlight);
    tint.setAlpha(isDown() ? 110 : 50);
    painter.setPen(Qt::NoPen);
    painter.setBrush(tint);
    painter.drawRoundedRect(rect(), 3.0, 3.0);
  }
  const ButtonFace& face = FaceOf(name_);
  painter.translate(QRectF(rect()).center());
  painter.rotate(face.turn);
  painter.setPen(Qt::NoPen);
  painter.setBrush(palette().color(QPalette::WindowText));
  if (face.scrolls) {
    DrawHead(painter, -2.0, 5.0);
  } else if (name_.ends_with("expand")) {  // the trace is stretched: arrows apart
    DrawHead(painter, 1.5, 4.0);
    DrawHead(painter, -1.5, -4.0);
  } else {
    DrawHead(painter, 5.0, -4.0);
    DrawHead(painter, -5.0, 4.0);
  }
}

}  // namespace zelvane
