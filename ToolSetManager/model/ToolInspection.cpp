#include "model/ToolInspection.h"

#include "model/BmtFormat.h"
#include "model/HotKey.h"
#include "model/StorableText.h"
#include "model/ToolFields.h"
#include "model/ToolFileRecognition.h"
#include "model/ToolKinds.h"
#include "platform/rtf/RtfText.h"
#include "platform/text/VbConvert.h"

#include <algorithm>

namespace {

using Severity = ToolFinding::Severity;
using Problem = ToolFinding::Problem;

/// The names of ToolFields, for findings that one field alone is about.
constexpr char nameField[] = "name";
constexpr char enabledField[] = "enabled switch";
constexpr char locationField[] = "location";
constexpr char pictureField[] = "picture";
constexpr char kindField[] = "kind";
constexpr char hotKeyField[] = "hot key";
constexpr char flagsField[] = "flags";
constexpr char eventsField[] = "events";
constexpr char helpField[] = "help text";

class Inspection : public ToolInspection
{
public:
    Inspection(const CVBATool &tool, const ToolCheck::Rules &rules, bool oldVersion)
        : m_tool(tool)
        , m_rules(rules)
    {
        checkTexts();
        if (tool.ToolType != CVBATool::Separator)
            checkLocation();
        checkKind();
        checkAccess();
        checkPicture();
        checkNumbers(oldVersion);
    }

private:
    void add(Severity severity, Problem problem, const char *field, const QString &what,
        const QString &advice)
    {
        findings.append({severity, problem, field, what, advice});
    }

    void checkTexts()
    {
        const auto check = [this]<class Field>(const Field &field) {
            if constexpr (std::is_same_v<Field, ToolFields::Text>)
                checkText(field);
        };
        ToolFields::forEach(check);
        if (VbConvert::isNumeric(m_tool.Description)) {
            add(Severity::Warning, Problem::NumericName, nameField,
                QStringLiteral("The name reads as a number, and the tool is renamed when the file "
                               "is loaded."),
                QStringLiteral("Add a word to the name."));
        }
        if (!m_tool.HelpString.isEmpty() && !RtfText::isRtf(m_tool.HelpString)) {
            add(Severity::Hint, Problem::HelpIsNoRtf, helpField,
                QStringLiteral("The help text is not in Rich Text Format and is shown as plain "
                               "text."),
                QStringLiteral("Change it on the page \"Help\", which stores it as rich text."));
        }
    }

    void checkText(const ToolFields::Text &field)
    {
        const QString &text = m_tool.*(field.field);
        if (text.isEmpty())
            return;
        const QString problem = StorableText::problem(m_rules.codePage, text);
        if (!problem.isEmpty()) {
            add(Severity::Error, Problem::NotStorable, field.name,
                QStringLiteral("The %1 cannot be stored: %2.")
                    .arg(QLatin1StringView(field.name), problem),
                text.size() > BmtFormat::longestString
                    ? QStringLiteral("Shorten it; the set cannot be saved before.")
                    : QStringLiteral("Replace the character; the set cannot be saved before."));
        }
        if (field.trimmed && (text.front() == u' ' || text.back() == u' ')) {
            add(Severity::Warning, Problem::BlanksAtEnds, field.name,
                QStringLiteral("The blanks at the ends of the %1 are lost when the file is loaded.")
                    .arg(QLatin1StringView(field.name)),
                QStringLiteral("Remove them."));
        }
    }

    void checkLocation()
    {
        QString location = m_tool.Location().trimmed();
        if (location.size() > 1 && location.startsWith(u'"') && location.endsWith(u'"'))
            location = location.sliced(1).chopped(1);
        const bool isMacro = m_tool.ToolType == CVBATool::Macro;
        if (location.isEmpty()) {
            if (m_tool.ToolType == CVBATool::NoKind || !ToolKinds::isKnown(m_tool.ToolType))
                return;
            add(Severity::Warning, Problem::NoLocation, locationField,
                QStringLiteral("The tool has no location, so nothing can be started or shown."),
                QStringLiteral("Choose its file."));
            return;
        }
        const bool isBareName = !location.contains(u'\\') && !location.contains(u'/')
            && DosDrives::drive(location).isNull();
        if (isMacro && !isBareName && isElsewhere(location)) {
            add(Severity::Hint, Problem::MacroElsewhere, locationField,
                QStringLiteral("The macro is not in the macro folder \"%1\".")
                    .arg(m_rules.macroFolder),
                QStringLiteral("Move the file there, and use its name as the location."));
        }
        if (!m_rules.files)
            return;
        if (isMacro && isBareName && !m_rules.macroFolder.isEmpty())
            location = m_rules.macroFolder + u'/' + location;
        else if (isBareName)
            return notChecked(QStringLiteral("a name without a folder may be found anywhere"));
        const QString path = m_rules.drives.nativePath(location);
        if (path.isEmpty())
            return notChecked(whyNowhere(location));
        switch (m_rules.files->state(path)) {
        case FileLookup::State::Found:
            break;
        case FileLookup::State::Missing:
            add(Severity::Warning, Problem::FileMissing, locationField,
                QStringLiteral("The file \"%1\" does not exist.").arg(path),
                QStringLiteral("Correct the location, or put the file back."));
            break;
        case FileLookup::State::Unknown:
            notChecked(
                QStringLiteral("\"%1\" cannot be read, or did not answer in time").arg(path));
            break;
        case FileLookup::State::Pending:
            waitsFor = path;
            break;
        }
    }

