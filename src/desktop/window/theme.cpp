#include "desktop/window/theme.h"

#include <QApplication>
#include <QEvent>
#include <QPainter>
#include <QProxyStyle>
#include <QStyleOption>
#include <QSvgRenderer>
#include <array>
#include <utility>

namespace zelvane {
namespace {

struct Colours {
  QColor window, base, alternate, text, muted, button, border, accent, refused, good, note;
};

const Colours& LightColours() {
  static const Colours colours{0xf4f5f7, 0xffffff, 0xf0f2f5, 0x1d2127, 0x8a919c, 0xffffff,
                               0xc9ced6, 0x2563a8, 0xc0392b, 0x1e7d3c, 0x96620a};
  return colours;
}

const Colours& DarkColours() {
  static const Colours colours{0x23262b, 0x1a1d21, 0x2a2e34, 0xe3e6ea, 0x7d8590, 0x30353c,
                               0x454c56, 0x5b9bd8, 0xe5746a, 0x6cc38a, 0xe3b24c};
  return colours;
}

/// White ground for printers.
const Colours& PaperInks() {
  static const Colours colours = [] {
    Colours inks = LightColours();
    inks.window = inks.base = inks.alternate = inks.button = QColor(Qt::white);
    return inks;
  }();
  return colours;
}

bool& PaperIsActive() {
  static bool paper = false;
  return paper;
}

bool& DarkIsActive() {
  static bool dark = false;
  return dark;
}

bool IsDarkGround(const QPalette& palette) {
  return palette.color(QPalette::Window).lightness() < 128;
}

const Colours& ActiveColours() {
  if (PaperIsActive()) return PaperInks();
  return DarkIsActive() ? DarkColours() : LightColours();
}

/// Draws check boxes with equally strong lines on light and dark ground.
class CalmStyle : public QProxyStyle {
 public:
  CalmStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override {
    if (element != PE_IndicatorCheckBox) {
      QProxyStyle::drawPrimitive(element, option, painter, widget);
      return;
    }
    const bool on = option->state.testFlag(State_On);
    const bool enabled = option->state.testFlag(State_Enabled);
    const QColor edge =
        option->state.testFlag(State_HasFocus) ? ActiveColours().accent : ActiveColours().muted;
    const QRectF box = QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(on && enabled ? ActiveColours().accent : enabled ? edge : ActiveColours().border);
    painter->setBrush(!on ? ActiveColours().base : enabled ? ActiveColours().accent : ActiveColours().border);
    painter->drawRoundedRect(box, 3, 3);
    if (on) {
      painter->setPen(
          QPen(ActiveColours().base, box.width() / 7, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
      const auto at = [&](double x, double y) {
        return QPointF(box.left() + x * box.width(), box.top() + y * box.height());
      };
      painter->drawPolyline(QPolygonF{at(0.24, 0.52), at(0.43, 0.71), at(0.77, 0.3)});
    }
    painter->restore();
  }
};

QPalette PaletteOf(const Colours& c) {
  QPalette palette(c.text, c.button, c.base.lighter(110), c.border.darker(120), c.border, c.text,
                   c.base.lighter(150), c.base, c.window);
  palette.setColor(QPalette::AlternateBase, c.alternate);
  palette.setColor(QPalette::ToolTipBase, c.base);
  palette.setColor(QPalette::ToolTipText, c.text);
  palette.setColor(QPalette::PlaceholderText, c.muted);
  palette.setColor(QPalette::Highlight, c.accent);
  palette.setColor(QPalette::HighlightedText, Qt::white);
  palette.setColor(QPalette::Link, c.accent);
  palette.setColor(QPalette::LinkVisited, c.accent);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    palette.setColor(QPalette::Disabled, role, c.muted);
  }
  palette.setColor(QPalette::Disabled, QPalette::Base, c.window);
  return palette;
}

// %1 text, %2 muted, %3 base, %4 border, %5 accent, %6 refused, %7 alternate, %8 button, %9 window, %10 good, %11 note
constexpr char StyleSheet[] = R"(
QToolTip { color: %1; background: %3; border: 1px solid %4; padding: 4px; }
QLabel[role="section"] { color: %5; font-weight: 600; padding-top: 2px; }
QLabel[role="unit"] { color: %2; }
QLabel[role="muted"] { color: %2; }
QLabel[tone="green"] { color: %10; }
QLabel[tone="red"] { color: %6; }
QLabel[tone="amber"] { color: %11; font-weight: 600; }
QLabel[tone="mark"], QLabel[tone="blue"] { color: %5; }
QLabel[role="value"] { font-weight: 600; }
QLabel[role="value"]:disabled { color: %2; font-weight: 400; }
QToolButton[role="fold"] { border: none; color: %5; font-weight: 600; padding: 4px 0; text-align: left; }
QToolButton[role="fold"]:hover, QToolButton[role="fold"]:focus { background: %7; }
QWidget[role="drawer"] { background: %9; border-left: 1px solid %4; }
QLabel[role="figure"] { font-size: 14pt; font-weight: 600; }
QLabel[role="figure"]:disabled { color: %2; font-weight: 400; }
QWidget[role="readout"] { background: %3; border: 1px solid %4; border-radius: 4px; }
QWidget[role="readout"] QLabel { border: none; background: transparent; }
QLabel[role="title"] { font-size: 18pt; font-weight: 600; }
QFrame[role="line"] { background: %4; border: none; max-height: 1px; min-height: 1px; }
QLineEdit { background: %3; border: 1px solid %4; border-radius: 4px; padding: 2px 6px; min-height: 18px; }
QLineEdit:focus { border: 1px solid %5; }
QLineEdit:disabled { color: %2; background: transparent; }
QLineEdit[refused="true"] { border: 1px solid %6; color: %6; }
QPushButton { background: %8; border: 1px solid %4; border-radius: 4px; padding: 3px 10px; min-height: 18px; }
QPushButton:hover { border-color: %5; }
QPushButton:focus { border-color: %5; }
QPushButton:pressed { background: %7; }
QPushButton:disabled { color: %2; }
QPushButton:default { border-color: %5; }
QPushButton:checked:enabled { background: %5; color: %3; border-color: %5; }
QFrame[role="pair"] { background: transparent; border: 1px solid transparent; border-radius: 4px; }
QFrame[role="pair"]:hover { background: %7; }
QFrame[role="pair"][chosen="true"] { background: %3; border: 1px solid %4; }
QToolButton[role="segment"] { background: %8; border: 1px solid %4; padding: 3px 8px; min-height: 18px; max-height: 18px; margin: 0; }
QToolButton[role="segment"]:checked { background: %5; color: %3; border-color: %5; }
QToolButton[role="segment"]:disabled { color: %2; }
QToolButton[role="segment"]:focus { border-color: %5; }
QToolButton[role="chip"] { background: transparent; border: 1px solid %4; border-radius: 9px; padding: 0; }
QToolButton[role="chip"]:hover, QToolButton[role="chip"]:focus { border-color: %5; }
QToolButton[role="chip"]:checked { background: %5; color: %3; border-color: %5; }
QToolButton[role="task"] { border: none; border-radius: 6px; padding: 8px 4px; }
QToolButton[role="task"]:hover { background: %7; }
QToolButton[role="task"]:checked { background: %7; color: %5; font-weight: 600; }
QToolButton[role="more"] { background: %9; border: none; border-top: 1px solid %4; padding: 4px; color: %5; }
QToolButton[role="more"]:hover { background: %7; }
QWidget#TaskBar { background: %3; border-right: 1px solid %4; }
QToolBar { border: none; border-bottom: 1px solid %4; spacing: 2px; padding: 3px 6px; }
QToolBar QToolButton { border: 1px solid transparent; border-radius: 4px; padding: 3px 8px; }
QToolBar QToolButton:hover { background: %7; border-color: %4; }
QStatusBar { border-top: 1px solid %4; }
QStatusBar::item { border: none; }
QTabWidget::pane { border: 1px solid %4; border-radius: 4px; }
QScrollArea { border: none; background: transparent; }
QSplitter::handle { background: transparent; }
QSplitter::handle:hover { background: %4; }
QListWidget { background: %3; border: 1px solid %4; border-radius: 4px; }
QListWidget::item:hover { background: %7; color: %1; }
QTableView { background: %3; alternate-background-color: %7; gridline-color: %4; border: 1px solid %4; }
QHeaderView::section { background: %7; border: none; border-right: 1px solid %4; border-bottom: 1px solid %4;
                       padding: 3px 6px; }
QProgressBar { border: 1px solid %4; border-radius: 4px; background: %3; text-align: center; max-height: 16px; }
QProgressBar::chunk { background: %5; border-radius: 3px; }
)";

void ApplySheet(const Colours& c) {
  QString sheet = StyleSheet;
  for (const QColor& colour : {c.text, c.muted, c.base, c.border, c.accent, c.refused, c.alternate, c.button,
                               c.window, c.good, c.note}) {
    sheet = sheet.arg(colour.name());
  }
  qApp->setStyleSheet(sheet);
}

// -- Drawings: 24 by 24, strokes in the text colour ("currentColor"), one accent ("accent") --

struct Drawing {
  const char* name;
  const char* svg;
};
constexpr std::array Drawings = {
    Drawing{
        "model",
        R"(<rect x="2.5" y="3" width="7" height="6" rx="1.5"/><rect x="14.5" y="3" width="7" height="6" rx="1.5"/>
<rect x="14.5" y="15" width="7" height="6" rx="1.5" fill="accent" stroke="accent"/>
<path d="M10 5h4M14 7h-4M17 9.5v5M19 14.5v-5"/>)"},
    Drawing{"stimulus", R"(<path d="M2 18h5V7h8v11h7"/><path d="M2 21.5h20" stroke="accent"/>)"},
    Drawing{
        "analysis",
        R"(<path d="M2 7h5l2 12c1.5-9 4-12 13-12"/><path d="M9 3v2M9 21.5v-2M17 3v18.5" stroke="accent"/>)"},
    Drawing{
        "rscm",
        R"(<path d="M2 8h3l1.5-3 3 6 3-6 1.5 3h8"/><path d="M17 8v5M13 13h8M13 16.5h8M17 16.5v5" stroke="accent"/>)"},
    Drawing{
        "fit",
        R"(<path d="M2 5h3M7 17h.01M9 18.5h.01M10.5 14h.01M13 12h.01M15.5 8.5h.01M18.5 8h.01M21.5 6.5h.01" stroke-width="2.6"/>
<path d="M2 5h3.5l2.5 13c1.5-7 4.5-11 14-11.5" stroke="accent"/>)"},
    Drawing{"dose", R"(<path d="M3 3v18h18.5"/><path d="M5 18c8 0 5-12 15.5-12" stroke="accent"/>)"},
    Drawing{
        "averages",
        R"(<path d="M2 5h4l2.5 11c1.5-7 5-8.5 13.5-9M2 8h4l2.5 12c1.5-8 5-9 13.5-9"/><path d="M2 6.5h4l2.5 11.5c1.5-7.5 5-8.7 13.5-9" stroke="accent"/>)"},
    Drawing{"run", R"(<path d="M7 4.5v15l12-7.5z" fill="accent" stroke="accent"/>)"},
    Drawing{"stop", R"(<rect x="6" y="6" width="12" height="12" rx="1.5" fill="currentColor"/>)"},
    Drawing{"open",
            R"(<path d="M3 18.5V5.5h6l2 2.5h8v3"/><path d="M3 18.5l3-7.5h15.5l-3 7.5z" stroke="accent"/>)"},
    Drawing{
        "save",
        R"(<path d="M4 4h13l3 3v13H4z"/><path d="M8 4v5h7V4"/><path d="M7.5 20v-6.5h9V20" stroke="accent"/>)"},
    Drawing{"undo", R"(<path d="M8 4L4 8l4 4"/><path d="M4 8h9a6 6 0 0 1 0 12H8"/>)"},
    Drawing{"redo", R"(<path d="M16 4l4 4-4 4"/><path d="M20 8h-9a6 6 0 0 0 0 12h5"/>)"},
    Drawing{"", R"(<circle cx="12" cy="12" r="7"/>)"},
};

void ApplyColours(bool dark) {
  DarkIsActive() = dark;
  QApplication::setPalette(PaletteOf(ActiveColours()));
  ApplySheet(ActiveColours());
}

/// Returns whether the program changes the palette itself at this moment.
bool& Dressing() {
  static bool dressing = false;
  return dressing;
}

/// Keeps the chosen colours. With the choice System follows the desktop, whose palette may change between
/// light and dark while the program runs.
class ThemeWatch : public QObject {
 public:
  ThemeWatch() : QObject(qApp) { qApp->installEventFilter(this); }

