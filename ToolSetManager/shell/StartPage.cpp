#include "shell/StartPage.h"

#include "platform/desktop/Captions.h"
#include "platform/desktop/Icons.h"
#include "shell/CFileList.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr int maxRecentFiles = 4;

QString title()
{
    return QStringLiteral("No tool set is open");
}

QString dropHint()
{
    return QStringLiteral("Or drag tool sets (.bmt) from the desktop onto this window.");
}

/// The sample set that comes with the program, installed or in its source tree; empty for none.
QString samplePath()
{
    const QDir program(QCoreApplication::applicationDirPath());
    for (const char16_t *path : {u"../../share/doc/toolsetmanager/examples/everyday.bmt",
             u"../../../samples/everyday.bmt"}) {
        const QString sample = QDir::cleanPath(program.filePath(QString::fromUtf16(path)));
        if (QFileInfo::exists(sample))
            return sample;
    }
    return {};
}

} // namespace

StartPage::StartPage(QWidget *parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("startPage"));
    setAccessibleName(title());
    auto *column = new QVBoxLayout(this);
    column->setSpacing(2);
    auto *heading = new QLabel(title(), this);
    QFont large = heading->font();
    large.setPointSizeF(large.pointSizeF() * 1.5);
    heading->setFont(large);
    column->addWidget(heading);
    column->addSpacing(heading->fontMetrics().height() / 2);

    const auto addCommand = [&](const QString &text, const QString &icon, const QString &word) {
        connect(addLink(*column, text, icon), &QPushButton::clicked, this,
            [this, word] { Q_EMIT commandChosen(word); });
    };
    addCommand(QStringLiteral("New Tool Set"), QStringLiteral("document-new"),
        QStringLiteral("newtoolset"));
    addCommand(QStringLiteral("Open Tool Set..."), QStringLiteral("document-open"),
        QStringLiteral("open"));
    const QString sample = samplePath();
    if (!sample.isEmpty()) {
        connect(addLink(*column, QStringLiteral("Open the Sample"),
                    QStringLiteral("document-open-folder")),
            &QPushButton::clicked, this, [this, sample] { Q_EMIT fileChosen(sample); });
    }
    connect(addLink(*column, QStringLiteral("Read the Manual"), QStringLiteral("help-contents")),
        &QPushButton::clicked, this, &StartPage::manualChosen);
    m_recent = new QVBoxLayout;
    m_recent->setSpacing(2);
    column->addLayout(m_recent);
    column->addSpacing(heading->fontMetrics().height() / 2);
    column->addWidget(new QLabel(dropHint(), this));
}

QString StartPage::spoken()
{
    return title() + QStringLiteral(". Ctrl+N makes a new one, Ctrl+O opens one. ") + dropHint();
}

QPushButton *StartPage::addLink(QVBoxLayout &column, const QString &text, const QString &icon)
{
    auto *link = new QPushButton(Icons::named(icon), text, this);
    link->setFlat(true);
    link->setAutoDefault(true); // Enter presses it, not Space alone
    link->setStyleSheet(QStringLiteral("text-align: left; padding: 4px 8px;"));
    column.addWidget(link, 0, Qt::AlignLeft);
    return link;
}

void StartPage::setRecentFiles(const CFileList &files)
{
    while (QLayoutItem *item = m_recent->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    int shown = 0;
    for (const QString &path : files.Items()) {
        if (++shown > maxRecentFiles)
            break;
        if (shown == 1)
            m_recent->addWidget(new QLabel(QStringLiteral("Recent tool sets:"), this));
        const int room = fontMetrics().averageCharWidth() * 60;
        QPushButton *link = addLink(*m_recent,
            Captions::forMenu(fontMetrics().elidedText(path, Qt::ElideMiddle, room)),
            QStringLiteral("document-open-recent"));
        link->setAccessibleName(path);
        link->setToolTip(QStringLiteral("<span>%1</span>").arg(path.toHtmlEscaped()));
        connect(link, &QPushButton::clicked, this, [this, path] { Q_EMIT fileChosen(path); });
    }
}
