#pragma once

#include "shell/NoticeBar.h"

#include <QStringList>

/// The strip above the document windows that offers what was not saved in an earlier run of the
/// program.
class RecoveryBar : public NoticeBar
{
    Q_OBJECT
public:
    /// \a titles are the names of the documents, at least one.
    explicit RecoveryBar(const QStringList &titles, QWidget *parent = nullptr);

Q_SIGNALS:
    void recover();
    void discard();
};
