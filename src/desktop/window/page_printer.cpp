#include "desktop/window/page_printer.h"

#include <qcustomplot.h>

#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <QPdfWriter>
#include <QPrintDialog>
#include <QPrinter>
#include <QWidget>

#include "desktop/window/theme.h"
#include "platform/index.h"
#include "platform/safe_file.h"

namespace zelvane {
namespace {

constexpr int PaperDetail = 3;  // pixels of the picture for a pixel of the page

/// Returns a picture of a page with white ground. Paper itself does not cut off what scrolls out of a list.
QImage PictureOf(QWidget& page) {
  QImage picture(page.size() * PaperDetail, QImage::Format_RGB32);
  picture.setDevicePixelRatio(PaperDetail);
  picture.fill(Qt::white);
  const OnPaper inks;
  for (QCustomPlot* plot : page.findChildren<QCustomPlot*>()) plot->replot(QCustomPlot::rpImmediateRefresh);
  page.render(&picture, {}, {}, QWidget::DrawWindowBackground | QWidget::DrawChildren);
  return picture;
}

/// Paints a page as large as it fits. Returns false when the paper does not accept it.
bool PaintOnPaper(QWidget& page, QPagedPaintDevice& device, int dotsPerInch) {
  device.setPageOrientation(page.width() > page.height() ? QPageLayout::Landscape : QPageLayout::Portrait);
  QPainter painter;
  if (!painter.begin(&device)) return false;
  const QSize paper = device.pageLayout().paintRectPixels(dotsPerInch).size();
  painter.drawImage(QRect({}, page.size().scaled(paper, Qt::KeepAspectRatio)), PictureOf(page));
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
