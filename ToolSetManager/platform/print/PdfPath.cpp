#include "platform/print/PdfPath.h"

#include "platform/desktop/CommonDialog.h"

#include <QFileInfo>
#include <QStandardPaths>

QString askForPdfPath(QWidget *parent, const QString &proposal)
{
    const QFileInfo proposed(proposal);
    CommonDialog dlg(parent);
    dlg.DialogTitle = QStringLiteral("Print to PDF File");
    dlg.Filter = QStringLiteral("PDF Files (*.pdf)|*.pdf|All Files|*.*");
    dlg.DefaultExt = QStringLiteral("pdf");
    dlg.InitDir = proposed.isAbsolute()
        ? proposed.path()
        : QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    dlg.FileName = proposed.fileName() + QStringLiteral(".pdf");
    dlg.Flags = CommonDialog::OverwritePrompt | CommonDialog::PathMustExist;
    return dlg.ShowSave() ? dlg.FileName : QString();
}
