#include "shell/RecoveryOffer.h"

#include "model/ToolSetSnapshot.h"
#include "platform/desktop/MsgBox.h"
#include "shell/RecoveryBar.h"

#include <QFile>
#include <QFileInfo>
#include <QVBoxLayout>

#include <utility>

RecoveryOffer::RecoveryOffer(QVBoxLayout *place, QObject *parent)
    : QObject(parent)
    , m_place(place)
{
}

void RecoveryOffer::add(const QStringList &snapshots)
{
    m_snapshots += snapshots;
    if (m_snapshots.isEmpty())
        return;
    QStringList titles;
    for (const QString &snapshot : std::as_const(m_snapshots)) {
        const QString title = ToolSetSnapshot::readOrigin(snapshot).title;
        titles.append(title.isEmpty() ? QFileInfo(snapshot).fileName() : title);
    }
    delete m_bar;
    m_bar = new RecoveryBar(titles);
    connect(m_bar, &RecoveryBar::recover, this, &RecoveryOffer::takeWanted);
    connect(m_bar, &RecoveryBar::discard, this, &RecoveryOffer::discardWanted);
    m_place->insertWidget(0, m_bar);
}

QStringList RecoveryOffer::take()
{
    hideBar();
    return std::exchange(m_snapshots, {});
}

void RecoveryOffer::discard(QWidget *owner)
{
    if (m_snapshots.isEmpty()
        || MsgBox::show(owner,
               QStringLiteral("Do you want to delete the changes that were not saved?"),
               MsgBox::Buttons::NoYes, MsgBox::Icon::Question)
            != MsgBox::Answer::Yes) {
        return;
    }
    const QStringList snapshots = take();
    for (const QString &snapshot : snapshots)
        QFile::remove(snapshot);
}

void RecoveryOffer::hideBar()
{
    if (!m_bar)
        return;
    m_bar->hide();
    m_bar->deleteLater();
    m_bar = nullptr;
}
