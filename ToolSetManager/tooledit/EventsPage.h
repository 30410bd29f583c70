#pragma once

#include "model/VbEvents.h"

#include <QWidget>

#include <array>

class QCheckBox;
class QPushButton;
class QTabWidget;

/// The page on which a tool's events are ticked: a tab for each group, with buttons for all of it
/// and none of it.
class EventsPage : public QWidget
{
    Q_OBJECT
public:
    explicit EventsPage(QWidget *parent = nullptr);

    /// Box i is ticked when the mask has event i.
    void setEvents(qint32 mask);
    /// The mask with the ticked events and no others; the bits above the last one as in \a former.
    qint32 events(qint32 former) const;

    /// Goes to the first ticked box, or the first box of all.
    void giveFocus();

    QSize sizeHint() const override; ///< Wide enough for all tabs.

Q_SIGNALS:
    void chkEvent_Click(int Index); ///< A box has changed, by the user or by one of the buttons.

private Q_SLOTS:
    /// Other indexes than those of the groups do nothing.
    void cmdSelectAll_Click(int Index);
    void cmdSelectNone_Click(int Index);

private:
    void SetFileEvents(bool on) { setGroup(0, on); }
    void SetReferenceEvents(bool on) { setGroup(1, on); }
    void SetSelControlEvents(bool on) { setGroup(2, on); }
    void SetControlEvents(bool on) { setGroup(3, on); }
    void SetComponentEvents(bool on) { setGroup(4, on); }
    void SetProjectEvents(bool on) { setGroup(5, on); }
    void setGroup(std::size_t group, bool on);
    void setGroupByIndex(int Index, bool on);
    QWidget *groupPage(int group);

    QTabWidget *sstEvents;
    std::array<QCheckBox *, VbEvents::eventCount> chkEvent {};
    std::array<QPushButton *, VbEvents::groupCount> cmdSelectAll {};
    std::array<QPushButton *, VbEvents::groupCount> cmdSelectNone {};
};
