#include "compare/frmVersions.h"

#include "compare/ComparedSet.h"
#include "compare/DifferenceTexts.h"
#include "model/CVBATools.h"
#include "model/ToolSetStorage.h"
#include "platform/desktop/MsgBox.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QTimer>
#include <QTreeWidget>
#include <QUrl>
#include <QVBoxLayout>

#include <algorithm>

namespace {

enum Column { When, What, Tools, Size, Differences, File, columnCount };

} // namespace

frmVersions::frmVersions(ToolSetStorage &storage, const QString &path, Now now, QWidget *parent)
    : QDialog(parent)
    , m_storage(storage)
    , m_now(std::move(now))
    , m_versions(EarlierVersions::find(storage, path))
    , lblVersions(new QLabel(this))
    , tvVersions(new QTreeWidget(this))
    , lblDetails(new QLabel(this))
    , tmrPieces(new QTimer(this))
{
    setObjectName(QStringLiteral("frmVersions"));
    setWindowTitle(QStringLiteral("Earlier Versions"));
    const bool all = path.isEmpty();
    if (m_versions.isEmpty())
        lblVersions->setText(all ? QStringLiteral("No earlier version of any tool set is kept.")
                                 : QStringLiteral("No earlier version of this tool set is kept."));
    else
        lblVersions->setText(all
                ? QStringLiteral("&Versions of all tool sets, newest first:")
                : QStringLiteral("&Versions of %1, newest first:")
                      .arg(QFileInfo(path).fileName().replace(u'&', QStringLiteral("&&"))));
    layOut(all);
    fill();
    tmrPieces->setObjectName(QStringLiteral("tmrPieces"));
    tmrPieces->setInterval(0);
    connect(tmrPieces, &QTimer::timeout, this, &frmVersions::tmrPieces_Timer);
    tvVersions_Change();
}

QPushButton *frmVersions::addButton(
    const QString &name, const QString &caption, const QString &toolTip)
{
    auto *button = new QPushButton(caption, this);
    button->setObjectName(name);
    button->setToolTip(toolTip);
    return button;
}

void frmVersions::layOut(bool all)
{
    tvVersions->setObjectName(QStringLiteral("tvVersions"));
    tvVersions->setRootIsDecorated(false);
    tvVersions->setAllColumnsShowFocus(true);
    tvVersions->setColumnCount(columnCount);
    tvVersions->setHeaderLabels(
        {QStringLiteral("When"), QStringLiteral("Kind"), QStringLiteral("Tools"),
            QStringLiteral("Size"), QStringLiteral("Difference from now"), QStringLiteral("File")});
    tvVersions->setColumnHidden(File, !all);
    lblVersions->setBuddy(tvVersions);
    lblDetails->setObjectName(QStringLiteral("lblDetails"));
    lblDetails->setTextFormat(Qt::PlainText);
    lblDetails->setWordWrap(true);
    lblDetails->setMinimumHeight(fontMetrics().lineSpacing() * 3);
    lblDetails->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    cmdCompare = addButton(QStringLiteral("cmdCompare"), QStringLiteral("&Compare"),
        QStringLiteral("Show the version beside the set as it is now"));
    cmdOpenCopy = addButton(QStringLiteral("cmdOpenCopy"), QStringLiteral("&Open as Copy"),
        QStringLiteral("Open the version in a window of its own"));
    cmdRestore = addButton(QStringLiteral("cmdRestore"), QStringLiteral("&Restore"),
        QStringLiteral("Bring the set in its window back to this version. Undo takes it back, and "
                       "nothing is saved yet"));
    cmdFolder = addButton(QStringLiteral("cmdFolder"), QStringLiteral("Open &Folder"),
        QStringLiteral("Show the file of the version in the file manager"));
    cmdClose = addButton(QStringLiteral("cmdClose"), QStringLiteral("Close"), {});
    cmdCompare->setDefault(true);
    connect(cmdCompare, &QPushButton::clicked, this, [this] { close(Compare); });
    connect(cmdOpenCopy, &QPushButton::clicked, this, [this] { close(OpenCopy); });
    connect(cmdRestore, &QPushButton::clicked, this, [this] { close(Restore); });
    connect(cmdFolder, &QPushButton::clicked, this, &frmVersions::cmdFolder_Click);
    connect(cmdClose, &QPushButton::clicked, this, &QDialog::reject);
    connect(tvVersions, &QTreeWidget::currentItemChanged, this, &frmVersions::tvVersions_Change);
    connect(tvVersions, &QTreeWidget::itemDoubleClicked, cmdCompare, &QPushButton::click);

    auto *commands = new QHBoxLayout;
    for (QPushButton *button : {cmdCompare, cmdOpenCopy, cmdRestore, cmdFolder})
        commands->addWidget(button);
    commands->addStretch(1);
    commands->addWidget(cmdClose);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(lblVersions);
    layout->addWidget(tvVersions, 1);
    layout->addWidget(lblDetails);
    layout->addLayout(commands);
    const int letter = fontMetrics().averageCharWidth();
    const int widths[] = {24, 18, 9, 12, 45, 60};
    for (int column = 0; column < columnCount; ++column)
        tvVersions->setColumnWidth(column, letter * widths[column]);
    resize(QSize(letter * (all ? 150 : 112), 400).boundedTo(screen()->availableSize() * 0.9));
}

