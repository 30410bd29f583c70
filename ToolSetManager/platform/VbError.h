#pragma once

#include <QByteArray>
#include <QString>

#include <exception>

/// The one exception of the program: an error that reaches a caller, with the number, source and
/// description that the add-in's language gives such errors. Members that report failure by their
/// result do not throw; each member that does says so.
class VbError : public std::exception
{
public:
    /// Error numbers of the language's run-time library, where one of them fits.
    enum Number {
        InvalidCall = 5, ///< A key that is not in a collection.
        Overflow = 6, ///< A number outside the range of its field.
        SubscriptOutOfRange = 9, ///< A position outside 1..count.
        DeviceError = 57, ///< A write that failed.
        DuplicateKey = 457, ///< A key that the collection holds already.
        PrinterError = 482, ///< The printer, or the file in its place, refused.
        NotAToolSet = 30001 ///< The program's own: the file is something else.
    };

    VbError(int number, const QString &source, const QString &description)
        : m_number(number)
        , m_source(source)
        , m_description(description)
        , m_what(description.toUtf8())
    {
    }

    int number() const { return m_number; }
    QString source() const { return m_source; }
    QString description() const { return m_description; }
    const char *what() const noexcept override { return m_what.constData(); }

private:
    int m_number;
    QString m_source;
    QString m_description;
    QByteArray m_what;
};
