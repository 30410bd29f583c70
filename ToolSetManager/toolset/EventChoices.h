#pragma once

#include <QTreeWidget>

/// The events in their groups, each to be added to tools, removed from them or left as it is. Space
/// and a click go from one to the next.
class EventChoices : public QTreeWidget
{
    Q_OBJECT
public:
    explicit EventChoices(QWidget *parent = nullptr);

    qint32 added() const { return mask(Qt::Checked); } ///< As CVBATool::VBEvents.
    qint32 removed() const { return mask(Qt::Unchecked); }

Q_SIGNALS:
    void changed();

private:
    qint32 mask(Qt::CheckState state) const;
    static void describe(QTreeWidgetItem *item);

    QList<QTreeWidgetItem *> m_events; ///< By event.
};
