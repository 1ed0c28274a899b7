#include "desktop/window/page_printer.h"

#include <qcustomplot.h>

#include <QBuffer>
#include <QPainter>
#include <QPdfWriter>
#include <QPrintDialog>
#include <QPrinter>
#include <QWidget>
#include <algorithm>

#include "desktop/window/theme.h"
#include "platform/index.h"
#include "platform/safe_file.h"

namespace zelvane {
namespace {

/// Paints a page as large as it fits. Returns false when the paper does not accept it.
bool PaintOnPaper(QWidget& page, QPagedPaintDevice& device, int dotsPerInch) {
  device.setPageOrientation(page.width() > page.height() ? QPageLayout::Landscape : QPageLayout::Portrait);
  QPainter painter;
  if (!painter.begin(&device)) return false;
  const QRectF paper = device.pageLayout().paintRectPixels(dotsPerInch);
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
  if (dialog.exec() == QDialog::Accepted) PaintOnPaper(page, printer, printer.resolution());
}

bool WritePagePdf(QWidget& page, const QString& path) {
  QBuffer pdf;
  pdf.open(QIODevice::WriteOnly);
  QPdfWriter writer(&pdf);
  writer.setCreator(QStringLiteral("Zelvane"));
  if (!PaintOnPaper(page, writer, writer.resolution())) return false;
  const QByteArray& bytes = pdf.data();
  return !bytes.isEmpty() && ReplaceFile(path.toStdString(), {bytes.constData(), Index(bytes.size())});
}

}  // namespace zelvane
