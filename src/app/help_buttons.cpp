#include "app/help_buttons.h"

#include "screen/screen.h"

namespace zelvane {
namespace {

constexpr char MainHelpTitle[] = "? Main Panel Help";

constexpr char MainHelp[] =
    "Build a kinetic scheme: switch states on and enter the rate constants of the links between them. Then "
    "choose the rates that depend on voltage or on a drug.\n"
    "Choose the states to monitor, the number of points and the time interval, and press Run.\n"
    "Build the stimulus of the scheme on the stimulus panel.\n\n"
    "ON LINE HELP AVAILABLE by clicking right mouse button on item in question. \n\nView System Help Now? ";

constexpr char StimulusHelp[] =
    "Choose a mode. Choose the profile to show: the voltage or one of six drugs.\n"
    "AUTOMATIC makes one step again after each change. MANUAL and EXPONENTIAL add steps, trains and "
    "waveforms to the profile. Erase the profile before you build a new stimulus.\n"
    "Times are in ms, concentrations in M, voltages in V.\n\n"
    "ON LINE HELP AVAILABLE by clicking right mouse button on item in question. \n\nView System Help Now? ";

void HelpMainScreen(const ControlEvent&) {
  if (ConfirmPopup(MainHelpTitle, MainHelp)) SystemHelp(HelpContents);
}

void StimHelp(const ControlEvent&) {
  if (ConfirmPopup(MainHelpTitle, StimulusHelp)) SystemHelp(HelpStimulus);
}

constexpr char AnalysisHelpText[] =
    "Drag the cursors to the baseline, to the part with the peak and to the start of the latencies, or type "
    "their times. Then press Analyze. The marks show what was measured, and the table gets a new row.\n"
    "Analyze all measures every episode of a recording. Click an episode in the table to see its sweep again.\n"
    "A measure that is not possible stays empty. In the table its value is grey.\n\n"
    "ON LINE HELP AVAILABLE by clicking right mouse button on item in question. \n\nView System Help Now? ";

void AnalysisHelp(const ControlEvent&) {
  if (ConfirmPopup(MainHelpTitle, AnalysisHelpText)) SystemHelp(HelpAnalysis);
}

constexpr char FitHelpTitle[] = "? Waveform Fitting Help";
constexpr char FitHelpText[] =
    "Load a recording and its stimulus on each line, or load a list. Place the cursors of baseline, alignment and "
    "end, or type their times. Then press One step to compare the model with the recordings, or Fit rates to fit "
    "it.\n"
    "The log shows every evaluation, the newest at the top. Stop ends a fit and keeps the best rates.\n\n"
    "ON LINE HELP AVAILABLE by clicking right mouse button on item in question. \n\nView System Help Now? ";

void FitHelp(const ControlEvent&) {
  if (ConfirmPopup(FitHelpTitle, FitHelpText)) SystemHelp(HelpFit);
}

void FxnHelp() {
  SystemHelp(HelpContents);
}

void FxnHotKey() {
  SystemHelp(HelpHotKeys);
}

// Print commands are next to the help buttons: both act on a whole panel.
constexpr char PrintMainHelp[] =
    "Print Modeling Panel. Print from menu to access setup options.\nUses default Windows Printer settings.";
constexpr char PrintStimHelp[] =
    "Print Stimulus Panel as it appears on screen.\nUses default Windows Printer settings.";
constexpr char PrintAnalysisHelp[] =
    "Print Analysis Panel as it appears on screen.\nUses default Windows Printer settings.";

void PrintStim(const ControlEvent&) {
  PrintPanel("StimulusPanel");
}

void PrintAnalysis(const ControlEvent&) {
  PrintPanel("AnalysisPanel");
}

void PrintFront() {
  for (const Panel& panel : Screen.panels) {
    if (!panel.tag.empty() && panel.visible) {
      PrintPanel(panel.name);
      return;
    }
  }
}

void PrintMainScreen(const ControlEvent&) {
  PrintFront();
}

// clang-format off
constexpr ControlDecl MainControls[] = {
    {.name = "MainHelp", .kind = ControlKind::Button, .label = "Help", .format = "", .command = "HelpMainScreen",
     .action = HelpMainScreen, .help = MainHelp, .helpActs = true},
    {.name = "PrintMain", .kind = ControlKind::Button, .label = "Print", .format = "", .command = "PrintMainScreen",
     .action = PrintMainScreen, .help = PrintMainHelp},
};
constexpr ControlDecl StimulusControls[] = {
    {.name = "StimulusHelp", .kind = ControlKind::Button, .label = "Help", .format = "", .command = "StimHelp",
     .action = StimHelp, .help = StimulusHelp, .helpActs = true},
    {.name = "PrintStimulus", .kind = ControlKind::Button, .label = "Print", .format = "", .command = "PrintStim",
     .action = PrintStim, .help = PrintStimHelp},
};
constexpr ControlDecl AnalysisControls[] = {
    {.name = "PrintAnalysisButton", .kind = ControlKind::Button, .label = "Print", .format = "",
     .command = "PrintAnalysis", .action = PrintAnalysis, .help = PrintAnalysisHelp},
    {.name = "AnalysisHelpButton", .kind = ControlKind::Button, .label = "Help", .format = "",
     .command = "AnalysisHelp", .action = AnalysisHelp, .help = AnalysisHelpText, .helpActs = true},
};
constexpr ControlDecl FitControls[] = {
    {.name = "FitHelpButton", .kind = ControlKind::Button, .label = "Help", .format = "", .command = "FitHelp",
     .action = FitHelp, .help = FitHelpText, .helpActs = true},
};
constexpr MenuDecl HelpMenu[] = {
    {"File/Print...",    "FxnPrint",  PrintFront, "Ctrl+P"},
    {"File/Print setup...", "FxnPrintSetup", PrintFront},
    {"Help/Contents",    "FxnHelp",   FxnHelp,    "F1"},
    {"Help/Keyboard",    "FxnHotKey", FxnHotKey},
};
// clang-format on

}  // namespace

void AddHelp() {
  AddControls(MainPanelName, "shell", MainControls);
  AddControls("StimulusPanel", "shell", StimulusControls);
  AddControls("AnalysisPanel", "shell", AnalysisControls);
  AddControls("FitPanel", "shell", FitControls);
  AddMenu(HelpMenu);
}

}  // namespace zelvane
