// Commands of the language that ask: values, arrays, controls, tables, text boxes, graphs, panels.
#include <bit>
#include <cstdint>

#include "headless/drive/drive_session.h"
#include "headless/nearest_names.h"
#include "headless/words.h"
#include "platform/index.h"
#include "platform/safe_file.h"

namespace zelvane {
namespace {

constexpr int LongestArray = 100'000;  // elements that `get` writes at once

template <typename Record>
std::vector<std::string> NamesOf(const std::deque<Record>& records) {
  std::vector<std::string> names;
  for (const Record& record : records) names.push_back(record.name);
  return names;
}

Json Named(const std::string& name) {
  Json object = Json::object();
  object["name"] = name;
  return object;
}

/// Writes that a name is not an array.
void UnknownField(DriveSession& session, const std::string& name) {
  if (FindField(name))
    WriteMisunderstood(session, name + ": one value, not an array");
  else
    WriteUnknownName(session, "name", name, FieldNames());
}

Json ElementsJson(const FieldRun& run, int first, int count) {
  Json values = Json::array();
  for (int i = 0; i < count; ++i) values.push_back(FieldJson(RunElement(run, first + i)));
  return values;
}

int RunLength(const FieldRun& run) {
  return run.index.last - run.index.first + 1;
}

void GetArray(DriveSession& session, const std::string& name, const FieldRun& run) {
  if (RunLength(run) > LongestArray) {
    WriteRefusal(session, FormatText("%s: %d elements; slice %s %d COUNT writes some of them", name.c_str(),
                                     RunLength(run), name.c_str(), run.index.first));
    return;
  }
  Json object = Named(name);
  object["value"] = ElementsJson(run, run.index.first, RunLength(run));
  WriteObject(session, object);
}

void Get(DriveSession& session, Words words) {
  const std::string& name = words[0];
  Json object = Named(name);
  if (const FieldRef field = FindField(name)) {
    object["value"] = FieldJson(field);
  } else if (const Control* control = FindControl(name)) {
    object["value"] = ControlValueJson(*control);
  } else if (const FieldRun run = FindFieldRun(name)) {
    GetArray(session, name, run);
    return;
  } else {
    std::vector<std::string> candidates = FieldNames();
    for (const Control& screenControl : Screen.controls) candidates.push_back(screenControl.name);
    WriteUnknownName(session, "name", name, candidates);
    return;
  }
  WriteObject(session, object);
}

/// Returns whether elements first..first + count - 1 exist; on failure writes a message.
bool InRun(DriveSession& session, const std::string& name, const FieldRun& run, int first, int count) {
  if (count >= 0 && first >= run.index.first && first <= run.index.last + 1 &&
      count <= run.index.last - first + 1) {
    return true;
  }
  WriteMisunderstood(session,
                     FormatText("%s: elements %d to %d", name.c_str(), run.index.first, run.index.last));
  return false;
}

void Slice(DriveSession& session, Words words) {
  const std::string& name = words[0];
  const FieldRun run = FindFieldRun(name);
  if (!run) {
    UnknownField(session, name);
    return;
  }
  const auto first = WholeNumber(words[1]);
  const auto count = WholeNumber(words[2]);
  if (!first || !count) {
    WriteMisunderstood(session, "slice: FIRST and COUNT are whole numbers");
    return;
  }
  if (!InRun(session, name, run, *first, *count)) return;
  Json object = Named(name);
  object["first"] = *first;
  object["value"] = ElementsJson(run, *first, *count);
  WriteObject(session, object);
}

/// Appends the four bytes of a float, lowest first on any machine.
void AppendFloat(std::string& bytes, float value) {
  const auto bits = std::bit_cast<std::uint32_t>(value);
  for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>((bits >> shift) & 0xFFU);
}

void Dump(DriveSession& session, Words words) {
  const std::string& name = words[0];
  const FieldRun run = FindFieldRun(name);
  if (!run || run.field->type == FieldType::Text) {
    if (run)
      WriteRefusal(session, name + ": texts, not numbers");
    else
      UnknownField(session, name);
    return;
  }
  const auto count = words.size() > 2 ? WholeNumber(words[2]) : std::optional<int>(RunLength(run));
  if (!count) {
    WriteMisunderstood(session, "dump: COUNT is a whole number");
    return;
  }
  if (!InRun(session, name, run, run.index.first, *count)) return;
  std::string bytes;
  bytes.reserve(Index(*count) * sizeof(float));
  for (int i = 0; i < *count; ++i) {
    AppendFloat(bytes, static_cast<float>(FieldNumber(RunElement(run, run.index.first + i))));
  }
  if (!ReplaceFile(words[1], bytes)) {
    WriteRefusal(session, "cannot write " + words[1]);
    return;
  }
  Json object = Named(name);
  object["count"] = *count;
  WriteObject(session, object);
}

void ControlQuery(DriveSession& session, Words words) {
  if (const Control* control = FindControl(words[0]))
    WriteObject(session, ControlJson(*control));
  else
    WriteUnknownName(session, "control", words[0], NamesOf(Screen.controls));
}

void TextQuery(DriveSession& session, Words words) {
  TextBox* box = FindTextBox(words[0]);
  if (box == nullptr) {
    WriteUnknownName(session, "text box", words[0], NamesOf(Screen.textBoxes));
    return;
  }
  Json object = Named(box->name);
  object["lines"] = LinesOf(*box);
  WriteObject(session, object);
}

// -- Tables --

struct CellAddress {
  Table* table = nullptr;
  int row = 0;
  int column = 0;
};

std::optional<CellAddress> FindCell(DriveSession& session, Words words) {
  Table* table = FindTable(words[0]);
  if (table == nullptr) {
    WriteUnknownName(session, "table", words[0], NamesOf(Screen.tables));
    return std::nullopt;
  }
  const int row = WholeNumber(words[1]).value_or(0);
  const int column = WholeNumber(words[2]).value_or(0);
  if (row < 1 || row > table->rows || column < 1 || column > table->columns) {
    WriteMisunderstood(session, FormatText("%s: no such cell; the table has %d rows and %d columns",
                                           table->name.c_str(), table->rows, table->columns));
    return std::nullopt;
  }
  return CellAddress{table, row, column};
}

/// Writes a cell: a number where the table and the cell hold numbers, else the text.
void WriteCell(DriveSession& session, const CellAddress& cell) {
  const std::string text = CellText(*cell.table, cell.row, cell.column);
  const auto number = cell.table->numeric ? ParseNumber(text) : std::nullopt;
  Json object = Named(cell.table->name);
  object["value"] = number ? NumberJson(*number) : Json(text);
  WriteObject(session, object);
}

void Cell(DriveSession& session, Words words) {
  if (const auto cell = FindCell(session, words)) WriteCell(session, *cell);
}

void EnterCellText(DriveSession& session, Words words) {
  const auto cell = FindCell(session, words);
  if (!cell) return;
  const Refusal refusal = EnterCell(*cell->table, cell->row, cell->column, words[3]);
  if (!refusal.empty()) {
    WriteRefusal(session, cell->table->name + ": " + refusal);
    return;
  }
  WriteCell(session, *cell);
}

// -- Graphs and panels --

void GraphQuery(DriveSession& session, Words words) {
  if (const Graph* graph = FindGraph(words[0]))
    WriteObject(session, GraphJson(*graph));
  else
    WriteUnknownName(session, "graph", words[0], NamesOf(Screen.graphs));
}

void PanelsQuery(DriveSession& session, Words) {
  Json object = Json::object();
  object["panels"] = Json::array();
  for (const Panel& panel : Screen.panels) {
    if (panel.visible) object["panels"].push_back(panel.name);
  }
  object["tag"] = Screen.PanelTag;
  WriteObject(session, object);
}

// clang-format off
constexpr DriveCommand Queries[] = {
    // command     words  usage                                does
    {"get",        1, 1,  "get NAME",                          Get},
    {"slice",      3, 3,  "slice NAME FIRST COUNT",            Slice},
    {"dump",       2, 3,  "dump NAME PATH [COUNT]",            Dump},
    {"control",    1, 1,  "control NAME",                      ControlQuery},
    {"text",       1, 1,  "text NAME",                         TextQuery},
    {"cell",       3, 3,  "cell TABLE ROW COLUMN",             Cell},
    {"enter-cell", 4, 4,  "enter-cell TABLE ROW COLUMN VALUE", EnterCellText},
    {"graph",      1, 1,  "graph NAME",                        GraphQuery},
    {"panels",     0, 0,  "panels",                            PanelsQuery},
};
// clang-format on

}  // namespace

std::span<const DriveCommand> QueryCommands() {
  return Queries;
}

}  // namespace zelvane
