// The whole window, pressed as a user presses it.
#include <qcustomplot.h>

#include <QAction>
#include <QCheckBox>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStatusBar>
#include <QTabWidget>
#include <QTextBrowser>
#include <QTimer>
#include <QToolButton>
#include <fstream>
#include <sstream>

#include "app/application.h"
#include "app/recorder.h"
#include "desktop/graph/graph_widget.h"
#include "desktop/pages/task_page.h"
#include "desktop/scheme/scheme_view.h"
#include "desktop/widgets/control_widget.h"
#include "desktop/widgets/panel_layout.h"
#include "desktop/window/grabs.h"
#include "desktop/window/main_window.h"
#include "desktop/window/panel_dialog.h"
#include "desktop/window/theme.h"
#include "desktop/window_fixture.h"
#include "headless/drive/drive.h"
#include "model/model_store.h"
#include "stimulus/stimulus_store.h"
#include "support/store_digest.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

/// What the window looks like.
QImage Look(QWidget& widget) {
  Settle();
  return widget.grab().toImage();
}

TEST_F(WindowTest, ThePressOfRunShowsTheResponse) {
  EXPECT_TRUE(GraphNamed("MainPanel").plots.empty());
  clickTool("Run");
  ASSERT_EQ(GraphNamed("MainPanel").plots.size(), 1U);
  EXPECT_EQ(GraphNamed("MainPanel").plots[0].y.size(), static_cast<std::size_t>(Model.NumPoints));
  EXPECT_EQ(Trace.TraceValid, 1);
  SetAxisRange(GraphNamed("MainPanel"), 'x', 10.0, 20.0);
  window->findChild<QAction*>("FxnScaleAxes")->trigger();
  EXPECT_TRUE(GraphNamed("MainPanel").x.automatic);
}

TEST_F(WindowTest, StopEndsALongRunWithinATenthOfASecond) {
  type("NumPoints", "5000000");
  type("MaxStepSize", "1e-5");
  QElapsedTimer sinceStop;
  bool refusedMeanwhile = false;
  QTimer::singleShot(150, [&] {
    refusedMeanwhile = !Press(ControlNamed("EraseStim")).empty();
    sinceStop.start();
    clickTool("Stop");
  });
  clickTool("Run");
  ASSERT_TRUE(sinceStop.isValid()) << "the run has ended before the stop";
#ifndef ZELVANE_SANITIZED
  EXPECT_LT(sinceStop.elapsed(), 300) << "0.1 s, and room for a machine that others use";
#endif
  EXPECT_TRUE(refusedMeanwhile);
  EXPECT_EQ(Screen.busy, 0);
}

TEST_F(WindowTest, ANumberIsEnteredByEnterAndTakenBackByUndo) {
  type("NumChannels", "250");
  EXPECT_EQ(Model.NumChannels, 250);
  key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Model.NumChannels, 100);
  EXPECT_EQ(field("NumChannels")->text(), "100");
  key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(Model.NumChannels, 250);
}

TEST_F(WindowTest, ATextThatIsNoNumberIsMarkedAndTheValueStays) {
  type("NumChannels", "many");
  EXPECT_EQ(Model.NumChannels, 100);
  EXPECT_TRUE(field("NumChannels")->property("refused").toBool());
  EXPECT_EQ(field("NumChannels")->toolTip(), "not a number");
  key(Qt::Key_Escape);
  EXPECT_EQ(field("NumChannels")->text(), "100");
  EXPECT_FALSE(field("NumChannels")->property("refused").toBool());
  type("VHold", "-60,5");
  EXPECT_EQ(Model.VHold, -60.5F);
}

TEST_F(WindowTest, ARunTakesWhatIsBeingTyped) {
  type("NumChannels", "7", false);
  key(Qt::Key_F5);
  EXPECT_EQ(Model.NumChannels, 7);
  EXPECT_EQ(Trace.TraceValid, 1);
}

TEST_F(WindowTest, TheDependencePanelOpensAsADialogAndKeepsWhatIsSwitched) {
  Press(*FindCommand("FxnDepend1Off"));
  Settle();
  ASSERT_EQ(window->openDialogs().size(), 1U);
  ASSERT_EQ(Model.Depend.Drug[2][2][1], 0);
  auto* check = widget("DependDrug[2]")->findChild<QCheckBox*>();
  QTest::mouseClick(check, Qt::LeftButton, {}, {8, check->height() / 2});
  clickControl("CloseDependence");
  EXPECT_TRUE(window->openDialogs().empty());
  EXPECT_EQ(Model.Depend.Drug[2][2][1], 1);
}

