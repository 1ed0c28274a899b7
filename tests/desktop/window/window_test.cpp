// The whole window, used as a user does.
#include <qcustomplot.h>

#include <QAction>
#include <QImage>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QStatusBar>
#include <QTabWidget>
#include <QTextBrowser>
#include <QTimer>

#include "app/recorder.h"
#include "desktop/pages/task_page.h"
#include "desktop/scheme/scheme_view.h"
#include "desktop/widgets/panel_layout.h"
#include "desktop/window/grabs.h"
#include "desktop/window/page_printer.h"
#include "desktop/window/panel_dialog.h"
#include "desktop/window_fixture.h"
#include "model/model_store.h"
#include "stimulus/stimulus_store.h"
#include "support/store_digest.h"
#include "trace/trace_store.h"

namespace zelvane {
namespace {

/// Returns a picture of the window.
QImage Look(QWidget& widget) {
  Settle();
  return widget.grab().toImage();
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

TEST_F(WindowTest, ANoteTakesTheStatusLineAndAClickListsAllNotes) {
  const auto shown = [this] {
    Texts texts;
    for (const QLabel* label : window->statusBar()->findChildren<QLabel*>()) {
      if (label->isVisible()) texts.push_back(label->text().toStdString());
    }
    return texts;
  };
  const Texts facts = shown();
  Note("The first.");
  Note("The second.");
  EXPECT_EQ(shown(), Texts{"The second."});
  auto* line = window->statusBar()->findChild<QLabel*>("NoteLine");
  QTest::mouseClick(line, Qt::LeftButton);
  const Texts& lines = TextBoxNamed("NotesText").lines;
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_TRUE(lines[0].ends_with("The first.") && lines[1].ends_with("The second."));
  EXPECT_TRUE(PanelVisible("NotesPanel"));
  line->findChild<QTimer*>()->setInterval(1);  // in place of ten seconds
  QTest::qWait(50);
  EXPECT_EQ(shown(), facts);
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

TEST_F(WindowTest, ARightClickTellsTheHelpAndChangesNothing) {
  const std::string before = StoreDigest();
  ControlWidget* run = widget("NumPoints");
  QContextMenuEvent event(QContextMenuEvent::Mouse, {5, 5}, run->mapToGlobal(QPoint(5, 5)));
  QApplication::sendEvent(run->findChild<QLineEdit*>(), &event);
  EXPECT_EQ(popups, (std::vector<SeenPopup>{{"? Help", "Number of time points to simulate."}}));
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
  EXPECT_EQ(PopupTexts(), Texts{"The help file is missing beside the program."});
}

TEST_F(WindowTest, ADroppedModelOpensAndAnythingElseIsTold) {
  drop(ZELVANE_DATA "/models/nmda_lester_1992.mod", Qt::MoveAction);
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
  window.reset();
  open({folder.File("junk.abf")});
  EXPECT_EQ(errors, 2) << "named at the start";
  EXPECT_TRUE(Model.ModelTitle.starts_with("AMPA"));
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
  const auto labels = window->statusBar()->findChildren<QLabel*>();
  EXPECT_TRUE(std::any_of(labels.begin(), labels.end(), [](const QLabel* label) {
    return label->isVisible() && label->text() == "20101002.abf";
  }));
  EXPECT_TRUE(popups.empty());
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
  key(Qt::Key_PageUp);
  EXPECT_EQ(Trace.EpisodeIndex, 2);
  graph()->setFocus();
  key(Qt::Key_PageUp);
  EXPECT_EQ(Trace.EpisodeIndex, 3);
  key(Qt::Key_PageDown);
  EXPECT_EQ(Trace.EpisodeIndex, 2);
}

TEST_F(WindowTest, ARecordedSessionReplayedWithoutAWindowLeavesTheSameStores) {
  StartRecording();
  type("NumPoints", "4000");
  answers = {true};
  type("VHold", "-61,5");  // "Replace voltage protocol with new Vhold?"
  clickControl("ChannelsGaussian");
  clickTool("Stimulus");
  EXPECT_EQ(window->page()->panel().name, "StimulusPanel");
  clickWord("StimMode", "MANUAL");
  type("StepAmp", "2m");
  clickControl("CreateStim");
  EXPECT_EQ(Stimulus.StepAmp, 0.002F);
  clickTool("Model");
  Press(*FindCommand("FxnDepend2On"));
  Settle();
  clickControl("DependDrug[3]");
  clickControl("CloseDependence");
  EXPECT_TRUE(window->openDialogs().empty());
  clickTool("Table");
  clickTool("Run");
  std::string script;
  for (const std::string& line : StopRecording()) script += line + '\n';
  const std::string live = StoreDigest();
  const Floats trace(Trace.SimTrace.begin(), Trace.SimTrace.begin() + 4000);
  EXPECT_EQ(Model.VHold, -61.5F);
  window.reset();

  ReplayAndExpect(script, StoreDigest, live);
  EXPECT_TRUE(std::equal(trace.begin(), trace.end(), Trace.SimTrace.begin()));
}

/// Returns views, full ranges and scaling of the main graph.
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
  const auto dragBy = [&](QWidget* over, QPoint from, QPoint by) { Drag(over, from, from + by); };
  const Step steps[] = {
      [&] { Wheel(plot, middle() + QPoint(33, 7), 3); },
      [&] { Wheel(plot, middle(), 2, Qt::ControlModifier); },
      [&] {
        dragBy(plot, middle() + QPoint(5, 0), {-65, 25});
      },
      [&] {
        dragBy(part("xBar"), part("xBar")->rect().center(), {25, 0});
      },
      [&] { click(part("left")); },
      [&] {
        QTest::mouseClick(part("xBar"), Qt::LeftButton, {}, {part("xBar")->width() - 3, 5});
      },
      [&] {
        dragBy(part("yStrip"), {5, 20}, {0, part("yStrip")->height() - 50});
      },
      [&] { click(part("ycontract")); },
      [&] { QTest::keyClick(graph(), Qt::Key_Home); },
      [&] {
        dragBy(part("xStrip"), {80, 5}, {part("xStrip")->width() - 170, 0});
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
  std::string script = "enter NumPoints 40000\npress AcquireData\n";
  std::vector<std::pair<std::string, std::string>> views{{script, ViewDigest()}};  // each with its script
  for (const Step& step : steps) {
    StartRecording();
    step();
    Settle();
    for (const std::string& line : StopRecording()) script += line + '\n';
    EXPECT_NE(ViewDigest(), views.back().second) << "step " << views.size() << " does nothing";
    views.emplace_back(script, ViewDigest());
  }
  window.reset();
  for (const auto& [text, view] : views) ReplayAndExpect(text, ViewDigest, view);
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
  ApplyTheme(Theme::Dark);
  reopen(settings);
  std::size_t i = 0;
  for (const char* task : {"Table", "Grid", "Stimulus", "Model"}) {
    show(task);
    EXPECT_EQ(turned[i++], Look(*window)) << task;
  }
  ApplyTheme(Theme::Light);
}

TEST_F(WindowTest, PaperIsWhiteAndTheDarkWindowComesBack) {
  ApplyTheme(Theme::Dark);
  clickTool("Run");
  const QImage before = Look(*window);
  {
    const OnPaper inks;
    for (QCustomPlot* plot : window->findChildren<QCustomPlot*>())
      plot->replot(QCustomPlot::rpImmediateRefresh);
    const QImage page = window->page()->grab().toImage();
    EXPECT_EQ(page.pixelColor(1, 1), QColor(Qt::white));
    const QPoint inPlot = graph()->mapTo(window->page(), graph()->rect().center());
    EXPECT_GT(page.pixelColor(inPlot).lightness(), 128);
  }
  EXPECT_EQ(Look(*window), before);
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

TEST_F(WindowTest, EveryWordOfALayoutNamesAControl) {
  EXPECT_EQ(LayoutFaults(), Texts{});
}

TEST_F(WindowTest, APageAsPdfKeepsAFileThatCannotBeReplaced) {
  const std::string path = folder.Written("page.pdf", "old");
  std::filesystem::permissions(path, std::filesystem::perms::owner_read);
  EXPECT_FALSE(WritePagePdf(*window->page(), QString::fromStdString(path)));
  EXPECT_EQ(ReadWholeFile(path), "old");
  std::filesystem::permissions(path, std::filesystem::perms::owner_all);
  EXPECT_TRUE(WritePagePdf(*window->page(), QString::fromStdString(path)));
  EXPECT_TRUE(ReadWholeFile(path).starts_with("%PDF"));
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
