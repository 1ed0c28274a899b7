#include "desktop/graph/graph_export.h"

#include <qcustomplot.h>

#include <QBuffer>
#include <QPdfWriter>
#include <QSvgGenerator>

#include "platform/index.h"
#include "platform/safe_file.h"

namespace zelvane {
namespace {

constexpr double PointsPerPixel = 72.0 / 96.0;

/// Draws the plot on a device that takes lines and letters.
void DrawVectors(QCustomPlot& plot, QPaintDevice& device) {
  QCPPainter painter;
  painter.begin(&device);
  painter.setMode(QCPPainter::pmVectorized);
  painter.setMode(QCPPainter::pmNoCaching);
  painter.setMode(QCPPainter::pmNonCosmetic);
  const double scale = static_cast<double>(device.width()) / plot.width();
  painter.scale(scale, scale);
  plot.toPainter(&painter, plot.width(), plot.height());
  painter.end();
}

void WritePng(QCustomPlot& plot, QIODevice& out) {
  GraphImage(plot).save(&out, "PNG");
}

void WriteSvg(QCustomPlot& plot, QIODevice& out) {
  QSvgGenerator generator;
  generator.setOutputDevice(&out);
  generator.setSize(plot.size());
  generator.setViewBox(plot.rect());
  generator.setResolution(96);
  generator.setTitle(QStringLiteral("Zelvane"));
  DrawVectors(plot, generator);
}

void WritePdf(QCustomPlot& plot, QIODevice& out) {
  QPdfWriter writer(&out);
  writer.setCreator(QStringLiteral("Zelvane"));
  writer.setPageSize(QPageSize(QSizeF(plot.size()) * PointsPerPixel, QPageSize::Point));
  writer.setPageMargins(QMarginsF(0.0, 0.0, 0.0, 0.0));
  DrawVectors(plot, writer);
}

struct PictureFormat {
  const char* ending;
  void (*write)(QCustomPlot& plot, QIODevice& out);
};
constexpr PictureFormat Formats[] = {{".png", WritePng}, {".svg", WriteSvg}, {".pdf", WritePdf}};

}  // namespace

QImage GraphImage(QCustomPlot& plot) {
  return plot.toPixmap(plot.width(), plot.height(), PictureScale).toImage();
}

bool WriteGraphPicture(QCustomPlot& plot, const QString& path) {
  for (const PictureFormat& format : Formats) {
    if (!path.endsWith(QLatin1String(format.ending), Qt::CaseInsensitive)) continue;
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    format.write(plot, buffer);
    const QByteArray& bytes = buffer.data();
    return !bytes.isEmpty() && ReplaceFile(path.toStdString(), {bytes.constData(), Index(bytes.size())});
  }
  return false;
}

}  // namespace zelvane
