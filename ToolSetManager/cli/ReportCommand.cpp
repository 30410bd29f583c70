#include "cli/Commands.h"
#include "cli/SetFile.h"
#include "platform/print/PdfPages.h"
#include "report/ToolsetReport.h"

#include <QBuffer>
#include <QCommandLineParser>
#include <QFileInfo>

namespace {

/// Invalid when the option names none.
QPageSize sheet(const QCommandLineParser &arguments)
{
    const QString name = arguments.value(QStringLiteral("paper"));
    if (name.isEmpty())
        return PdfPages::usualSize();
    for (int id = 0; id <= QPageSize::LastPageSize; ++id) {
        const QPageSize size {QPageSize::PageSizeId(id)};
        if (size.isValid() && size.key().compare(name, Qt::CaseInsensitive) == 0)
            return size;
    }
    return {};
}

} // namespace

Session::Result Commands::report(Session &session, const QCommandLineParser &arguments)
{
    const QString path = arguments.positionalArguments().constFirst();
    const QString out = arguments.value(QStringLiteral("output"));
    const QPageSize size = sheet(arguments);
    if (out.isEmpty() || !size.isValid()) {
        session.error({},
            out.isEmpty() ? QStringLiteral("-o OUT.pdf is missing")
                          : QStringLiteral("there is no such paper"));
        return Session::Trouble;
    }
    const auto tools = SetFile::read(session, path);
    if (!tools)
        return Session::Trouble;
    const QString file = path == u"-" ? QString() : QFileInfo(path).absoluteFilePath();
    PageDocument document;
    document.StartDoc(PdfPages::paper(size));
    if (document.Error() != PageDocument::NoError) {
        session.error({}, QStringLiteral("the paper is too small"));
        return Session::Trouble;
    }
    {
        Progress progress(session, QStringLiteral("Laying out"));
        ToolsetReport::write(document, *tools, file, [&](int done) {
            progress.show(done, tools->Count());
            return true;
        });
    }
    QBuffer bytes;
    bytes.open(QIODevice::WriteOnly);
    const QString name = QFileInfo(file).completeBaseName();
    PdfPages pages(bytes,
        name.isEmpty() ? QStringLiteral("Tool Set Report")
                       : QStringLiteral("Tool Set Report - ") + name,
        size);
    Progress progress(session, QStringLiteral("Drawing"));
    pages.begin();
    pages.draw(document, [&](int page) {
        progress.show(page, document.PageCount());
        return true;
    });
    pages.end();
    return SetFile::writeBytes(session, bytes.data(), out) ? Session::Success : Session::Trouble;
}
