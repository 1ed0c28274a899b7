// Pictures of a graph, for the clipboard and for files.
#pragma once

#include <QImage>
#include <QString>

class QCustomPlot;

namespace zelvane {

inline constexpr double PictureScale = 3.0;  // pixels of a picture per pixel on the screen

/// Returns the visible graph in its present colours.
QImage GraphImage(QCustomPlot& plot);

/// Writes a picture to a file. The ending selects the format: .png, .svg or .pdf. On failure, or for
/// another ending, keeps the old file and returns false.
bool WriteGraphPicture(QCustomPlot& plot, const QString& path);

}  // namespace zelvane
