#include "desktop/window/help_window.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QKeyEvent>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextTable>
#include <QToolBar>
#include <QUrl>
#include <QVBoxLayout>

#include "desktop/window/theme.h"
#include "screen/popups.h"

namespace zelvane {
namespace {

constexpr QSize WindowSize{760, 640};
constexpr int PageMargin = 20;
constexpr int HeadingGap = 14;
constexpr int CellPadding = 4;

/// Adds space around headings and in tables, which plain Markdown lacks.
void SetOut(QTextDocument& page) {
  page.setDocumentMargin(PageMargin);
  for (QTextBlock block = page.begin(); block.isValid(); block = block.next()) {
    QTextBlockFormat format = block.blockFormat();
    if (format.headingLevel() == 0) continue;
    format.setTopMargin(HeadingGap);
    format.setBottomMargin(HeadingGap / 2);
    QTextCursor(block).setBlockFormat(format);
  }
  const QPalette palette = QApplication::palette();
  for (QTextFrame* frame : page.rootFrame()->childFrames()) {
    auto* table = qobject_cast<QTextTable*>(frame);
    if (table == nullptr) continue;
    QTextTableFormat format = table->format();
    format.setBorderCollapse(true);
    format.setBorder(1);
    format.setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
    format.setBorderBrush(palette.color(QPalette::AlternateBase).darker(IsDark() ? 60 : 110));
    format.setCellPadding(CellPadding);
    format.setCellSpacing(0);
    format.setBottomMargin(HeadingGap);
    table->setFormat(format);
  }
}

}  // namespace

HelpWindow::HelpWindow(const QString& folder) : folder_(folder), browser_(new QTextBrowser(this)) {
  setObjectName("HelpWindow");
  setWindowTitle("Zelvane help");
  resize(WindowSize);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  auto* bar = new QToolBar(this);
  QAction* back = bar->addAction("Back", browser_, &QTextBrowser::backward);
  QAction* forward = bar->addAction("Forward", browser_, &QTextBrowser::forward);
  bar->addAction("Contents", this, [this] { open(HelpContents); });
  back->setShortcut(QKeySequence::Back);
  forward->setShortcut(QKeySequence::Forward);
  back->setEnabled(false);
  forward->setEnabled(false);
  connect(browser_, &QTextBrowser::backwardAvailable, back, &QAction::setEnabled);
  connect(browser_, &QTextBrowser::forwardAvailable, forward, &QAction::setEnabled);
  connect(browser_, &QTextBrowser::sourceChanged, this, [this] { SetOut(*browser_->document()); });
  browser_->setFrameShape(QFrame::NoFrame);
  browser_->setOpenExternalLinks(true);
  layout->addWidget(bar);
  layout->addWidget(browser_);
}

bool HelpWindow::open(int topic) {
  const QString name = topic == HelpContents ? QStringLiteral("contents") : QString::number(topic);
  const QString path = QDir(folder_).filePath(name + ".md");
  if (!QFileInfo(path).isFile()) return false;
  browser_->setSource(QUrl::fromLocalFile(path));
  show();
  raise();
  activateWindow();
  return true;
}

void HelpWindow::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) browser_->reload();
}

void HelpWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape)
    close();
  else
    QWidget::keyPressEvent(event);
}

}  // namespace zelvane
