#pragma once

#include "model/BmtFormat.h"
#include "model/CVBATool.h"

#include <QBitArray>

#include <type_traits>

/// The fields of a tool, once for all: comparison, snapshots, the file's reader and writer and
/// whatever works field by field walk this list, so that a new field cannot be forgotten in one of
/// them.
namespace ToolFields {

/// A text with its place in a record of the file.
struct Text
{
    const char *name; ///< As messages call it.
    QString CVBATool::*field;
    QByteArrayView BmtFormat::Record::*stored;
    bool trimmed; ///< Blanks at both ends are removed on loading.
};

/// A number that a record stores as it is.
struct Number
{
    const char *name;
    qint16 CVBATool::*field;
    qint16 BmtFormat::Record::*stored;
};

/// A field that a record stores in a way of its own: its value depends on the file's version, or it
/// is no text and no plain number.
template <class Value>
struct Special
{
    const char *name;
    Value CVBATool::*field;
};

/// Calls \a visit with a Text, Number or Special for each field. The order is that of snapshots,
/// whose format it is.
template <class Visit>
void forEach(Visit &&visit)
{
    using Record = BmtFormat::Record;
    visit(Text {"name", &CVBATool::Description, &Record::name, true});
    visit(Special<VbBool> {"enabled switch", &CVBATool::Enabled});
    visit(Text {"location", &CVBATool::FileName, &Record::location, true});
    visit(Special<QImage> {"picture", &CVBATool::Picture});
    visit(Number {"kind", &CVBATool::ToolType, &Record::kind});
    visit(Number {"access switches", &CVBATool::AccessOptions, &Record::accessOptions});
    visit(Text {"hot key", &CVBATool::Hotkey, &Record::hotkey, true});
    visit(Text {"second application name", &CVBATool::AppName16, &Record::appName16, true});
    visit(Text {"application name", &CVBATool::AppName32, &Record::appName32, true});
    visit(Special<qint32> {"flags", &CVBATool::FLAGS});
    visit(Special<qint32> {"events", &CVBATool::VBEvents});
    visit(Text {"command line", &CVBATool::CommandLine, &Record::commandLine, true});
    visit(Text {"help text", &CVBATool::HelpString, &Record::help, false});
    visit(Number {"help context", &CVBATool::HelpId, &Record::helpId});
}

/// Calls \a onText and \a onNumber for the fields that a record stores as they are.
template <class OnText, class OnNumber>
void forEachStored(OnText &&onText, OnNumber &&onNumber)
{
    forEach([&](const auto &field) {
        using Field = std::decay_t<decltype(field)>;
        if constexpr (std::is_same_v<Field, Text>)
            onText(field);
        else if constexpr (std::is_same_v<Field, Number>)
            onNumber(field);
    });
}

constexpr int count = 14;

/// The indexes, by the order of forEach(), of the fields that differ; empty when none does.
QBitArray differing(const CVBATool &a, const CVBATool &b);
/// Whether one field is the same.
bool isSame(const CVBATool &a, const CVBATool &b, int index);
void copy(const CVBATool &from, CVBATool &to, int index);
QString nameOf(int index); ///< As messages call it.
template <class Value>
int indexOf(Value CVBATool::*member)
{
    int found = -1;
    int index = 0;
    forEach([&](const auto &field) {
        if constexpr (std::is_same_v<std::decay_t<decltype(field.field)>, Value CVBATool::*>) {
            if (field.field == member)
                found = index;
        }
        ++index;
    });
    return found;
}

/// Does not compile when a field was added to the tool and not to the list above.
inline void checkComplete(CVBATool &tool)
{
    [[maybe_unused]] auto &[f1, f2, f3, f4, f5, f6, f7, f8, f9, f10, f11, f12, f13, f14] = tool;
}

} // namespace ToolFields
