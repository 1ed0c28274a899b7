// The dwell lists in use, the choice of the list that receives a text file, and their commands.
#include "dwells/dwell_lists_panel.h"

#include <optional>
#include <string>

#include "dwells/dwell_lists.h"
#include "dwells/dwell_store.h"
#include "dwells/simulated_dwells.h"
#include "screen/screen.h"
#include "trace/trace_write.h"

namespace zelvane {
namespace {

constexpr char ListsPanel[] = "DwellListsPanel";
constexpr char ChoicePanel[] = "ListChoicePanel";
constexpr char ListsGroup[] = "lists";
constexpr char ChoiceGroup[] = "choice";

constexpr char ChoiceText[] = "Choose the list that the file goes into.";
constexpr char OneAtATime[] =
    "You must import each array of channel open/closed/burst/etc times individually.";
constexpr char ImportOpenTitle[] = "Import Open Time Histograms from Single Column Ascii file ";
constexpr char ImportClosedTitle[] = "Import Closed Time Histograms from Single Column Ascii file ";

// -- Importing --

void Import(std::span<float> list, float& count, const std::string& path, bool open) {
  const auto read = ReadSingleColumnList(list, path, Dwell.ListReplace != 0, static_cast<int>(count));
  if (!read) return;
  count = static_cast<float>(*read);
  if (open) KeepRawOpenTimes(Dwell);
}

void FxnSCImportAscii() {
  WriteControls(ChoicePanel, ChoiceGroup);
  if (!RunModalPanel(ChoicePanel, ChoiceText)) return;
  ReadControls(ChoicePanel, ChoiceGroup);
  const bool open = Dwell.ChoiceOpen != 0;
  const bool closed = Dwell.ChoiceClosed != 0;
  if (open && closed) {
    MessagePopup(WarningTitle, OneAtATime);
    return;
  }
  if (!open && !closed) return;
  const auto path = FileSelectPopup({.title = open ? ImportOpenTitle : ImportClosedTitle, .filter = "*.*"});
  if (!path) return;
  if (open) {
    Import(Dwell.OpenTimes, Dwell.NumOpenTimes, *path, true);
  } else {
    Import(Dwell.ClosedTimes, Dwell.NumClosedTimes, *path, false);
  }
  WriteControls(ListsPanel, ListsGroup);
}

// -- Exporting --

/// Asks for the name of an export. While autosave is on, shows a message instead.
std::optional<std::string> AskForExport(const char* title, const char* filter) {
  if (RefusedByAutosave()) return std::nullopt;
  return FileSelectPopup({.title = title, .filter = filter, .save = true});
}

void FxnExportOpenTimes() {
  if (const auto path = AskForExport("Export Open Times as ATF ASCII File", "*.ops")) ExportDwellLists(*path);
}

void FxnExportClosedTimes() {
  if (const auto path = AskForExport("Export Closed Times as ATF ASCII File", "*.sht")) {
    ExportDwellList(DwellListKind::Closed, *path);
  }
}

void FxnExportLatencies() {
  if (const auto path = AskForExport("Export Latencies as ATF ASCII File", "*.lat")) {
    ExportDwellList(DwellListKind::Latencies, *path);
  }
}

// -- The panel --

void UseChosenList(const ControlEvent& /*event*/) {
  UseOpenList();
}

void FxnSCOpenWorkHistogram(const ControlEvent& /*event*/) {
  ReadControls(ListsPanel, ListsGroup);
  UseOpenList();
}

void FxnDwellListsDone(const ControlEvent& /*event*/) {
  HidePanel(ListsPanel);
}

void FxnDwellLists() {
  WriteControls(ListsPanel, ListsGroup);
  ShowPanel(ListsPanel);
}

/// Shows counts and selection. Runs after every commit, because a run or a read changes the lists.
void ShowLists() {
  ShowField("OpenListSelector");
  ShowText("OpenTimesCount", FormatText("%.0f", static_cast<double>(Dwell.NumOpenTimes)));
  ShowText("ClosedTimesCount", FormatText("%.0f", static_cast<double>(Dwell.NumClosedTimes)));
  ShowText("LatenciesCount", FormatText("%.0f", static_cast<double>(Dwell.NumLatencies)));
}

constexpr auto Switch = ControlKind::Switch;
constexpr auto Choice = ControlKind::Choice;
constexpr auto Button = ControlKind::Button;
constexpr auto Readout = ControlKind::Readout;

// clang-format off
constexpr ControlDecl ListsControls[] = {
    {.name = "OpenTimesCount", .kind = Readout, .label = "Open times", .format = "",
     .help = "Number of open times in the list in use."},
    {.name = "ClosedTimesCount", .kind = Readout, .label = "Closed times", .format = "",
     .help = "Number of closed times in the list in use."},
    {.name = "LatenciesCount", .kind = Readout, .label = "Latencies", .format = "",
     .help = "Number of sweeps in which a channel opened."},
    {.name = "OpenListSelector", .kind = Choice, .label = "List of open times", .format = "%d",
     .command = "FxnOpenListSelector", .action = UseChosenList,
     .help = "List of open times to use: all open times that were read or simulated, or those of one amplitude "
     "class of a file.",
     .choices = "All|Class 1|Class 2|Class 3|Class 4|Class 5"},
    {.name = "SCOpenWorkHistogram", .kind = Button, .label = "Restore open times", .format = "",
     .command = "FxnSCOpenWorkHistogram", .action = FxnSCOpenWorkHistogram,
     .help = "Replace current array with imposed resolution with raw open time array (no resolution imposed)."},
    {.name = "SCImportAscii", .kind = Button, .label = "Import text...", .format = "", .command = "FxnSCImportAscii",
     .action = Run<FxnSCImportAscii>,
     .help = "Read open or closed times from a text file, plain or ATF, with one duration (ms) per line."},
    {.name = "ExportOpenTimes", .kind = Button, .label = "Export all lists...", .format = "",
     .command = "FxnExportOpenTimes", .action = Run<FxnExportOpenTimes>,
     .help = "Write open times (.ops), closed times (.sht) and latencies (.lat) as ATF text files with the same "
     "name."},
    {.name = "ExportClosedTimes", .kind = Button, .label = "Export closed times...", .format = "",
     .command = "FxnExportClosedTimes", .action = Run<FxnExportClosedTimes>,
     .help = "Write the closed times as an ATF text file."},
    {.name = "ExportLatencies", .kind = Button, .label = "Export latencies...", .format = "",
     .command = "FxnExportLatencies", .action = Run<FxnExportLatencies>,
     .help = "Write the latencies as an ATF text file."},
    {.name = "DwellListsDone", .kind = Button, .label = "Close", .format = "", .command = "FxnDwellListsDone",
     .action = FxnDwellListsDone, .help = "Close the panel of dwell lists."},
};

constexpr ControlDecl ChoiceControls[] = {
    {.name = "ChoiceOpen", .kind = Switch, .label = "Open times", .format = "%d", .command = "FxnChoiceOpen",
     .help = "The file holds open times.", .choices = "off|on"},
    {.name = "ChoiceClosed", .kind = Switch, .label = "Closed times", .format = "%d", .command = "FxnChoiceClosed",
     .help = "The file holds closed times.", .choices = "off|on"},
    {.name = "ListReplace", .kind = Switch, .label = "Replace the present list", .format = "%d",
     .command = "FxnListReplace", .help = "On: the file replaces the present list. Off: the program adds the file to the present list.",
     .choices = "off|on"},
};

constexpr MenuDecl SingleChannelsMenu[] = {
    {"Single channels/Dwell lists...",         "FxnDwellLists",        FxnDwellLists},
    {"Single channels/Import list...",         "FxnSCImportAscii",     FxnSCImportAscii},
    {"Single channels/Export all lists...",    "FxnExportOpenTimes",   FxnExportOpenTimes},
    {"Single channels/Export closed times...", "FxnExportClosedTimes", FxnExportClosedTimes},
    {"Single channels/Export latencies...",    "FxnExportLatencies",   FxnExportLatencies},
};
// clang-format on

}  // namespace

void AddDwellListsPanels() {
  AddPanel({.name = ListsPanel,
            .title = "Dwell lists",
            .dim = ShowLists,
            .help = "Open times, closed times and latencies of the last simulation or of the files that "
                    "were read."});
  AddControls(ListsPanel, ListsGroup, ListsControls);
  AddPanel({.name = ChoicePanel,
            .title = "Import a list",
            .help = "Choose the list for a text file with one duration per line."});
  AddControls(ChoicePanel, ChoiceGroup, ChoiceControls);
  AddMenu(SingleChannelsMenu);
}

}  // namespace zelvane
