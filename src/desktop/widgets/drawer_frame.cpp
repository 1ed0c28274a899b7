#include "desktop/widgets/drawer_frame.h"

#include <QAbstractButton>
#include <QKeyEvent>
#include <QPainter>
#include <QSplitter>
#include <algorithm>

#include "desktop/widgets/remembered_splitter.h"
#include "desktop/widgets/style_property.h"
#include "desktop/window/settings.h"
#include "screen/screen.h"

namespace zelvane {

/// A strip along the right edge of a page: a click opens or folds the column.
class EdgeButton : public QAbstractButton {
 public:
  static constexpr int Width = 22;  // pixels

  explicit EdgeButton(QWidget* parent) : QAbstractButton(parent) {
    setObjectName("SettingsEdge");
    setText("Settings");
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
  }

  QSize sizeHint() const override { return {Width, fontMetrics().horizontalAdvance(text()) + 3 * Width}; }

  void setOpen(bool open) {
    open_ = open;
    setToolTip(open ? "Fold the settings away (F9)" : "Open the settings (F9)");
    setAccessibleName(toolTip());
    update();
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (underMouse()) painter.fillRect(rect(), palette().color(QPalette::AlternateBase));
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawLine(QPointF(0.5, 0.0), QPointF(0.5, height()));
    const QColor ink =
        palette().color(hasFocus() || underMouse() ? QPalette::Highlight : QPalette::WindowText);
    painter.setPen(QPen(ink, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    constexpr double tip = 4.0;
    const QPointF top(width() / 2.0, Width);
    const double side = open_ ? -tip / 2.0 : tip / 2.0;
    painter.drawPolyline(
        QPolygonF{top + QPointF(side, -tip), top + QPointF(-side, 0.0), top + QPointF(side, tip)});
    painter.setPen(ink);
    painter.translate(width(), 2.0 * Width);
    painter.rotate(90.0);
    painter.drawText(QRectF(0.0, 0.0, height() - 2.0 * Width, width()), Qt::AlignLeft | Qt::AlignVCenter,
                     text());
  }

 private:
  bool open_ = false;
};

DrawerFrame::DrawerFrame(QWidget* main, QWidget* column, Settings& settings, const QString& key,
                         QWidget* parent)
    : QWidget(parent),
      settings_(settings),
      key_(key),
      splitter_(new QSplitter(Qt::Horizontal, this)),
      main_(main),
      column_(column),
      edge_(new EdgeButton(this)),
      columnShows_(settings.flag(key + "/columnShows", true)) {
  splitter_->setChildrenCollapsible(false);
  splitter_->addWidget(main);
  splitter_->addWidget(column);
  splitter_->setStretchFactor(0, 1);
  splitter_->setStretchFactor(1, 0);
  column->setVisible(columnShows_);
  column->setAttribute(Qt::WA_StyledBackground);
  connect(splitter_, &QSplitter::splitterMoved, this,
          [this] { settings_.setSizes(key_ + "/columnWidth", {column_->width()}); });
  connect(edge_, &QAbstractButton::clicked, this, [this] { setOpen(!isOpen()); });
}

bool DrawerFrame::isOpen() const {
  return isDrawer_ ? drawerOpen_ : columnShows_;
}

void DrawerFrame::setOpen(bool open) {
  if (isDrawer_) {
    drawerOpen_ = open;
  } else {
    columnShows_ = open;
    settings_.setValue(key_ + "/columnShows", open);
  }
  arrange();
  updateGeometry();
}

/// Returns the width that the user has set, or else the width that the column prefers.
int DrawerFrame::columnWidth() const {
  const QList<int> kept = settings_.sizes(key_ + "/columnWidth", 1);
  const int wanted = kept.isEmpty() ? column_->sizeHint().width() : kept.front();
  return std::max(wanted, column_->minimumSizeHint().width());
}

void DrawerFrame::changeSides(bool drawer) {
  isDrawer_ = drawer;
  drawerOpen_ = false;
  if (drawer) {
    column_->setParent(this);
    column_->raise();
  } else {
    splitter_->addWidget(column_);
    splitter_->setStretchFactor(1, 0);
  }
  SetStyleProperty(column_, "role", drawer ? "drawer" : "");
}

void DrawerFrame::arrange() {
  const bool drawer = window()->width() < DrawerBelow;
  if (drawer != isDrawer_) changeSides(drawer);
  const int room = std::max(0, width() - EdgeButton::Width);
  const int wanted = std::min(columnWidth(), room);
  splitter_->setGeometry(0, 0, room, height());
  edge_->setGeometry(room, 0, EdgeButton::Width, height());
  edge_->setOpen(isOpen());
  column_->setVisible(isOpen());
  if (drawer)
    column_->setGeometry(room - wanted, 0, wanted, height());
  else
    splitter_->setSizes({room - wanted, wanted});
}

QSize DrawerFrame::sizeHint() const {
  return splitter_->sizeHint() + QSize(EdgeButton::Width, 0);
}

/// Returns the larger of both least sizes: in a narrow window the column lies over the main part.
QSize DrawerFrame::minimumSizeHint() const {
  return main_->minimumSizeHint().expandedTo(column_->minimumSizeHint()) + QSize(EdgeButton::Width, 0);
}

bool DrawerFrame::event(QEvent* event) {
  if (event->type() == QEvent::LayoutRequest) {
    updateGeometry();
    arrange();
  }
  return QWidget::event(event);
}

void DrawerFrame::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape && isDrawer_ && drawerOpen_ && Screen.busy == 0)
    setOpen(false);
  else
    QWidget::keyPressEvent(event);
}

void DrawerFrame::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  arrange();
}

}  // namespace zelvane