TEST_F(WindowTest, TheQMatrixAndItsResultsStandSideBySide) {
  window->findChild<QAction*>("FxnQMatrix")->trigger();
  Settle();
  ASSERT_EQ(window->openDialogs().size(), 1U);
  const auto* matrix = window->findChild<QPlainTextEdit*>("QMatrixText");
  const auto* results = window->findChild<QPlainTextEdit*>("QResultsText");
  EXPECT_TRUE(matrix->toPlainText().startsWith("Q="));
  EXPECT_TRUE(results->toPlainText().contains("Tau("));
  EXPECT_EQ(matrix->lineWrapMode(), QPlainTextEdit::NoWrap);
  EXPECT_EQ(matrix->geometry().top(), results->geometry().top());
  EXPECT_LT(matrix->geometry().right(), results->geometry().left());
}

TEST_F(WindowTest, ClosingADialogIsItsPanelsOwnClose) {
  Press(*FindCommand("FxnConductance"));
  Settle();
  ASSERT_EQ(window->openDialogs().size(), 1U);
  type("StateConductance[4]", "33");
  window->openDialogs().front()->close();
  Settle();
  EXPECT_FALSE(PanelVisible("ConductancePanel"));
  EXPECT_EQ(Model.StateConductance[4], 33.0F);
}

TEST_F(WindowTest, TheTableFormComesInPlaceOfTheGridAndGoes) {
  clickTool("Table");
  EXPECT_EQ(Model.ModelIs2D, 0);
  EXPECT_TRUE(PanelVisible("TableModelPanel"));
  EXPECT_TRUE(window->openDialogs().empty()) << "the table is part of the page";
  widget("GetGraphModel");
  clickTool("Grid");
  EXPECT_EQ(Model.ModelIs2D, 1);
  EXPECT_FALSE(PanelVisible("TableModelPanel"));
}

TEST_F(WindowTest, AStepIsBuiltOnTheStimulusPage) {
  clickTool("Stimulus");
  EXPECT_EQ(Screen.PanelTag, "ST");
  EXPECT_EQ(window->page()->panel().name, "StimulusPanel");
  EXPECT_TRUE(widget("AutoValue")->isVisible());
  clickWord("StimMode", "MANUAL");
  EXPECT_EQ(Stimulus.StimMode, StimManual);
  clickControl("EraseStim");
  type("StepAmp", "2m");
  type("StepStart", "1");
  type("StepStop", "3");
  clickControl("CreateStim");
  const auto at = [](double ms) {
    return Stimulus.Profile[static_cast<std::size_t>(Stimulus.StimTarget)]
                           [static_cast<std::size_t>(ms / static_cast<double>(Model.ADInterval))];
  };
  EXPECT_EQ(at(0.5), 0.0F);
  EXPECT_EQ(at(2.0), 0.002F);
  EXPECT_EQ(at(4.0), 0.0F);
  clickTool("Model");
  EXPECT_EQ(Screen.PanelTag, "MN");
  EXPECT_EQ(window->page()->panel().name, "MainPanel");
}

TEST_F(WindowTest, ARightClickTellsTheHelpAndChangesNothing) {
  const std::string before = StoreDigest();
  ControlWidget* run = widget("NumPoints");
  QContextMenuEvent event(QContextMenuEvent::Mouse, {5, 5}, run->mapToGlobal(QPoint(5, 5)));
  QApplication::sendEvent(run->findChild<QLineEdit*>(), &event);
  ASSERT_EQ(popups.size(), 1U);
  EXPECT_EQ(popups[0], (SeenPopup{"? Help", "Number of time points to simulate."}));
  EXPECT_EQ(StoreDigest(), before);
}

TEST_F(WindowTest, AStateIsSwitchedOnTheSchemeAndALinkThatItBringsOpensItsDependence) {
  auto* scheme = window->page()->findChild<SchemeView*>();
  const auto clickItem = [&](SchemeItem::Kind kind, int number) {
    const SchemeItem* item = scheme->scheme().find({kind, number, {}, nullptr});
    ASSERT_NE(item, nullptr);
    QTest::mouseClick(scheme, Qt::LeftButton, {}, item->rect.center().toPoint());
    Settle();
  };
  ASSERT_EQ(Model.StateOn[5], 0);
  clickItem(SchemeItem::Kind::State, 5);
  EXPECT_EQ(Model.StateOn[5], 1);
  clickItem(SchemeItem::Kind::DependOff, 4);
  ASSERT_EQ(window->openDialogs().size(), 1U);
  EXPECT_EQ(window->openDialogs()[0]->panel().name, "DependencePanel");
}

