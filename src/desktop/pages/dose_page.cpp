#include "desktop/pages/dose_page.h"

#include <QHeaderView>
#include <QVBoxLayout>

#include "analysis/dose_store.h"
#include "desktop/graph/graph_widget.h"
#include "desktop/widgets/flow_row.h"
#include "desktop/widgets/form_page.h"
#include "desktop/widgets/readout_strip.h"
#include "desktop/widgets/table_widget.h"
#include "platform/index.h"

namespace zelvane {
namespace {

constexpr int CurveShare = 4;  // share of the page's height, relative to the residual's
constexpr int ResidualShare = 1;
constexpr int SideWidth = 220;     // pixels
constexpr int LeastResidual = 90;  // pixels
constexpr int TableDigits = 6;
constexpr const char* Readouts[] = {"DoseCount", "DoseResidual", "DoseEvals", "DoseCursorConc",
                                    "DoseCursorResponse"};

}  // namespace

DosePage::DosePage(Panel& panel, Settings& settings, QWidget* parent) : TaskPage(panel, settings, parent) {
  add(header(), {"DosePlot", "DoseFit", "DoseSimulate", "DoseAdd", "DoseScript"});
  header().addStretch();
  add(header(), "DoseResultWord");
  addStrip(Readouts);
  addPairs();
  const Part curve = addPart(CurveShare);
  addTitle(*curve.row, "Curve");
  curve.row->addStretch();
  add(*curve.row, {"DoseShow", "DoseErase", "DoseCursorButton"});
  addGraph(curve, GraphNamed("DoseResponsePanel"));
  const Part residual = addPart(ResidualShare);
  addFold(residual, "Residual");
  addGraph(residual, GraphNamed("DoseResponsePanel.residual")).setLeastSize({SideWidth, LeastResidual});
  finishParts();
  foot().addStretch();
  add(foot(), "DoseDone");
}

void DosePage::addPairs() {
  QVBoxLayout& side = addSide(SideWidth);
  auto* title = new FlowRow(this);
  addTitle(*title, "Doses");
  title->addStretch();
  add(*title, "DoseClear");
  side.addWidget(title);
  TableWidget& table = addTable(side, *panel().tables.front());
  table.setDigits(TableDigits);
  table.setFilled([](int row) {
    const std::size_t pair = Index(row - 1);
    return Dose.DoseConc[pair] != 0.0F || Dose.DoseResponse[pair] != 0.0F;
  });
  table.horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
}

}  // namespace zelvane