  void choose(Theme theme) {
    theme_ = theme;
    Dressing() = true;
    ApplyColours(theme == Theme::Dark || (theme == Theme::System && systemIsDark()));
    Dressing() = false;
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    const bool newPalette = event->type() == QEvent::ApplicationPaletteChange && watched == qApp;
    // Our own palette hides the system's, so only its change of theme is noticed.
    if (theme_ == Theme::System && !Dressing() && (newPalette || event->type() == QEvent::ThemeChange))
      follow(newPalette);
    return false;
  }

 private:
  void follow(bool newPalette) {
    Dressing() = true;
    const bool dark = newPalette ? IsDarkGround(QApplication::palette()) : systemIsDark();
    ApplyColours(dark);
    Dressing() = false;
  }

  /// Returns whether the system's palette is dark. Removes our own palette.
  static bool systemIsDark() {
    QApplication::setPalette(QPalette());
    return IsDarkGround(QApplication::palette());
  }

  Theme theme_ = Theme::System;
};

QPixmap RenderedDrawing(const QString& name, const QColor& stroke, const QColor& accent) {
  const auto drawing = std::find_if(Drawings.begin(), Drawings.end() - 1,
                                    [&](const Drawing& d) { return name == QLatin1String(d.name); });
  QString svg =
      QStringLiteral(
          R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 24 24" fill="none" stroke="currentColor" stroke-width="1.7" stroke-linecap="round" stroke-linejoin="round">%1</svg>)")
          .arg(QLatin1String(drawing->svg));
  svg.replace("currentColor", stroke.name()).replace("\"accent\"", '"' + accent.name() + '"');
  QPixmap pixmap(96, 96);  // enough for 24 pixels at four times the density
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  QSvgRenderer(svg.toUtf8()).render(&painter);
  return pixmap;
}

}  // namespace

std::optional<Theme> ThemeNamed(const QString& word) {
  if (word == "light") return Theme::Light;
  if (word == "dark") return Theme::Dark;
  if (word == "system") return Theme::System;
  return std::nullopt;
}

QString ThemeWord(Theme theme) {
  return theme == Theme::Light ? "light" : theme == Theme::Dark ? "dark" : "system";
}

void ApplyTheme(Theme theme) {
  static ThemeWatch* watch = nullptr;
  if (watch == nullptr) {
    QApplication::setStyle(new CalmStyle);  // the application owns it
    watch = new ThemeWatch;
  }
  watch->choose(theme);
}

OnPaper::OnPaper() {
  PaperIsActive() = true;
  dress();
}

OnPaper::~OnPaper() {
  PaperIsActive() = false;
  dress();
}

void OnPaper::dress() {
  const bool former = std::exchange(Dressing(), true);
  ApplyColours(DarkIsActive());
  Dressing() = former;
}

bool IsDark() {
  return DarkIsActive();
}

QColor AccentColour() {
  return ActiveColours().accent;
}

QColor RefusedColour() {
  return ActiveColours().refused;
}

QIcon ThemedIcon(const QString& name) {
  QIcon icon(RenderedDrawing(name, ActiveColours().text, ActiveColours().accent));
  icon.addPixmap(RenderedDrawing(name, ActiveColours().muted, ActiveColours().muted), QIcon::Disabled);
  return icon;
}

}  // namespace zelvane
