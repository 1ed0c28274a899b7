// The window at its least size: every page shows everything in every state, and no state makes the window
// larger.
#include <QAbstractButton>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QScrollArea>
#include <QSplitter>

#include "analysis/analysis_store.h"
#include "desktop/widgets/drawer_frame.h"
#include "desktop/window_fixture.h"
#include "platform/folders.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

constexpr QSize Least(800, 560);
const std::string Example = ZELVANE_DATA "/examples/fit/nmda_50uM";
constexpr char Recording[] = ZELVANE_TEST_DATA "/recordings/abf2/20101002.abf";  // three sweeps

/// Describes a widget: "QToolButton 10 of StateMonitored[10]: 20 x 20".
QString Described(const QWidget& widget) {
  const QString text = widget.property("text").toString();
  return QString("%1 %2 of %3: %4 x %5")
      .arg(widget.metaObject()->className(), text, widget.parentWidget()->objectName())
      .arg(widget.width())
      .arg(widget.height());
}

/// Returns whether the caption fits; a button may be smaller than its hint.
bool CaptionFits(const QWidget& widget) {
  const auto* button = qobject_cast<const QAbstractButton*>(&widget);
  return button == nullptr || widget.objectName() == "SettingsEdge" ||
         button->fontMetrics().horizontalAdvance(button->text()) + 2 <= button->width();
}

/// Returns whether a widget is inside all its parents. Inside a scroll area only its width must fit.
bool LiesInside(const QWidget& widget) {
  for (const QWidget* up = widget.parentWidget(); up != nullptr; up = up->parentWidget()) {
    const QRect place(widget.mapTo(up, QPoint(0, 0)), widget.size());
    const bool scrolls = qobject_cast<const QScrollArea*>(up->parentWidget()) != nullptr;
    if (place.left() < 0 || place.right() >= up->width()) return false;
    if (scrolls) return true;
    if (place.top() < 0 || place.bottom() >= up->height()) return false;
    if (up->isWindow()) break;
  }
  return true;
}

/// Returns the visible widgets of a page that have less room than they need.
QStringList CutWidgets(const QWidget& page) {
  QStringList cut;
  for (const QWidget* widget : page.findChildren<QWidget*>()) {
    const auto* label = qobject_cast<const QLabel*>(widget);
    bool counts = label != nullptr && !label->text().isEmpty() && !label->wordWrap();
    for (const char* kind : {"QAbstractButton", "QComboBox", "QLineEdit", "zelvane::GraphWidget"})
      counts = counts || widget->inherits(kind);
    if (!counts || !widget->isVisible() || widget->parentWidget()->inherits("QAbstractItemView")) continue;
    const QSize least = widget->minimumSizeHint().boundedTo(widget->maximumSize());
    if (widget->width() < least.width() || widget->height() < least.height() || !CaptionFits(*widget) ||
        !LiesInside(*widget)) {
      cut << Described(*widget);
    }
  }
  return cut;
}

class LeastSizeTest : public WindowTest {
 protected:
  LeastSizeTest() { resize(Least); }

  void resize(const QSize& size) {
    window->resize(size);
    Settle();
  }

  /// Checks with the settings folded away and with the settings over the page.
  void expectAllShows(const char* state) {
    SCOPED_TRACE(state);
    for (const bool settingsOpen : {false, true}) {
      SCOPED_TRACE(settingsOpen ? "settings open" : "settings folded");
      window->page()->openSettings(settingsOpen);
      Settle();
      EXPECT_EQ(window->size(), Least);
      const QSize needed = window->minimumSizeHint();
      EXPECT_LE(needed.width(), Least.width());
      EXPECT_LE(needed.height(), Least.height());
      const QStringList cut = CutWidgets(*window->page());
      EXPECT_TRUE(cut.isEmpty()) << cut.join('\n').toStdString();
    }
    window->page()->openSettings(false);
  }
};