TEST_F(WindowTest, TheWelcomeOpensAnExampleModel) {
  window->showWelcome();
  Settle();
  auto* list = window->findChild<QListWidget*>();
  ASSERT_NE(list, nullptr);
  ASSERT_EQ(list->count(), 9);
  const QString title = list->item(0)->text();
  QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(list->item(0)).center());
  Settle();
  EXPECT_TRUE(QString::fromStdString(Model.ModelTitle).startsWith(title.left(40)));
  EXPECT_EQ(window->findChild<QListWidget*>(), nullptr) << "the welcome has gone";
}

TEST_F(WindowTest, HelpOpensAtItsTopicsAndALackOfPagesIsTold) {
  for (const int topic : {HelpContents, 1001, 22000}) {
    SystemHelp(topic);
    Settle();
    QTextBrowser* browser = nullptr;
    for (QWidget* top : QApplication::topLevelWidgets()) {
      if (top->isVisible() && browser == nullptr) browser = top->findChild<QTextBrowser*>();
    }
    ASSERT_NE(browser, nullptr);
    EXPECT_GT(browser->toPlainText().size(), 400);
  }
  EXPECT_TRUE(popups.empty());
  SystemHelp(99);
  ASSERT_EQ(popups.size(), 1U);
  EXPECT_EQ(popups[0].text, "The help file is missing beside the program.");
}

TEST_F(WindowTest, ADroppedModelOpensAndAnythingElseIsTold) {
  drop(ZELVANE_DATA "/models/nmda_lester_1992.mod");
  EXPECT_TRUE(popups.empty());
  EXPECT_TRUE(Model.ModelTitle.starts_with("NMDA"));
  EXPECT_TRUE(window->windowTitle().startsWith("nmda_lester_1992.mod"));
  EXPECT_EQ(settings.recentFiles().size(), 1);
  key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_TRUE(Model.ModelTitle.starts_with("AMPA")) << "opening a file can be undone";

  WriteWholeFile(folder.File("junk.abf"), std::string("ABF2\0\1\2", 7));
  for (const std::string& path : {folder.File("junk.abf"), folder.File(""), folder.File("absent")}) {
    popups.clear();
    errors = 0;
    drop(path);
    EXPECT_EQ(popups.size(), 1U) << path;
    EXPECT_EQ(errors, 1) << path;
  }
}

TEST_F(WindowTest, ARecordingShowsAtOnceHoweverItIsOpened) {
  const std::string recording = ZELVANE_TEST_DATA "/recordings/abf2/20101002.abf";
  const QImage empty = Look(*graph());
  window.reset();
  open({folder.File("absent"), recording});
  const QImage named = Look(*graph());
  EXPECT_NE(named, empty);
  EXPECT_EQ(Trace.TraceFileName, recording);
  EXPECT_EQ(GraphNamed("MainPanel").plots.at(0).y.size(), 246U);
  window.reset();
  open();
  EXPECT_EQ(Look(*graph()), empty);
  drop(recording);
  EXPECT_EQ(Look(*graph()), named) << "dropped";
  window.reset();
  open();
  choices.push_back(recording);
  window->findChild<QAction*>("FxnRead")->trigger();
  EXPECT_EQ(Look(*graph()), named) << "chosen in the menu";
  const auto labels = window->statusBar()->findChildren<QLabel*>();
  EXPECT_TRUE(std::any_of(labels.begin(), labels.end(), [](const QLabel* label) {
    return label->isVisible() && label->text() == "20101002.abf";
  }));
  EXPECT_TRUE(popups.empty());
}

TEST_F(WindowTest, AFileThatCannotBeReadAtTheStartIsToldOnceAndTheModelStays) {
  for (const char* name : {"abf1_header_200", "abf1_version_nan", "abf2_table_100"}) {
    window.reset();
    popups.clear();
    open({std::string(ZELVANE_TEST_DATA "/recordings/broken/") + name + ".abf"});
    ASSERT_EQ(popups.size(), 1U) << name;
    EXPECT_EQ(GraphNamed("MainPanel").plots.size(), 0U) << name;
    EXPECT_TRUE(Model.ModelTitle.starts_with("AMPA")) << name;
  }
}

