#pragma once

#include <QList>
#include <QString>

class QFileDialog;
class QWidget;

/// The open and save dialogs, with the properties, flags and filter strings of the Windows common
/// dialog control.
class CommonDialog
{
public:
    /// Bits of `Flags`.
    enum Flag {
        OverwritePrompt = 2,
        HideReadOnly = 4, ///< There is no such box here: nothing to hide.
        PathMustExist = 2048, ///< Always the case here.
        FileMustExist = 4096
    };
    /// Error number raised for a cancelled dialog when `CancelError` is true.
    static constexpr int cancelled = 32755;

    /// One entry of the dialog's list of file types.
    struct FilterEntry
    {
        QString description;
        QString patterns; ///< Separated by ";".
        friend bool operator==(const FilterEntry &, const FilterEntry &) = default;
    };
    /// The entries of a filter string "description|patterns|description|patterns...". A last
    /// description without patterns is its own pattern.
    static QList<FilterEntry> filterEntries(const QString &filter);

    explicit CommonDialog(QWidget *parent)
        : m_parent(parent)
    {
    }

    QString DialogTitle;
    QString Filter;
    QString InitDir;
    QString DefaultExt; ///< Without the dot; added to a name typed without an extension.
    /// Proposed name before, chosen path after; native separators. With `FileMustExist` a file that
    /// is missing is not proposed, but its folder is still where the dialog starts.
    QString FileName;
    int FilterIndex = 1; ///< File type that is selected at first, counted from 1.
    int Flags = 0;
    bool CancelError = false; ///< Raise an error when cancelled.

    /// Both return false when cancelled, `FileName` unchanged; with `CancelError` they throw
    /// VbError (number `cancelled`) instead.
    bool ShowOpen();
    bool ShowSave();

private:
    bool run(QFileDialog &dialog);

    QWidget *m_parent;
};
