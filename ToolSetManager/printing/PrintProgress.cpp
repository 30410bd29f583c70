#include "printing/PrintProgress.h"

#include <QProgressDialog>

namespace {

constexpr int patience = 1000; ///< Milliseconds before the dialog comes up.
constexpr int refresh = 50; ///< Milliseconds between two looks at the user's input.

} // namespace

PrintProgress::PrintProgress(QWidget *parent, const QString &text, int steps)
    : m_text(text)
    , m_steps(steps)
    , m_dialog(std::make_unique<QProgressDialog>(parent))
{
    m_dialog->setObjectName(QStringLiteral("PrintProgress"));
    m_dialog->setWindowTitle(QStringLiteral("Printing"));
    m_dialog->setWindowModality(Qt::ApplicationModal);
    m_dialog->setMinimumDuration(patience);
    m_dialog->setRange(0, steps);
    m_dialog->setAutoReset(false);
    m_dialog->setMinimumWidth(360);
    m_sinceShown.start();
}

PrintProgress::~PrintProgress() = default;

bool PrintProgress::step(int done)
{
    if (m_sinceShown.elapsed() < refresh)
        return true;
    m_sinceShown.restart();
    m_dialog->setLabelText(m_text.arg(done).arg(m_steps));
    m_dialog->setValue(done); // shows itself in time, and takes the user's input then
    return !m_dialog->wasCanceled();
}
