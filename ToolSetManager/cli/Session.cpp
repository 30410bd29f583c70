#include "cli/Session.h"

#include <QIODevice>

Session::Session(const Streams &streams, int codePage, const QString &dataFolder)
    : m_streams(streams)
    // No other program looks for the scratch file while this one runs.
    , m_storage(codePage, QString(), dataFolder)
    , m_colours(streams.outIsTerminal && qEnvironmentVariableIsEmpty("NO_COLOR")
          && qgetenv("TERM") != "dumb")
{
}

// --- Output ---

void Session::print(QByteArrayView bytes)
{
    constexpr qsizetype piece = 1 << 16;
    m_pending.append(bytes.data(), bytes.size());
    if (m_pending.size() >= piece)
        flush();
}

void Session::flush()
{
    qint64 written = 0;
    while (written < m_pending.size()) {
        const qint64 count =
            m_streams.out->write(m_pending.constData() + written, m_pending.size() - written);
        if (count <= 0) {
            if (!m_trouble)
                error(QStringLiteral("standard output"), m_streams.out->errorString());
            break;
        }
        written += count;
    }
    m_pending.resize(0);
}

QString Session::coloured(Colour colour, const QString &text) const
{
    return m_colours
        ? QStringLiteral("\x1b[%1m").arg(int(colour)) + text + QStringLiteral("\x1b[0m")
        : text;
}

QString Session::visible(const QString &text)
{
    constexpr char16_t pictures = 0x2400;
    constexpr char16_t pictureOfDelete = 0x2421;
    QString shown;
    shown.reserve(text.size());
    for (const QChar each : text) {
        const char16_t c = each.unicode();
        if (c < 0x20)
            shown += QChar(char16_t(pictures + c));
        else if (c == 0x7F)
            shown += QChar(pictureOfDelete);
        else if ((c >= 0x80 && c <= 0x9F) || (c >= 0xF780 && c <= 0xF7FF))
            shown += QStringLiteral("<0x%1>").arg(c & 0xFF, 2, 16, QLatin1Char('0'));
        else
            shown += each;
    }
    return shown;
}

// --- Messages ---

void Session::say(const QString &file, const QString &what)
{
    flush(); // in the order in which it happened
    const QString line = QStringLiteral("toolset: ")
        + (file.isEmpty() ? QString() : visible(file) + QStringLiteral(": ")) + what + u'\n';
    m_streams.err->write(line.toUtf8());
}

void Session::error(const QString &file, const QString &what)
{
    m_trouble = true;
    say(file, what);
}

void Session::printProgress(const QString &text)
{
    flush();
    m_streams.err->write(text.toUtf8());
}

Progress::Progress(Session &session, const QString &what)
    : m_session(session)
    , m_what(what)
{
    m_timer.start();
}

Progress::~Progress()
{
    if (m_shown > 0)
        m_session.printProgress(QStringLiteral("\r\x1b[K"));
}

void Progress::show(qint64 done, qint64 total)
{
    constexpr qint64 patience = 1000; // milliseconds
    constexpr qint64 pause = 100;
    const qint64 now = m_timer.elapsed();
    if (!m_session.errIsTerminal() || now < patience || now < m_shown + pause || total <= 0)
        return;
    m_shown = now;
    m_session.printProgress(QStringLiteral("\r\x1b[K%1 %2 %").arg(m_what).arg(100 * done / total));
}