TEST_F(WindowTest, WhatIsTypedIntoADialogThatOpensTakesThePlaceOfItsProposal) {
  QTimer user;
  QObject::connect(&user, &QTimer::timeout, [&user] {
    QWidget* dialog = QApplication::activeModalWidget();
    if (dialog == nullptr) return;
    user.stop();
    EXPECT_EQ(dialog->objectName(), "ChannelChoicePanel");
    QTest::keyClicks(dialog->focusWidget(), "2");
    QTest::keyClick(dialog->focusWidget(), Qt::Key_Return);
  });
  user.start(0);
  drop(ZELVANE_TEST_DATA "/recordings/abf1/pclamp11_4ch_abf1.abf");
  EXPECT_EQ(Trace.RecordedChannel, 2);
  EXPECT_TRUE(window->openDialogs().empty());
}

TEST_F(WindowTest, PageKeysStepThroughTheSweepsOfADroppedRecording) {
  drop(ZELVANE_TEST_DATA "/recordings/abf2/20101002.abf");
  EXPECT_TRUE(popups.empty());
  ASSERT_EQ(Trace.EpisodeCount, 3);
  const auto shown = [] { return std::vector<float>(Trace.SimTrace.begin(), Trace.SimTrace.begin() + 246); };
  const std::vector<float> first = shown();
  key(Qt::Key_PageUp);
  EXPECT_EQ(Trace.EpisodeIndex, 2);
  EXPECT_NE(shown(), first);
  graph()->setFocus();
  key(Qt::Key_PageUp);
  EXPECT_EQ(Trace.EpisodeIndex, 3);
  key(Qt::Key_PageUp);
  EXPECT_EQ(Trace.EpisodeIndex, 1) << "the last is followed by the first";
  EXPECT_EQ(shown(), first);
  key(Qt::Key_PageDown);
  EXPECT_EQ(Trace.EpisodeIndex, 3);
}

TEST_F(WindowTest, ARecordedSessionReplayedWithoutAWindowLeavesTheSameStores) {
  StartRecording();
  type("NumPoints", "4000");
  answers = {true};
  type("VHold", "-61,5");  // "Replace voltage protocol with new Vhold?"
  clickControl("ChannelsGaussian");
  clickTool("Stimulus");
  clickWord("StimMode", "MANUAL");
  type("StepAmp", "2m");
  clickControl("CreateStim");
  clickTool("Model");
  Press(*FindCommand("FxnDepend2On"));
  Settle();
  clickControl("DependDrug[3]");
  clickControl("CloseDependence");
  clickTool("Table");
  clickTool("Run");
  std::string script;
  for (const std::string& line : StopRecording()) script += line + '\n';
  const std::string live = StoreDigest();
  const std::vector<float> trace(Trace.SimTrace.begin(), Trace.SimTrace.begin() + 4000);
  EXPECT_EQ(Model.VHold, -61.5F);
  window.reset();

  std::istringstream in(script);
  std::ostringstream out;
  EXPECT_EQ(RunDrive(in, out, options()), 0) << script << out.str();
  EXPECT_EQ(StoreDigest(), live) << script;
  EXPECT_TRUE(std::equal(trace.begin(), trace.end(), Trace.SimTrace.begin()));
}

/// Views, full ranges and scaling of the main graph.
std::string ViewDigest() {
  const Graph& graph = GraphNamed("MainPanel");
  const DataRange x = ViewRange(graph, 'x');
  const DataRange y = ViewRange(graph, 'y');
  return FormatText("%.17g %.17g %d %.17g %.17g %d %.17g %.17g", x.min, x.max, graph.x.automatic ? 1 : 0,
                    y.min, y.max, graph.y.automatic ? 1 : 0, graph.fullYMin, graph.fullYMax);
}

