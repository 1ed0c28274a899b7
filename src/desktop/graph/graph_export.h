// Pictures of a graph, for the clipboard and for files.
#pragma once

#include <QImage>
#include <QString>

class QCustomPlot;

namespace zelvane {

inline constexpr double PictureScale = 3.0;  // pixels of a picture per pixel on the screen

/// The graph as it shows, in its present colours.
QImage GraphImage(QCustomPlot& plot);

/// Writes a picture to a file whose ending tells the format: .png, .svg or .pdf. False, with a former file
/// untouched, when it cannot be written or the ending is another.
bool WriteGraphPicture(QCustomPlot& plot, const QString& path);

}  // namespace zelvane
