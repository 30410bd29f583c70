#pragma once

#include "model/ToolCheck.h"

#include <QWidget>

class FindingsModel;
class QLabel;
class QToolButton;
class QTreeView;

/// The panel below the list of tools that shows what a check found, a row a finding. Its upper edge
/// can be dragged.
class CheckPanel : public QWidget
{
    Q_OBJECT
public:
    explicit CheckPanel(QWidget *parent);

    /// Findings by position, and what is said of them in one line.
    void setFindings(const QList<ToolCheck::Row> &findings, const QString &summary);
    const FindingsModel &model() const { return *m_model; }

    /// How much of a window of that height it takes: what the user chose, or about a third.
    int heightIn(int room) const;

Q_SIGNALS:
    void chosen(const ToolPtr &tool, const QString &field); ///< By a click or Enter.
    void printRequested();
    void previewRequested();
    void drivesRequested();
    void closeRequested();
    void heightChanged(); ///< The user has chosen another one.
    void iconsChanged();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    QToolButton *addButton(const QString &name, const QString &caption, const QString &toolTip);
    void setUpView();
    bool gripEvent(QEvent *event);
    bool keyPressed(int key);
    void choose(int row);

    FindingsModel *m_model;
    QWidget *m_grip; ///< The upper edge.
    QLabel *lblFindings;
    QTreeView *tvwFindings;
    int m_chosenHeight = 0; ///< Logical pixels; 0 for none.
    int m_gripOffset = 0; ///< From the mouse to the panel's top while it is dragged.
};
