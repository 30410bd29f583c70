#include "platform/desktop/FileListBox.h"

#include <QDir>
#include <QKeyEvent>
#include <QStringListModel>

FileListBox::FileListBox(QWidget *parent)
    : QListView(parent)
    , m_model(new QStringListModel(this))
{
    setModel(m_model);
    setUniformItemSizes(true);
    setSpacing(1);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    connect(this, &QAbstractItemView::doubleClicked, this, &FileListBox::DblClick);
}

void FileListBox::setPath(const QString &path)
{
    m_path = path;
    Refresh();
}

void FileListBox::setPattern(const QString &pattern)
{
    m_pattern = pattern;
    Refresh();
}

void FileListBox::Refresh()
{
    QStringList patterns;
    const QStringList parts = m_pattern.split(u';');
    for (const QString &part : parts) {
        const QString trimmed = part.trimmed();
        patterns.append(trimmed == QStringLiteral("*.*") ? QStringLiteral("*") : trimmed);
    }
    m_model->setStringList(QDir(m_path).entryList(
        patterns, QDir::Files, QDir::Name | QDir::IgnoreCase | QDir::LocaleAware));
}

QString FileListBox::FileName() const
{
    const QModelIndex current = currentIndex();
    return selectionModel()->isSelected(current) ? current.data().toString() : QString();
}

bool FileListBox::setFileName(const QString &name)
{
    const qsizetype row = m_model->stringList().indexOf(name);
    if (row < 0) {
        clearSelection();
        return false;
    }
    setCurrentIndex(m_model->index(static_cast<int>(row)));
    scrollTo(currentIndex());
    return true;
}

void FileListBox::keyPressEvent(QKeyEvent *event)
{
    // Alt alone chooses no file: let go after a shortcut, it must not read the present one again.
    if (event->key() != Qt::Key_Alt)
        m_pressedKey = event->key();
    const bool first = event->key() == Qt::Key_Down || event->key() == Qt::Key_Home;
    if (first && FileName().isEmpty() && m_model->rowCount() > 0) {
        // The view would step over the first file, where its frame is, without choosing it.
        selectionModel()->setCurrentIndex(
            m_model->index(0, 0), QItemSelectionModel::ClearAndSelect);
        return;
    }
    QListView::keyPressEvent(event);
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        event->ignore(); // the dialog's default button
}

void FileListBox::keyReleaseEvent(QKeyEvent *event)
{
    QListView::keyReleaseEvent(event);
    // A key held down steps through many files; only the last one is looked at.
    if (event->isAutoRepeat() || event->key() != m_pressedKey)
        return;
    m_pressedKey = 0;
    Q_EMIT KeyUp(event->key());
}

void FileListBox::mouseReleaseEvent(QMouseEvent *event)
{
    QListView::mouseReleaseEvent(event);
    Q_EMIT MouseUp();
}