void frmVersions::fill()
{
    for (int i = 0; i < m_versions.size(); ++i) {
        const EarlierVersion &version = m_versions[i];
        auto *item = new QTreeWidgetItem(tvVersions);
        item->setText(When, version.date());
        item->setText(What, version.kindCaption());
        item->setText(Size, DifferenceTexts::size(version.copy.size));
        item->setText(Differences, QStringLiteral("..."));
        item->setText(
            File, version.copy.original.isEmpty() ? version.copy.name : version.copy.original);
        item->setTextAlignment(Tools, Qt::AlignRight | Qt::AlignVCenter);
        item->setTextAlignment(Size, Qt::AlignRight | Qt::AlignVCenter);
        m_unread.append(i);
        m_readable.append(true);
    }
    for (const int column : {int(When), int(What)}) {
        tvVersions->resizeColumnToContents(column);
        tvVersions->setColumnWidth(
            column, tvVersions->columnWidth(column) + tvVersions->indentation());
    }
    // Each set as it is now is read once.
    std::stable_sort(m_unread.begin(), m_unread.end(),
        [this](int a, int b) { return m_versions[a].copy.original < m_versions[b].copy.original; });
    if (!m_versions.isEmpty())
        tvVersions->setCurrentItem(tvVersions->topLevelItem(0));
}

void frmVersions::paintEvent(QPaintEvent *event)
{
    QDialog::paintEvent(event);
    if (!std::exchange(m_started, true))
        tmrPieces->start();
}

void frmVersions::tmrPieces_Timer()
{
    if (m_unread.isEmpty()) {
        tmrPieces->stop();
        m_nowState.reset();
        return;
    }
    const int index = m_unread.takeFirst();
    int tools = 0;
    bool readable = false;
    const QString summary = summarise(m_versions[index], tools, readable);
    m_readable[index] = readable;
    QTreeWidgetItem *item = tvVersions->topLevelItem(index);
    item->setText(Tools, readable ? QStringLiteral("%L1").arg(tools) : QString());
    item->setText(Differences, summary);
    item->setToolTip(Differences, summary);
    if (index == selected())
        tvVersions_Change();
}

QString frmVersions::summarise(const EarlierVersion &version, int &tools, bool &readable)
{
    auto content = EarlierVersions::read(version, m_storage);
    readable = content.tools != nullptr;
    if (!readable)
        return QStringLiteral("Cannot be read: %1.").arg(content.problem);
    tools = content.tools->Count();
    const QString path = version.copy.original;
    if (path != m_nowPath || !m_nowState) {
        m_nowPath = path;
        m_nowState = path.isEmpty() ? std::nullopt : m_now(path);
    }
    QString text = QStringLiteral("the file is no longer there");
    if (m_nowState) {
        const ComparedSet then(ComparedSet::Version, {}, path, std::move(content.tools));
        text = DifferenceTexts::summary(ToolSetDiff(*m_nowState, then.state()).summary());
    }
    if (path.isEmpty())
        text = QStringLiteral("it is not known which file it is of");
    return content.problem.isEmpty() ? text : text + QStringLiteral("; ") + content.problem;
}

int frmVersions::selected() const
{
    return tvVersions->indexOfTopLevelItem(tvVersions->currentItem());
}

void frmVersions::tvVersions_Change()
{
    const int index = selected();
    const bool readable = index >= 0 && m_readable[index];
    const QString original = index < 0 ? QString() : m_versions[index].copy.original;
    const bool hasSet = !original.isEmpty() && m_now && QFileInfo::exists(original);
    cmdCompare->setEnabled(readable && hasSet);
    cmdOpenCopy->setEnabled(readable);
    cmdRestore->setEnabled(readable && hasSet);
    cmdFolder->setEnabled(QFileInfo::exists(m_storage.backups.folder()) || index >= 0);
    lblDetails->setText(index < 0
            ? QString()
            : tvVersions->currentItem()->text(Differences) + u'\n' + m_versions[index].copy.path);
}

void frmVersions::cmdFolder_Click()
{
    const int index = selected();
    const QString folder = index < 0 ? m_storage.backups.folder()
                                     : QFileInfo(m_versions[index].copy.path).absolutePath();
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(folder))) {
        MsgBox::show(this,
            QStringLiteral("There is no program that shows folders. The versions are in \"%1\".")
                .arg(QDir::toNativeSeparators(folder)),
            MsgBox::Buttons::Ok, MsgBox::Icon::Information);
    }
}

void frmVersions::close(Wish wish)
{
    m_wish = wish;
    m_chosen = selected();
    accept();
}
