// How the controls of each panel are laid out: sections with titles, and rows.
#pragma once

#include <QString>
#include <string>
#include <vector>

#include "screen/screen.h"

namespace zelvane {

/// One line of a form. Several controls stand side by side; the first names the line.
using FormRow = std::vector<Control*>;

struct FormSection {
  QString title;
  QString tab;  // page of a tabbed dialog; empty = no tabs
  std::vector<FormRow> rows;
  int columns = 1;  // rows run down each column in turn
  QString heads;    // words above the fields of a row, split by '|'; empty = no words
};

/// Returns the sections of a panel in their order, without its buttons. Controls that no layout names follow
/// in sections by group.
std::vector<FormSection> SectionsOf(const Panel& panel);

/// Returns only the sections that the layout of a panel names.
std::vector<FormSection> NamedSections(const Panel& panel);

/// Returns the buttons of a panel that no section names, in their order.
std::vector<Control*> ButtonsOf(const Panel& panel);

/// Returns the words of all layouts that name no control ("MainPanel NumPoint"), and names of panels that do
/// not exist. Empty once the program has started, unless a layout has a mistake.
std::vector<std::string> LayoutFaults();

}  // namespace zelvane
