#pragma once

#include <QObject>
#include <QPointer>
#include <QStringList>

class QVBoxLayout;
class QWidget;
class RecoveryBar;

/// The offer to open what an earlier run of the program could not save: the snapshots that it left
/// behind, and the bar that asks the user. Nothing waits for the answer; a snapshot that is not
/// answered stays where it is.
class RecoveryOffer : public QObject
{
    Q_OBJECT
public:
    /// The bar comes to the top of \a place, whose widget owns it.
    RecoveryOffer(QVBoxLayout *place, QObject *parent);

    /// Offers these snapshots (paths), too.
    void add(const QStringList &snapshots);

    /// Ends the offer; its snapshots are the caller's.
    QStringList take();
    /// Deletes the snapshots and ends the offer, when the user says so to a question.
    void discard(QWidget *owner);

Q_SIGNALS:
    // The user's wishes. They may come while a dialog is open, below which the bar can be clicked.
    void takeWanted();
    void discardWanted();

private:
    void hideBar();

    QVBoxLayout *m_place;
    QPointer<RecoveryBar> m_bar; ///< Null while nothing is offered.
    QStringList m_snapshots;
};
