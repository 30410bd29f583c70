#include "platform/desktop/CommonDialog.h"

#include "platform/VbError.h"
#include "platform/desktop/MsgBox.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QHeaderView>
#include <QScreen>
#include <QTreeView>

namespace {

/// The form in which the toolkit wants a file type: "description (pattern pattern)".
QString toolkitFilter(const CommonDialog::FilterEntry &entry)
{
    QStringList patterns;
    const QStringList parts = entry.patterns.split(u';');
    for (const QString &part : parts) {
        // On Windows "*.*" means every file, also one without a dot.
        const QString pattern = part.trimmed();
        patterns.append(pattern == QStringLiteral("*.*") ? QStringLiteral("*") : pattern);
    }
    return entry.description + QStringLiteral(" (") + patterns.join(u' ') + u')';
}

} // namespace

QList<CommonDialog::FilterEntry> CommonDialog::filterEntries(const QString &filter)
{
    QList<FilterEntry> entries;
    if (filter.isEmpty())
        return entries;
    const QStringList parts = filter.split(u'|');
    for (qsizetype i = 0; i < parts.size(); i += 2)
        entries.append({parts[i], i + 1 < parts.size() ? parts[i + 1] : parts[i]});
    return entries;
}

bool CommonDialog::ShowOpen()
{
    QFileDialog dialog(m_parent);
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setFileMode(
        (Flags & FileMustExist) != 0 ? QFileDialog::ExistingFile : QFileDialog::AnyFile);
    return run(dialog);
}

bool CommonDialog::ShowSave()
{
    QFileDialog dialog(m_parent);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setOption(QFileDialog::DontConfirmOverwrite, (Flags & OverwritePrompt) == 0);
    dialog.setDefaultSuffix(DefaultExt);
    return run(dialog);
}

bool CommonDialog::run(QFileDialog &dialog)
{
    dialog.setWindowTitle(DialogTitle);
    dialog.setOption(QFileDialog::HideNameFilterDetails);
    QStringList filters;
    const auto entries = filterEntries(Filter);
    for (const FilterEntry &entry : entries)
        filters.append(toolkitFilter(entry));
    dialog.setNameFilters(filters);
    dialog.selectNameFilter(filters.value(FilterIndex - 1));
    if (!InitDir.isEmpty())
        dialog.setDirectory(InitDir);
    if (!FileName.isEmpty()) {
        const QFileInfo proposed(FileName);
        if (proposed.isAbsolute() && proposed.absoluteDir().exists())
            dialog.setDirectory(
                proposed.isDir() ? QDir(proposed.filePath()) : proposed.absoluteDir());
        if ((Flags & FileMustExist) == 0 || proposed.isFile())
            dialog.selectFile(proposed.fileName());
    }
    // The toolkit's own dialog cuts the dates off, even where there is room.
    const auto *list = dialog.findChild<QTreeView *>();
    for (int column = 1; list && column < list->header()->count(); ++column)
        list->header()->setSectionResizeMode(column, QHeaderView::ResizeToContents);
    dialog.resize(QSize(760, 460).boundedTo(dialog.screen()->availableSize() * 0.9));
    bool accepted = false;
    for (;;) {
        accepted = dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty();
        const QString folder =
            accepted ? QFileInfo(dialog.selectedFiles().constFirst()).path() : QString();
        if (!accepted || QFileInfo(folder).isDir())
            break;
        MsgBox::show(m_parent,
            QStringLiteral("The folder \"%1\" does not exist.")
                .arg(QDir::toNativeSeparators(folder)),
            MsgBox::Buttons::Ok, MsgBox::Icon::Exclamation);
    }
    // The desktop looks for the next active window when the dialog's question whether to replace a
    // file closes, and may find the dialog itself, which closes then.
    if (m_parent)
        m_parent->activateWindow();
    if (!accepted) {
        if (CancelError) {
            throw VbError(
                cancelled, QStringLiteral("CommonDialog"), QStringLiteral("Cancel was selected."));
        }
        return false;
    }
    FileName = QDir::toNativeSeparators(dialog.selectedFiles().constFirst());
    return true;
}
