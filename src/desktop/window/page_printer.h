// A page of the window on paper or as PDF.
#pragma once

class QWidget;
class QString;

namespace zelvane {

/// Prints a page through the system's dialog, over the whole width of the paper.
void PrintPage(QWidget& page);

/// Replaces a file by a page as PDF. Returns false when the file cannot be written; an old file then stays.
bool WritePagePdf(QWidget& page, const QString& path);

}  // namespace zelvane
