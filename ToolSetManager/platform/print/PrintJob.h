#pragma once

#include "platform/print/PageDocument.h"
#include "platform/print/PdfPages.h"

#include <QPageSize>
#include <QString>

#include <memory>

class QFileDevice;
class Printers;

/// One print on the chosen printer. Pages are drawn into a file first and handed over whole at the
/// end, so a job that is given up prints nothing, and a file that exists is replaced only by a
/// finished one. Text stays text: it can be searched for in the printed file.
class PrintJob
{
public:
    /// \a title is what print queues and readers show. The printers are borrowed.
    PrintJob(const Printers &printers, const QString &title);
    ~PrintJob(); ///< Gives the job up unless it was ended.

    /// Where the printer "PDF File" writes to.
    void setFileName(const QString &path) { m_fileName = path; }

    /// Begins the first page. False when that fails: see errorText().
    bool start();
    const Paper &paper() const { return m_paper; }
    /// Its units are twips, its origin the corner of the paper.
    QPainter &painter() { return m_pages->painter(); } ///< Between start() and end().
    void newPage();
    /// Hands the pages over. False when the printer or the disk refuses: see errorText().
    bool end();
    void abort(); ///< Nothing is printed.

    QString errorText() const { return m_errorText; } ///< For the user; empty while all is well.

private:
    bool fail(const QString &text);

    const Printers &m_printers;
    QString m_title;
    QString m_fileName;
    QString m_printer;
    QPageSize m_pageSize;
    Paper m_paper;
    std::unique_ptr<QFileDevice> m_file;
    std::unique_ptr<PdfPages> m_pages;
    QString m_errorText;
};
