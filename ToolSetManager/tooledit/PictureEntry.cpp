#include "tooledit/PictureEntry.h"

#include "platform/desktop/ButtonIcons.h"
#include "platform/desktop/FileDrag.h"

#include <QClipboard>
#include <QDir>
#include <QDropEvent>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QShortcut>
#include <QUrl>

PictureEntry::PictureEntry(QWidget *dialog)
    : QWidget(dialog)
    , txtPath(new QLineEdit(this))
    , cmdPaste(new QPushButton(QStringLiteral("&Paste"), this))
{
    auto *label = new QLabel(QStringLiteral("P&ath:"), this);
    label->setBuddy(txtPath);
    txtPath->setObjectName(QStringLiteral("txtPath"));
    txtPath->setAccessibleName(QStringLiteral("Path"));
    txtPath->setToolTip(QStringLiteral("Type or paste the path of a file or folder, then Enter"));
    txtPath->installEventFilter(this);
    cmdPaste->setObjectName(QStringLiteral("cmdPaste"));
    cmdPaste->setAutoDefault(false);
    cmdPaste->setToolTip(
        QStringLiteral("Take the picture, or the file, from the clipboard (%1)")
            .arg(QKeySequence(QKeySequence::Paste).toString(QKeySequence::NativeText)));
    ButtonIcons::give(*cmdPaste, QStringLiteral("edit-paste"));
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(label);
    layout->addWidget(txtPath, 1);
    layout->addWidget(cmdPaste);
    connect(cmdPaste, &QPushButton::clicked, this, &PictureEntry::cmdPaste_Click);
    // In the line itself the key pastes text.
    connect(new QShortcut(QKeySequence::Paste, dialog), &QShortcut::activated, this,
        &PictureEntry::cmdPaste_Click);
    dialog->setAcceptDrops(true);
    dialog->installEventFilter(this);
}

void PictureEntry::setPath(const QString &path)
{
    txtPath->setText(path);
}

QList<QWidget *> PictureEntry::fields() const
{
    return {txtPath, cmdPaste};
}

bool PictureEntry::enterTyped()
{
    if (!txtPath->isModified())
        return false;
    txtPath->setModified(false);
    Q_EMIT pathEntered(cleaned(txtPath->text()));
    return true;
}

QString PictureEntry::cleaned(const QString &typed)
{
    QString path = typed.trimmed();
    if (path.size() > 1 && path.front() == path.back()
        && (path.front() == u'"' || path.front() == u'\''))
        path = path.mid(1, path.size() - 2);
    if (path.startsWith(QStringLiteral("file:")))
        path = QUrl(path).toLocalFile();
    if (path == QStringLiteral("~") || path.startsWith(QStringLiteral("~/")))
        path.replace(0, 1, QDir::homePath());
    return path;
}

void PictureEntry::cmdPaste_Click()
{
    const QMimeData *held = QGuiApplication::clipboard()->mimeData();
    const QString text = held ? held->text().section(u'\n', 0, 0) : QString();
    // A copied file may come with a picture of itself; the file is the better one.
    if (held && held->hasUrls() && held->urls().constFirst().isLocalFile())
        Q_EMIT pathEntered(held->urls().constFirst().toLocalFile());
    else if (held && held->hasImage())
        Q_EMIT pictureEntered(qvariant_cast<QImage>(held->imageData()));
    else if (!text.trimmed().isEmpty())
        Q_EMIT pathEntered(cleaned(text));
    else
        Q_EMIT nothingEntered();
}

bool PictureEntry::typedReturn(const QEvent &event)
{
    if (event.type() != QEvent::KeyPress)
        return false;
    const int key = static_cast<const QKeyEvent &>(event).key();
    return key == Qt::Key_Return || key == Qt::Key_Enter;
}

bool PictureEntry::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == txtPath) {
        // Not the dialog's default button as well.
        if (!typedReturn(*event))
            return false;
        txtPath->setModified(true); // the present path, too, can be entered again
        enterTyped();
        return true;
    }
    switch (event->type()) {
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
        drag(event);
        return true;
    case QEvent::DragLeave:
        m_dragged.clear();
        return true;
    default:
        return false;
    }
}

void PictureEntry::drag(QEvent *event)
{
    auto *drag = static_cast<QDropEvent *>(event);
    if (event->type() == QEvent::DragEnter)
        m_dragged = FileDrag::paths(*drag);
    if (!m_dragged.isEmpty() || !drag->mimeData()->hasImage()) {
        FileDrag::answer(*drag, !m_dragged.isEmpty());
    } else {
        drag->setDropAction(Qt::CopyAction);
        drag->accept();
    }
    if (event->type() != QEvent::Drop)
        return;
    const QStringList files = std::exchange(m_dragged, {});
    if (!files.isEmpty())
        Q_EMIT pathEntered(files.constFirst());
    else if (drag->mimeData()->hasImage())
        Q_EMIT pictureEntered(qvariant_cast<QImage>(drag->mimeData()->imageData()));
}
