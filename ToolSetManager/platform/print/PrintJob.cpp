#include "platform/print/PrintJob.h"

#include "platform/print/CupsQueue.h"
#include "platform/print/Printers.h"

#include <QDir>
#include <QSaveFile>
#include <QTemporaryFile>

PrintJob::PrintJob(const Printers &printers, const QString &title)
    : m_printers(printers)
    , m_title(title)
{
}

PrintJob::~PrintJob()
{
    abort();
}

bool PrintJob::start()
{
    m_errorText.clear();
    m_printer = m_printers.name();
    const auto paper = m_printers.paper();
    if (!paper)
        return fail(QStringLiteral("The printer \"%1\" is not there any more.").arg(m_printer));
    m_paper = *paper;
    m_pageSize = m_printers.pageSize();

    bool opened = false;
    if (m_printer == Printers::pdfFile()) {
        auto file = std::make_unique<QSaveFile>(m_fileName);
        file->setDirectWriteFallback(true);
        opened = file->open(QIODevice::WriteOnly);
        m_file = std::move(file);
    } else {
        auto file = std::make_unique<QTemporaryFile>(
            QDir::temp().filePath(QStringLiteral("print-XXXXXX.pdf")));
        opened = file->open();
        m_file = std::move(file);
    }
    if (!opened)
        return fail(m_file->errorString());

    m_pages = std::make_unique<PdfPages>(*m_file, m_title, m_pageSize, m_printers.orientation());
    if (!m_pages->begin())
        return fail(m_file->errorString());
    return true;
}

void PrintJob::newPage()
{
    if (m_pages)
        m_pages->newPage();
}

bool PrintJob::end()
{
    if (!m_pages)
        return false;
    m_pages.reset();
    if (auto *file = qobject_cast<QSaveFile *>(m_file.get())) {
        if (!file->commit())
            return fail(file->errorString());
    } else {
        m_file->flush();
        if (m_file->error() != QFileDevice::NoError)
            return fail(m_file->errorString());
        const QString reason = CupsQueue::submit(
            m_printer, m_file->fileName(), m_title, {{"media", m_pageSize.key().toLatin1()}});
        if (!reason.isEmpty())
            return fail(reason);
    }
    m_file.reset();
    return true;
}

void PrintJob::abort()
{
    m_pages.reset();
    if (auto *file = qobject_cast<QSaveFile *>(m_file.get()))
        file->cancelWriting();
    m_file.reset();
}

bool PrintJob::fail(const QString &text)
{
    m_errorText = text;
    abort();
    return false;
}
