#pragma once

#include <QSplitter>

class Comparison;
class FieldsModel;
class HelpComparison;
class QTreeView;

/// One row of a comparison in full: its fields side by side and its help texts below them.
class RowDetails : public QSplitter
{
    Q_OBJECT
public:
    /// The comparison is borrowed; the code page is that of rich texts that do not tell theirs.
    RowDetails(const Comparison &comparison, int codePage, QWidget *parent = nullptr);

    /// By its index in Comparison::rows(), -1 for none. The first field that differs is selected.
    void setRow(int row);

    bool fieldsHaveFocus() const;
    void focusFields();
    QList<int> selectedFields() const; ///< Of those that differ, as Comparison::Row counts them.

private:
    const Comparison &m_comparison;
    FieldsModel *m_fields;
    QTreeView *tvFields;
    HelpComparison *m_help;
};