TEST_F(LeastSizeTest, EveryPageShowsAllItHasInEveryState) {
  for (const Theme theme : {Theme::Light, Theme::Dark}) {
    ApplyTheme(theme);
    clickTool("Model");
    clickTool("Grid");
    clickTool("Run");
    expectAllShows("grid");
    clickTool("Table");
    expectAllShows("table");
    drop(Recording);
    ASSERT_GT(Trace.EpisodeCount, 1);
    expectAllShows("table with a recording of episodes");
    clickTool("Grid");
    expectAllShows("grid with a recording of episodes");
    clickTool("Analysis");
    expectAllShows("analysis");
    Press(ControlNamed("AutoAnalyzeButton"));
    Settle();
    Analysis.FittedMode = 2;  // as after an exponential fit
    window->refresh({});
    expectAllShows("analysis with results");
    clickTool("Averages");
    Press(ControlNamed("AverageAll"));
    expectAllShows("averages");
    clickTool("Dose");
    expectAllShows("dose-response");
    clickTool("Series R");
    expectAllShows("series resistance");
    clickTool("Stimulus");
    for (const char* mode : {"MANUAL", "EXPONENTIAL", "USER", "AUTOMATIC"}) {
      clickWord("StimMode", mode);
      expectAllShows(mode);
    }
    clickTool("Fit");
    expectAllShows("fit without waveforms");
    AddFilesToFit(std::vector{Example + ".abf", Example + ".stm"});
    answers = {false, true};
    Press(ControlNamed("FitOneStep"));
    expectAllShows("fit after one step");
  }
  ApplyTheme(Theme::Light);
}

TEST_F(LeastSizeTest, SettingsAreADrawerInANarrowWindowAndAColumnInAWideOne) {
  auto* edge = window->page()->findChild<QAbstractButton*>("SettingsEdge");
  auto* graph = window->page()->findChild<GraphWidget*>();
  const int wide = graph->width();
  EXPECT_FALSE(window->page()->settingsOpen());
  click(edge);
  type("NumPoints", "3000");
  EXPECT_EQ(ControlNumber("NumPoints"), 3000.0);
  EXPECT_EQ(graph->width(), wide) << "the drawer lies over the page";
  key(Qt::Key_Escape);
  EXPECT_FALSE(window->page()->settingsOpen());
  resize({DrawerFrame::DrawerBelow, 700});
  EXPECT_TRUE(window->page()->settingsOpen());
  EXPECT_TRUE(widget("NumPoints")->isVisible());
  const int beside = graph->width();
  key(Qt::Key_F9);
  EXPECT_FALSE(window->page()->settingsOpen());
  EXPECT_GT(graph->width(), beside + 200) << "the graph has the room";
}

TEST_F(LeastSizeTest, FoldsAndSizesAreRemembered) {
  const auto fold = [this](const char* title) {
    for (auto* button : window->page()->findChildren<FoldButton*>()) {
      if (button->text() == title) return button;
    }
    return static_cast<FoldButton*>(nullptr);
  };
  reopen(settings);
  const int height = graph()->height();
  click(fold("Channels"));
  EXPECT_FALSE(window->page()->findChild<ControlWidget*>("NumChannels")->isVisible());
  for (auto* handle : window->page()->findChildren<QSplitterHandle*>()) {
    if (!handle->isVisible() || handle->orientation() == Qt::Horizontal) continue;
    Drag(handle, handle->rect().center(), handle->rect().center() - QPoint(0, 40));
  }
  const int dragged = graph()->height();
  EXPECT_GT(dragged, height + 20);
  reopen(settings);
  EXPECT_FALSE(window->page()->findChild<ControlWidget*>("NumChannels")->isVisible());
  EXPECT_TRUE(window->page()->findChild<ControlWidget*>("NumPoints")->isVisible());
  EXPECT_NEAR(graph()->height(), dragged, 2);
  click(fold("Channels"));
  EXPECT_TRUE(window->page()->findChild<ControlWidget*>("NumChannels")->isVisible());
}

TEST_F(LeastSizeTest, BrokenSettingsChangeNothing) {
  reopen(settings);
  const QRect graphBefore = graph()->geometry();
  const std::string text =
      "[window]\ngeometry=1\ntheme=purple\n[page]\nMainPanel\\columnShows=maybe\nMainPanel\\columnWidth=-3\n"
      "MainPanel\\folded=@Variant(, Channel\nMainPanel\\part1Open=7\nMainPanel\\parts=900, many\n[\xff\x01";
  qputenv("XDG_CONFIG_HOME", folder.Path().string().c_str());
  const QString file = QDir(QString::fromStdString(UserConfigFolder())).filePath("desktop.ini");
  QDir().mkpath(QFileInfo(file).path());
  WriteWholeFile(file.toStdString(), text);
  {
    Settings broken(true);
    ASSERT_EQ(broken.value("window/theme").toString(), "purple") << "the file is read";
    reopen(broken);
    EXPECT_EQ(graph()->geometry(), graphBefore);
    EXPECT_TRUE(widget("NumChannels")->isVisible());
    window.reset();
  }
  qunsetenv("XDG_CONFIG_HOME");
}

}  // namespace
}  // namespace zelvane