TEST_F(WindowTest, RecordedViewsReplayWithoutAWindowToTheSameRanges) {
  using Step = std::function<void()>;
  QWidget* plot = nullptr;
  const auto part = [&](const char* name) { return graph()->findChild<QWidget*>(name); };
  const auto middle = [&] { return plot->rect().center(); };
  const Step steps[] = {
      [&] { Wheel(plot, middle() + QPoint(33, 7), 3); },
      [&] { Wheel(plot, middle(), 2, Qt::ControlModifier); },
      [&] { Drag(plot, middle() + QPoint(5, 0), middle() + QPoint(-60, 25)); },
      [&] {
        Drag(part("xBar"), part("xBar")->rect().center(), part("xBar")->rect().center() + QPoint(25, 0));
      },
      [&] { click(part("left")); },
      [&] {
        QTest::mouseClick(part("xBar"), Qt::LeftButton, {}, {part("xBar")->width() - 3, 5});
      },
      [&] {
        Drag(part("yStrip"), {5, 20}, {5, part("yStrip")->height() - 30});
      },
      [&] { click(part("ycontract")); },
      [&] { QTest::keyClick(graph(), Qt::Key_Home); },
      [&] {
        Drag(part("xStrip"), {80, 5}, {part("xStrip")->width() - 90, 5});
      },
      [&] {
        type("MaxStepSize", "2e-5");
        QTimer::singleShot(20, [&] { Wheel(plot, middle() + QPoint(90, 0), 1, Qt::ControlModifier); });
        clickTool("Run");  // the view changes while it runs
      },
      [&] {
        window->findChild<QAction*>("FxnGraphProperties")->trigger();
        Settle();
        auto* tabs = window->findChild<QTabWidget*>();
        tabs->setCurrentIndex(1);
        clickControl("GraphAutoY");
        tabs->setCurrentIndex(0);
        type("GraphYMin", "-12.5");
        clickControl("GraphPropertiesOk");
      },
  };
  type("NumPoints", "40000");
  clickTool("Run");
  plot = &graph()->plot();
  std::vector<std::string> views;
  std::vector<std::string> script = {"enter NumPoints 40000", "press AcquireData"};
  for (const Step& step : steps) {
    StartRecording();
    step();
    Settle();
    for (const std::string& line : StopRecording()) script.push_back(line);
    views.push_back(ViewDigest());
    script.push_back(FormatText("# %d", static_cast<int>(views.size())));
  }
  window.reset();
  std::string text;
  std::size_t step = 0;
  for (const std::string& line : script) {
    text += line + '\n';
    if (!line.starts_with("#")) continue;
    std::istringstream in(text);
    std::ostringstream out;
    EXPECT_EQ(RunDrive(in, out, options()), 0) << text << out.str();
    EXPECT_EQ(ViewDigest(), views[step]) << "step " << step + 1 << '\n' << text;
    EXPECT_TRUE(step == 0 || views[step] != views[step - 1]) << "step " << step + 1 << " does nothing";
    ++step;
  }
}

TEST_F(WindowTest, ClosingAsksAndNoLeavesEverythingRunning) {
  answers = {false};
  window->close();
  Settle();
  EXPECT_FALSE(quit);
  EXPECT_TRUE(window->isVisible());
  answers = {true};
  window->close();
  EXPECT_TRUE(quit);
}

TEST_F(WindowTest, AScriptPlaysAgainstTheWindowAndTellsWhatItCouldNotDo) {
  WriteWholeFile(folder.File("good.drive"),
                 "enter NumPoints 3000\npress AcquireData\npress FxnConductance\n");
  window->playScript(QString::fromStdString(folder.File("good.drive")));
  Settle();
  EXPECT_EQ(Model.NumPoints, 3000);
  EXPECT_EQ(field("NumPoints")->text(), "3000");
  EXPECT_EQ(window->openDialogs().size(), 1U);
  EXPECT_TRUE(popups.empty());
  WriteWholeFile(folder.File("bad.drive"), "enter NoSuchControl 1\n");
  window->playScript(QString::fromStdString(folder.File("bad.drive")));
  ASSERT_EQ(popups.size(), 1U);
  EXPECT_NE(popups[0].text.find("NoSuchControl"), std::string::npos);
}

