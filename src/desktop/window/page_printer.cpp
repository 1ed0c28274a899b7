#include "desktop/window/page_printer.h"

#include <qcustomplot.h>

#include <QFileInfo>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QWidget>
#include <algorithm>

#include "desktop/window/theme.h"

namespace zelvane {
namespace {

/// Paints a page as large as it fits. Returns false when the printer does not accept it.
bool PaintOnPaper(QWidget& page, QPrinter& printer) {
  printer.setPageOrientation(page.width() > page.height() ? QPageLayout::Landscape : QPageLayout::Portrait);
  QPainter painter;
  if (!painter.begin(&printer)) return false;
  const QRectF paper = printer.pageRect(QPrinter::DevicePixel);
  const double scale = std::min(paper.width() / page.width(), paper.height() / page.height());
  painter.scale(scale, scale);
  const OnPaper inks;
  for (QCustomPlot* plot : page.findChildren<QCustomPlot*>()) plot->replot(QCustomPlot::rpImmediateRefresh);
  page.render(&painter, {}, {}, QWidget::DrawWindowBackground | QWidget::DrawChildren);
  return painter.end();
}

}  // namespace

void PrintPage(QWidget& page) {
  QPrinter printer(QPrinter::HighResolution);
  QPrintDialog dialog(&printer, page.window());
  if (dialog.exec() == QDialog::Accepted) PaintOnPaper(page, printer);
}

bool WritePagePdf(QWidget& page, const QString& path) {
  QPrinter printer(QPrinter::HighResolution);
  printer.setOutputFormat(QPrinter::PdfFormat);
  printer.setOutputFileName(path);
  return PaintOnPaper(page, printer) && QFileInfo(path).size() > 0;
}

}  // namespace zelvane
