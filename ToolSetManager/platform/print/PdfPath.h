#pragma once

#include <QString>

class QWidget;

/// Asks where the printer "PDF File" shall write to; empty when the user cancels. \a proposal is a
/// path without an extension.
QString askForPdfPath(QWidget *parent, const QString &proposal);