TEST_F(WindowTest, ASystemThatTurnsDarkDressesTheWindowThatIsOpen) {
  const auto show = [&](const char* task) {
    clickTool(task);
    graph()->setFocus();
  };
  ApplyTheme(Theme::System);
  clickTool("Run");
  ASSERT_FALSE(IsDark());
  QPalette dark(QColor(20, 20, 24));
  QApplication::setPalette(dark);
  Settle();
  EXPECT_TRUE(IsDark());
  std::vector<QImage> turned;
  for (const char* task : {"Table", "Grid", "Stimulus", "Model"}) {
    show(task);
    turned.push_back(Look(*window));
  }
  window.reset();
  ApplyTheme(Theme::Dark);
  window = std::make_unique<MainWindow>(frontEnd, settings);  // opened in the dark
  window->setWindowState(Qt::WindowNoState);
  ShowAt(*window, {1280, 720});
  std::size_t i = 0;
  for (const char* task : {"Table", "Grid", "Stimulus", "Model"}) {
    show(task);
    EXPECT_EQ(turned[i++], Look(*window)) << task;
  }
  ApplyTheme(Theme::Light);
}

TEST_F(WindowTest, ThePointerTellsWhereADragZooms) {
  EXPECT_EQ(graph()->findChild<QWidget*>("xStrip")->cursor().shape(), Qt::SizeHorCursor);
  EXPECT_EQ(graph()->findChild<QWidget*>("yStrip")->cursor().shape(), Qt::SizeVerCursor);
  QCustomPlot& plot = graph()->plot();
  const QRect area = plot.axisRect()->rect();
  for (const QWidget* strip :
       {graph()->findChild<QWidget*>("xStrip"), graph()->findChild<QWidget*>("yStrip")}) {
    EXPECT_FALSE(strip->geometry().intersects(area.translated(plot.pos()))) << "beside the plot area";
    EXPECT_EQ(graph()->childAt(strip->geometry().center()), strip);
  }
  QTest::mouseMove(&plot, area.center() + QPoint(9, 0));
  EXPECT_EQ(plot.cursor().shape(), Qt::ArrowCursor);
}

TEST_F(WindowTest, LimitsInTheWrongOrderAreToldAndThePageStays) {
  clickTool("Run");
  const std::string before = ViewDigest();
  window->findChild<QAction*>("FxnGraphProperties")->trigger();
  Settle();
  ShowNumber("GraphAutoX", 0.0);
  ShowNumber("GraphAutoY", 0.0);
  UpdateDimming();
  frontEnd.refreshNow();
  type("GraphLeftSample", "900");
  type("GraphRightSample", "800");
  clickControl("GraphPropertiesOk");
  ASSERT_EQ(popups.size(), 1U);
  EXPECT_EQ(popups[0].text, "The left limit must be below the right limit.");
  type("GraphRightSample", "1000");
  type("GraphYMin", "5");
  type("GraphYMax", "5");
  clickControl("GraphPropertiesOk");
  ASSERT_EQ(popups.size(), 2U);
  EXPECT_EQ(popups[1].text, "The lower limit must be below the upper limit.");
  EXPECT_EQ(ViewDigest(), before);
  ASSERT_TRUE(PanelVisible("GraphPropertiesPanel"));
  type("GraphYMax", "7");
  clickControl("GraphPropertiesOk");
  EXPECT_FALSE(PanelVisible("GraphPropertiesPanel"));
  EXPECT_EQ(ViewRange(GraphNamed("MainPanel"), 'y').max, 7.0);
}

TEST_F(WindowTest, EveryWordOfALayoutNamesAControl) {
  EXPECT_EQ(LayoutFaults(), std::vector<std::string>{});
}

TEST_F(WindowTest, PicturesOfEveryVisiblePanelAreSaved) {
  Press(*FindCommand("FxnConductance"));
  ASSERT_TRUE(GrabPanels(*window, QString::fromStdString(folder.File("pictures"))));
  const QImage page(QString::fromStdString(folder.File("pictures/MainPanel.png")));
  EXPECT_EQ(page.size(), QSize(1280, 720));
  EXPECT_FALSE(QImage(QString::fromStdString(folder.File("pictures/ConductancePanel.png"))).isNull());
  EXPECT_FALSE(GrabPanels(*window, QString::fromStdString(folder.File("config.mod")) + "/within"));
  frontEnd.modalShown = [&] {
    EXPECT_TRUE(GrabPanels(*window, QString::fromStdString(folder.File("pictures"))));
  };
  WriteWholeFile(folder.File("ask.drive"), "reply cancel\npress SCImportAscii\n");
  window->playScript(QString::fromStdString(folder.File("ask.drive")));
  EXPECT_FALSE(QImage(QString::fromStdString(folder.File("pictures/ListChoicePanel.png"))).isNull())
      << "a dialog that waits for its answer";
}

}  // namespace
}  // namespace zelvane
