#pragma once

#include "model/ToolSetStorage.h"

#include <QElapsedTimer>
#include <QString>

class QIODevice;

/// What a command works with beside its arguments: the streams, and what tool sets need around
/// their files.
class Session
{
public:
    /// Exit codes.
    enum Result {
        Success = 0,
        Findings = 1, ///< Or differences, or conflicts.
        Trouble = 2
    };

    struct Streams
    {
        QIODevice *in; ///< Each is open and borrowed.
        QIODevice *out;
        QIODevice *err;
        bool outIsTerminal = false;
        bool errIsTerminal = false;
    };

    /// Nothing is kept of files that are written over when \a dataFolder is empty.
    Session(const Streams &streams, int codePage, const QString &dataFolder);

    ToolSetStorage &storage() { return m_storage; }
    const CodePage &codePage() const { return m_storage.codePage; }
    QIODevice &in() { return *m_streams.in; }
    bool outIsTerminal() const { return m_streams.outIsTerminal; }
    bool errIsTerminal() const { return m_streams.errIsTerminal; }

    // --- Output ---
    void print(const QString &text) { print(QByteArrayView(text.toUtf8())); }
    void print(QByteArrayView bytes);
    void printLine(const QString &text) { print(text + u'\n'); }
    /// Writes what is held back. A failure is reported.
    void flush();
    enum class Colour { Red = 31, Green = 32, Yellow = 33, Bold = 1 };
    /// The text in that colour, on a terminal whose user has not forbidden colours.
    QString coloured(Colour colour, const QString &text) const;
    /// The text on one line: control characters as their pictures, bytes that the code page leaves
    /// undefined as "<0x81>".
    static QString visible(const QString &text);

    // --- Messages ---
    /// "toolset: FILE: what", with what about the file.
    void say(const QString &file, const QString &what);
    /// The same, and the program's result is Trouble.
    void error(const QString &file, const QString &what);
    bool hadTrouble() const { return m_trouble; }
    /// For progress, without a line's end.
    void printProgress(const QString &text);

private:
    Streams m_streams;
    ToolSetStorage m_storage;
    QByteArray m_pending;
    bool m_colours;
    bool m_trouble = false;
};

/// Says on a terminal how far long work is, from the first second on.
class Progress
{
public:
    Progress(Session &session, const QString &what);
    ~Progress(); ///< Removes what it said.
    void show(qint64 done, qint64 total);

private:
    Session &m_session;
    QString m_what;
    QElapsedTimer m_timer;
    qint64 m_shown = 0; ///< Milliseconds; 0 for never.
};
