#pragma once

#include <QWidget>

class ListView;
class QLabel;
class QLineEdit;
class QTimer;
class QToolButton;
class ToolListModel;
class ToolSetDocument;
class mTSM;

/// The field above the list of a window that narrows it to the tools that match what is typed
/// (see ToolFilter). Hidden until open(). While it is hidden, the list shows all tools.
class FindBar : public QWidget
{
    Q_OBJECT
public:
    /// What is handed in is borrowed.
    FindBar(const mTSM &state, const ToolSetDocument &document, ListView &list,
        ToolListModel &model, QWidget *parent);

    /// Shows the bar and lets the user type.
    void open();
    /// Shows all tools and hides the bar; the keyboard goes to the list if it was here.
    void close();
    /// Selects the next (or previous) match, after the last one on from the first. Where nothing is
    /// looked for it takes up the last words again, or lets the user type.
    void findNext(bool forward);

    /// True when the list is empty only because nothing matches.
    bool hidesAll() const;

Q_SIGNALS:
    void shown(bool visible); ///< There is another height to lay out.
    void countChanged(); ///< Of the tools shown, or of all.

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void changeEvent(QEvent *event) override;

private Q_SLOTS:
    void txtFind_Change();
    void tmrArrivals_Timer();

private:
    QToolButton *addButton(const QString &name, const QString &tip);
    void connectModel(const ToolSetDocument &document);
    void showBar();
    void refreshIcons();
    void showCount();
    /// Goes to the list, in which something is selected then.
    void enterList();
    void noteSelection();
    void restoreSelection();
    int topPosition() const; ///< Of the tool at the list's upper edge; 0 for none.

    const mTSM &m_state;
    const ToolSetDocument &m_document;
    ListView &m_list;
    ToolListModel &m_model;

    // --- Controls ---
    QLineEdit *txtFind;
    QToolButton *cmdFindPrior = nullptr;
    QToolButton *cmdFindNext = nullptr;
    QLabel *lblFound;
    QToolButton *cmdCloseFind = nullptr;
    QTimer *tmrArrivals; ///< From the first new match to its row, so that many come at once.

    // --- State ---
    QString m_lastWords; ///< Of a search that has ended.
    bool m_typing = false; ///< The list changes because the words do.
    // While other tools come to be shown:
    QList<int> m_selected;
    int m_focused = 0;
    int m_top = 0;
};
