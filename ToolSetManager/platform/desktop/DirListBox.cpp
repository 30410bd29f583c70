#include "platform/desktop/DirListBox.h"

#include "platform/desktop/Icons.h"

#include <QDir>
#include <QKeyEvent>
#include <QStyledItemDelegate>

namespace {

enum Role { PathRole = Qt::UserRole, LevelRole };

/// Moves the folders of deeper levels to the right.
class LevelDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
        const QModelIndex &index) const override
    {
        QStyleOptionViewItem moved = option;
        moved.rect.setLeft(option.rect.left() + indent(option, index));
        QStyledItemDelegate::paint(painter, moved, index);
    }
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        return QStyledItemDelegate::sizeHint(option, index) + QSize(indent(option, index), 0);
    }

private:
    static int indent(const QStyleOptionViewItem &option, const QModelIndex &index)
    {
        return index.data(LevelRole).toInt() * option.fontMetrics.averageCharWidth() * 3 / 2;
    }
};

} // namespace

DirListBox::DirListBox(QWidget *parent)
    : QListWidget(parent)
{
    setItemDelegate(new LevelDelegate(this));
    // A size that the theme has for one and for two pixels for one: else it would be flat folders
    // here and coloured ones there.
    setIconSize({22, 22});
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    connect(this, &QListWidget::itemDoubleClicked, this, &DirListBox::openItem);
}

void DirListBox::setPath(const QString &path)
{
    const QFileInfo wanted(path);
    if (path.isEmpty() || !wanted.isDir() || !wanted.isReadable())
        return;
    const QDir folder(QDir::cleanPath(wanted.absoluteFilePath()));
    const QString native = QDir::toNativeSeparators(folder.path());
    if (native == m_path)
        return;
    m_path = native;

    clear();
    const auto add = [this](const QString &name, const QString &itemPath, int level, bool open) {
        auto *item = new QListWidgetItem(
            Icons::named(open ? QStringLiteral("folder-open") : QStringLiteral("folder"),
                open ? QStyle::SP_DirOpenIcon : QStyle::SP_DirIcon),
            name, this);
        item->setData(PathRole, itemPath);
        item->setData(LevelRole, level);
    };
    QStringList way; // from the open folder up to the root
    QDir up = folder;
    do
        way.prepend(up.path());
    while (up.cdUp());
    for (int level = 0; level < way.size(); ++level) {
        const QString name =
            level == 0 ? QDir::toNativeSeparators(way[level]) : QFileInfo(way[level]).fileName();
        add(name, way[level], level, true);
    }
    m_openRow = static_cast<int>(way.size()) - 1;
    const auto inside = folder.entryInfoList(
        QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name | QDir::IgnoreCase | QDir::LocaleAware);
    for (const QFileInfo &entry : inside)
        add(entry.fileName(), entry.filePath(), m_openRow + 1, false);
    highlightOpenFolder();
    scrollToItem(item(m_openRow), QAbstractItemView::PositionAtTop);
    Q_EMIT Change();
}

QString DirListBox::highlighted() const
{
    return currentItem() == nullptr ? m_path : currentItem()->data(PathRole).toString();
}

bool DirListBox::isOpenFolderHighlighted() const
{
    return currentRow() < 0 || currentRow() == m_openRow;
}

void DirListBox::highlightOpenFolder()
{
    setCurrentRow(m_openRow);
}

void DirListBox::openItem(const QListWidgetItem *item)
{
    if (item != nullptr)
        setPath(item->data(PathRole).toString());
}

void DirListBox::keyPressEvent(QKeyEvent *event)
{
    const bool opens = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (opens && !isOpenFolderHighlighted())
        openItem(currentItem());
    else if (event->key() == Qt::Key_Backspace)
        setPath(QFileInfo(m_path).path());
    else if (opens)
        event->ignore(); // the dialog's default button
    else
        QListWidget::keyPressEvent(event);
}
