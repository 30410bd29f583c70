#include "shell/HelpKey.h"

#include "platform/desktop/HelpTopic.h"
#include "shell/Frame.h"
#include "shell/frmHelp.h"

#include <QApplication>
#include <QKeyEvent>

HelpKey::HelpKey(Frame &frame, QObject *parent)
    : QObject(parent)
    , m_frame(frame)
{
    qApp->installEventFilter(this);
}

bool HelpKey::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress || !watched->isWidgetType()
        || !static_cast<QKeyEvent *>(event)->matches(QKeySequence::HelpContents))
        return false;
    const QString topic = HelpTopic::of(watched);
    if (topic.isEmpty())
        return false;
    // A modal dialog keeps the input from all windows but its own.
    const QString manual = QString::fromUtf16(Frame::programHelp);
    if (QWidget *dialog = QApplication::activeModalWidget())
        frmHelp::of(dialog)->showHelp(manual, topic);
    else
        m_frame.showHelp(manual, topic);
    return true;
}
