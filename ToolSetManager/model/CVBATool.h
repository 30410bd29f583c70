#pragma once

#include "model/VbBool.h"

#include <QImage>
#include <QString>

#include <memory>

/// One tool of a tool set: a program, macro, help file, text file or toolbar separator that the
/// add-in offers as a button, a list entry or a hot key. Plain data; it does not know its set.
/// The set (CVBATools) keys it by its `Description`. Strings are stored as given.
class CVBATool
{
public:
    /// The kinds of `ToolType`.
    enum Kind : qint16 {
        NoKind = -1,
        StandardExecutable = 0,
        AddInExecutable = 1,
        Macro = 2,
        HelpFile = 3,
        TextFile = 4,
        Separator = 5
    };

    /// The bits of `AccessOptions`; bits of value 32 and above carry no meaning and are kept.
    enum AccessOption : qint16 {
        InToolBarOption = 1,
        InListOption = 2,
        HotKeyOption = 4,
        EventsOption = 8,
        OutOfProcessOption = 16
    };

    /// Of a button picture as the picker makes it and files have it: pixels, both ways.
    static constexpr int pictureSide = 18;

    // --- Fields, in the order of the interface ---
    VbBool Enabled; ///< Usable at all; a disabled tool is offered nowhere.
    QString FileName; ///< The location as typed: a path or an OLE server name.
    QImage Picture; ///< Button picture; null for none.
    qint16 ToolType = StandardExecutable; ///< Kind; other values than those of `Kind` are kept.
    qint16 AccessOptions = 0; ///< Bits of `AccessOption`.
    QString Description; ///< The tool's name, and its key in the set.
    QString Hotkey; ///< Hot-key text as shown to the user.
    QString AppName16; ///< Second application name; kept and saved only.
    QString AppName32; ///< The application name behind `AppName`.
    qint32 FLAGS = 0; ///< Legacy flag word, filled by the loader; not interpreted.
    qint32 VBEvents = 0; ///< Subscribed events: event i (0..25) is the bit of value 2^i.
    QString CommandLine; ///< Arguments.
    QString HelpString; ///< Help text: a complete RTF document, or empty.
    qint16 HelpId = 0; ///< Help context number.

    // --- Derived properties: one bit of AccessOptions each, the other bits untouched ---
    bool IntoolBar() const { return (AccessOptions & InToolBarOption) != 0; }
    void setIntoolBar(bool on) { setOption(InToolBarOption, on); }
    bool InList() const { return (AccessOptions & InListOption) != 0; }
    void setInList(bool on) { setOption(InListOption, on); }
    bool UseHotKey() const { return (AccessOptions & HotKeyOption) != 0; }
    bool EnableVBEvents() const { return (AccessOptions & EventsOption) != 0; }
    bool RunOutOfProcess() const { return (AccessOptions & OutOfProcessOption) != 0; }
    void setRunOutOfProcess(bool on) { setOption(OutOfProcessOption, on); }

    /// Field by field; pictures are equal when their pixels are.
    bool operator==(const CVBATool &other) const = default;

    QString AppName() const { return AppName32; }
    void setAppName(const QString &name) { AppName32 = name; }

    /// `FileName`, or `AppName` where that is empty. Setting it stores both, so a tool whose
    /// `FileName` is emptied later still reports its last location.
    QString Location() const { return FileName.isEmpty() ? AppName32 : FileName; }
    void setLocation(const QString &location)
    {
        FileName = location;
        AppName32 = location;
    }

private:
    void setOption(AccessOption option, bool on)
    {
        AccessOptions = static_cast<qint16>(on ? AccessOptions | option : AccessOptions & ~option);
    }
};

/// The set, the tool clipboard and an open dialog hold the very same tool.
using ToolPtr = std::shared_ptr<CVBATool>;
