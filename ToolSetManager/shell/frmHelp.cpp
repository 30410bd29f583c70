#include "shell/frmHelp.h"

#include "shell/Frame.h"

#include <QKeyEvent>
#include <QTextBrowser>
#include <QVBoxLayout>

frmHelp::frmHelp(QWidget *parent)
    : QWidget(parent, Qt::Window)
    , m_browser(new QTextBrowser(this))
{
    setObjectName(QStringLiteral("frmHelp"));
    setWindowTitle(QStringLiteral("Tool Set Manager Help"));
    m_browser->setAccessibleName(windowTitle());
    m_browser->setSearchPaths({QStringLiteral(":/help")});
    m_browser->setOpenExternalLinks(false); // the manual leads nowhere but to itself
    m_browser->document()->setDocumentMargin(16);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_browser);
    resize(880, 640); // the manual's pictures fit
}

void frmHelp::showHelp(const QString &helpFile)
{
    // No viewer for these files exists here; the manual is in their place.
    const bool addIn = helpFile == QStringView(Frame::addInHelp);
    m_browser->setSource(QUrl(addIn ? QStringLiteral("addin.md") : QStringLiteral("manual.md")));
    show();
    raise();
    activateWindow();
    m_browser->setFocus();
}

void frmHelp::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        close();
    else
        QWidget::keyPressEvent(event);
}
