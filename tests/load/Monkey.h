#pragma once

#include "support/Program.h"

#include <QObject>
#include <QPointer>
#include <QRandomGenerator>

class QDialog;
class QFileDialog;

/// A user without a plan: keys, clicks, menu items, drags, typing and answers at random, all of it
/// through the real windows of the program, dialogs and their dialogs included. Before each action
/// what must hold of the windows is looked at.
class Monkey : public QObject
{
    Q_OBJECT
public:
    /// Files are opened, saved and printed in \a folder.
    Monkey(Program &program, const QString &folder, QRandomGenerator &random);

    /// Acts until that many steps are done, the frame is closed, or something does not hold.
    /// Returns the steps that are left.
    int run(int steps);
    /// What did not hold; empty when all did.
    QString fault() const { return m_fault; }
    /// The last actions, oldest first.
    QStringList trace() const { return m_trace; }

private:
    /// What is remembered of a window between two looks at it.
    struct Known
    {
        QPointer<frmToolSet> window;
        QByteArray clean; ///< Digest when it was last not dirty.
        bool dirty = false;
        bool excused = false; ///< Renamed in place, or not saved: changed all the same.
    };

    void tick();
    void act();
    bool actInList(frmToolSet *window);
    void actOnFrame();
    void actIn(QWidget *form);
    void answer(QDialog *dialog);
    void answerFile(QFileDialog *dialog);
    void choose(QWidget *popup);
    void drag(QWidget *from);
    void moveDrag();
    void undo(frmToolSet *window);
    void find(frmToolSet *window);
    void rename(ListView *list);
    void edit(QWidget *text);
    void key(
        QWidget *target, std::initializer_list<int> keys, Qt::KeyboardModifiers modifiers = {});

    void watchUndo(frmToolSet *window);
    void check();
    void check(frmToolSet *window);
    void checkCommands();
    void excuse(frmToolSet *window);
    void require(bool holds, const QString &what);

    int random(int below) { return static_cast<int>(m_random.bounded(below)); }
    bool one(int of) { return random(of) == 0; }
    template <class List>
    auto any(const List &list)
    {
        return list[random(static_cast<int>(list.size()))];
    }
    QString text();
    void tell(const QString &action);
    bool settled() const;
    QAbstractItemView *viewOf(frmToolSet *window) const
    {
        return Program::listOf(window)->currentView();
    }

    Program &m_program;
    const QString m_folder;
    QRandomGenerator &m_random;
    QList<Known> m_known;
    QPointer<QWindow> m_dragged; ///< Where a drag has the mouse; null when there is none.
    QString m_fault;
    QStringList m_trace;
    int m_left = 0;
    int m_typed = 0;
};
