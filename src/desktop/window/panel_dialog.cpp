#include "desktop/window/panel_dialog.h"

#include <QCloseEvent>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QTabWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <map>

#include "desktop/graph/graph_widget.h"
#include "desktop/graph/place_bar.h"
#include "desktop/widgets/control_widget.h"
#include "desktop/widgets/form_page.h"
#include "desktop/widgets/limits_grid.h"
#include "desktop/widgets/table_widget.h"
#include "desktop/widgets/text.h"
#include "desktop/widgets/text_box_widget.h"

namespace zelvane {
namespace {

constexpr int Margin = 14;
constexpr int WidestText = 460;   // pixels; longer lines are wrapped
constexpr int TallestForm = 560;  // a taller one scrolls
constexpr int TableWidth = 360;
constexpr int TableHeight = 360;
constexpr char PlacePanel[] = "ParseReadPanel";  // its graph is a bar

/// Returns the page of sections for a tab, by the tab's name.
FormPage* PageOf(std::map<QString, FormPage*>& pages, QTabWidget*& tabs, const QString& tab, QWidget* parent,
                 QVBoxLayout* layout) {
  FormPage*& page = pages[tab];
  if (page != nullptr) return page;
  page = new FormPage(parent);
  if (tab.isEmpty()) {
    layout->addWidget(page);
    return page;
  }
  if (tabs == nullptr) {
    tabs = new QTabWidget(parent);
    layout->addWidget(tabs);
  }
  auto* sheet = new QWidget(tabs);
  auto* sheetLayout = new QVBoxLayout(sheet);
  sheetLayout->addWidget(page);
  sheetLayout->addStretch();
  tabs->addTab(sheet, tab);
  return page;
}

}  // namespace

PanelDialog::PanelDialog(Panel& panel, QWidget* parent, Mode mode, const QString& text)
    : QDialog(parent), panel_(panel), mode_(mode) {
  setObjectName(ToQt(panel.name));
  setWindowTitle(ToQt(panel.title.empty() ? panel.name : panel.title));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(Margin, Margin, Margin, Margin);
  layout->setSpacing(10);
  if (!text.isEmpty()) addText(layout, text);
  addForms(layout);
  addRecords(layout);
  addButtons(layout);
  refresh({});
  // As large as its content, but not larger than the window it belongs to.
  const QSize room = parent != nullptr ? parent->window()->size() : screen()->availableSize();
  resize(sizeHint().boundedTo(room));
}

void PanelDialog::addText(QVBoxLayout* layout, const QString& text) {
  auto* label = new QLabel(text, this);
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  const int textWidth = label->fontMetrics().boundingRect({}, Qt::TextExpandTabs, text).width() + 2;
  label->setMinimumWidth(std::min(textWidth, WidestText));
  layout->addWidget(label);
}

void PanelDialog::addForms(QVBoxLayout* layout) {
  std::map<QString, FormPage*> pages;
  QTabWidget* tabs = nullptr;
  for (const FormSection& section : SectionsOf(panel_)) {
    if (LimitsGrid::holds(*section.rows.front().front())) {
      if (limits_ != nullptr) continue;
      limits_ = new LimitsGrid(panel_, this);
      layout->addWidget(limits_, 1);
      continue;
    }
    PageOf(pages, tabs, section.tab, this, layout)->addSection(section);
  }
  for (const auto& [tab, page] : pages) forms_.push_back(page);
  if (FormPage* page = pages[{}]; page != nullptr && page->sizeHint().height() > TallestForm) {
    layout->removeWidget(page);
    layout->addWidget(newScrollArea(page), 1);
  }
}

QScrollArea* PanelDialog::newScrollArea(FormPage* form) {
  auto* area = new QScrollArea(this);
  area->setFrameShape(QFrame::NoFrame);
  area->setWidgetResizable(true);
  area->setMinimumWidth(form->sizeHint().width() + area->verticalScrollBar()->sizeHint().width());
  area->setWidget(form);
  return area;
}

void PanelDialog::addRecords(QVBoxLayout* layout) {
  auto* texts = new QHBoxLayout;  // side by side
  texts->setSpacing(10);
  for (TextBox* box : panel_.textBoxes) {
    textBoxes_.push_back(new TextBoxWidget(*box, this));
    texts->addWidget(textBoxes_.back());
  }
  if (!panel_.textBoxes.empty()) layout->addLayout(texts, 1);
  for (Table* table : panel_.tables) {
    tables_.push_back(new TableWidget(*table, this));
    tables_.back()->setMinimumSize(TableWidth, TableHeight);
    layout->addWidget(tables_.back(), 1);
  }
  for (Graph* graph : panel_.graphs) {
    if (panel_.name == PlacePanel) {
      place_ = new PlaceBar(*graph, this);
      layout->addWidget(new QLabel(ToQt(graph->x.title), this));
      layout->addWidget(place_);
      continue;
    }
    graphs_.push_back(new GraphWidget(*graph, this));
    layout->addWidget(graphs_.back(), 1);
  }
}

void PanelDialog::addButtons(QVBoxLayout* layout) {
  auto* row = new QHBoxLayout;
  row->addStretch();
  for (Control* control : ButtonsOf(panel_)) {
    buttons_.push_back(new ControlWidget(*control, this));
    row->addWidget(buttons_.back());
  }
  // Enter commits a field; it must not press a button as well.
  for (QPushButton* button : findChildren<QPushButton*>()) button->setAutoDefault(false);
  if (mode_ == Modal) {
    for (ControlWidget* widget : findChildren<ControlWidget*>()) widget->setTypesOnly(true);
    auto* box = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(box, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(box, &QDialogButtonBox::rejected, this, &QDialog::reject);
    row->addWidget(box);
  }
  layout->addLayout(row);
}

void PanelDialog::refresh(const std::set<Graph*>& graphs) {
  for (FormPage* form : forms_) form->refresh();
  if (limits_ != nullptr) limits_->refresh();
  for (ControlWidget* button : buttons_) button->refresh();
  for (TextBoxWidget* box : textBoxes_) box->refresh();
  for (TableWidget* table : tables_) table->refresh();
  if (place_ != nullptr) place_->update();
  for (GraphWidget* graph : graphs_) {
    if (graphs.contains(&graph->graph())) graph->refresh();
  }
}

void PanelDialog::closeEvent(QCloseEvent* event) {
  if (mode_ == Modal) {
    QDialog::closeEvent(event);
    return;
  }
  event->ignore();  // the dialog closes when its panel does
  ClosePanel(panel_);
}

void PanelDialog::keyPressEvent(QKeyEvent* event) {
  if (mode_ == Modeless && event->key() == Qt::Key_Escape) {
    ClosePanel(panel_);
    return;
  }
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    if (mode_ == Modeless) return;  // a field has taken the key
  }
  QDialog::keyPressEvent(event);
}

void PanelDialog::contextMenuEvent(QContextMenuEvent* event) {
  if (!panel_.help.empty()) MessagePopup(HelpTitle, panel_.help);
  event->accept();
}

void PanelDialog::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  for (GraphWidget* graph : graphs_) graph->refresh();
  selectFirstField();
}

/// Selects the text of the first field, so that typing replaces it.
void PanelDialog::selectFirstField() {
  QWidget* first = nextInFocusChain();
  const auto takesKeys = [this](const QWidget* widget) {
    return (widget->focusPolicy() & Qt::TabFocus) != 0 && widget->isEnabled() && widget->isVisibleTo(this) &&
           widget->focusProxy() == nullptr;
  };
  while (first != this && !takesKeys(first)) first = first->nextInFocusChain();
  if (qobject_cast<QLineEdit*>(first) != nullptr) first->setFocus(Qt::TabFocusReason);
}

}  // namespace zelvane
