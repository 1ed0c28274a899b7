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
};

/// The sections of a panel in their order. Controls that no layout names follow in sections of their own, by
/// group; buttons are left out.
std::vector<FormSection> SectionsOf(const Panel& panel);

/// Only the sections that the layout of a panel names.
std::vector<FormSection> NamedSections(const Panel& panel);

/// Buttons of a panel that no section names, in their order.
std::vector<Control*> ButtonsOf(const Panel& panel);

/// Words of all layouts that name no control ("MainPanel NumPoint"), and names of panels that do not exist. Once
/// the program has come up there is none.
std::vector<std::string> LayoutFaults();

}  // namespace zelvane