    /// Outside the macro folder, which may be spelled as a path of either system.
    bool isElsewhere(const QString &location) const
    {
        const QString &folder = m_rules.macroFolder;
        const QString native = m_rules.drives.nativePath(location);
        const auto lies = [](const QString &path, const QString &in) {
            return ToolFileRecognition::locationOf(path, in) != path;
        };
        return !folder.isEmpty() && !native.isEmpty() && !lies(location, folder)
            && !lies(native, m_rules.drives.nativePath(folder));
    }

    void notChecked(const QString &why)
    {
        add(Severity::Note, Problem::FileNotChecked, locationField,
            QStringLiteral("Not checked here: %1.").arg(why),
            QStringLiteral("Check it on the computer where the tool is used."));
    }

    static QString whyNowhere(const QString &location)
    {
        const QChar drive = DosDrives::drive(location);
        if (!drive.isNull())
            return QStringLiteral("the drive %1: has no folder in the settings").arg(drive);
        if (location.startsWith(QStringLiteral("\\\\")))
            return QStringLiteral("the location is a network share");
        return QStringLiteral("the location does not start with a drive");
    }

    void checkKind()
    {
        const auto kind = ToolFileRecognition::kindOf(m_tool.Location(), m_tool.ToolType);
        if (kind && *kind != m_tool.ToolType) {
            const QString is = ToolKinds::caption(m_tool.ToolType);
            add(Severity::Warning, Problem::KindAndExtension, kindField,
                QStringLiteral("The extension \"%1\" stands for the type \"%2\", and the tool has "
                               "the type \"%3\".")
                    .arg(m_tool.Location().right(4), ToolKinds::caption(*kind),
                        is.isEmpty() ? QString::number(m_tool.ToolType) : is),
                QStringLiteral("Change the type or the location."));
        }
        if (m_tool.ToolType == CVBATool::Separator
            && (m_tool.VBEvents & BmtFormat::storedEvents) != 0) {
            add(Severity::Warning, Problem::EventsNotReceived, eventsField,
                QStringLiteral("A separator receives no events, and this one subscribes to some."),
                QStringLiteral("Clear the boxes on the page \"Events\"."));
        }
    }

    void checkAccess()
    {
        const bool shown = m_tool.IntoolBar() || m_tool.InList();
        if (m_tool.Enabled && !shown && !m_tool.UseHotKey() && !m_tool.EnableVBEvents()) {
            add(Severity::Hint, Problem::ShownNowhere, enabledField,
                QStringLiteral("The tool is enabled, and nothing offers it: neither the tool bar "
                               "nor the list, a hot key or an event."),
                QStringLiteral("Show it in the tool bar or in the list, or disable it."));
        } else if (!m_tool.Enabled && shown) {
            add(Severity::Hint, Problem::ShownNotEnabled, enabledField,
                QStringLiteral("The tool is to be shown in the %1, but is not enabled.")
                    .arg(m_tool.IntoolBar() ? u"tool bar" : u"list"),
                QStringLiteral("Enable it, or do not show it."));
        }
        if (!m_tool.UseHotKey())
            return;
        const QString key = HotKey::canonical(m_tool.Hotkey);
        if (key.isEmpty()) {
            add(Severity::Warning, Problem::NoKey, hotKeyField,
                m_tool.Hotkey.isEmpty()
                    ? QStringLiteral("The tool is to have a hot key, but none is given.")
                    : QStringLiteral("The hot key \"%1\" is no key.").arg(m_tool.Hotkey),
                QStringLiteral("Set the hot key in the add-in, as in \"Ctrl+Shift+F5\"."));
        } else if (m_tool.Enabled) {
            hotKey = key;
        }
    }

    void checkPicture()
    {
        if (m_tool.ToolType == CVBATool::Separator)
            return;
        const QString advice = QStringLiteral("Choose a tool image.");
        if (m_tool.Picture.isNull()) {
            add(Severity::Hint, Problem::NoPicture, pictureField,
                QStringLiteral("The tool has no button picture."), advice);
        } else if (isPlain(m_tool.Picture)) {
            add(Severity::Hint, Problem::PlainPicture, pictureField,
                QStringLiteral("The button picture is all of one colour."), advice);
        }
    }

    static bool isPlain(const QImage &picture)
    {
        const QRgb first = picture.pixel(0, 0);
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                if (picture.pixel(x, y) != first)
                    return false;
            }
        }
        return true;
    }

    void checkNumbers(bool oldVersion)
    {
        if ((m_tool.VBEvents & ~BmtFormat::storedEvents) != 0) {
            add(Severity::Hint, Problem::FlagsLost, eventsField,
                QStringLiteral("The event word has bits that stand for no event. They are lost "
                               "when the set is saved."),
                QStringLiteral("Keep a copy of the file if another program needs them."));
        }
        if (oldVersion && m_tool.FLAGS != 0) {
            add(Severity::Hint, Problem::FlagsLost, flagsField,
                QStringLiteral("The flags %1 come from a file of version 1. They are lost when the "
                               "set is saved, because the present version has no place for them.")
                    .arg(m_tool.FLAGS),
                QStringLiteral("Keep a copy of the file if another program needs them."));
        }
    }

    const CVBATool &m_tool;
    const ToolCheck::Rules &m_rules;
};

} // namespace

ToolInspection ToolInspection::of(
    const CVBATool &tool, const ToolCheck::Rules &rules, bool oldVersion)
{
    Inspection inspection(tool, rules, oldVersion);
    std::stable_sort(inspection.findings.begin(), inspection.findings.end(),
        [](const auto &a, const auto &b) { return a.severity > b.severity; });
    return inspection;
}
