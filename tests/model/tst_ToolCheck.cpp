#include "model/HotKey.h"
#include "model/ToolCheck.h"
#include "model/ToolSetDocument.h"
#include "model/ToolSetStorage.h"
#include "support/Rows.h"
#include "support/TestRunner.h"

#include <QRandomGenerator>
#include <QTemporaryDir>

namespace {

using Problem = ToolFinding::Problem;
using State = FileLookup::State;
using Change = std::function<void(CVBATool &)>;

class FakeFiles : public FileLookup
{
public:
    State state(const QString &path) override { return states.value(path, State::Missing); }
    QHash<QString, State> states {
        {u"/c/tools/a.exe"_qs, State::Found}, {u"/macros/m.bas"_qs, State::Found}};
};

/// A tool about which there is nothing to say.
ToolPtr flawless()
{
    auto tool = std::make_shared<CVBATool>();
    tool->Description = u"Tool"_qs;
    tool->Enabled = true;
    tool->setLocation(u"c:\\tools\\a.exe"_qs);
    tool->setIntoolBar(true);
    tool->Picture = QImage(2, 2, QImage::Format_RGB32);
    tool->Picture.fill(Qt::white);
    tool->Picture.setPixel(1, 1, 0);
    return tool;
}

void useKey(CVBATool &tool, const QString &key)
{
    tool.AccessOptions |= CVBATool::HotKeyOption;
    tool.Hotkey = key;
}

QStringList texts(const ToolCheck &check)
{
    QStringList all;
    for (const auto &[tool, position, finding] : check.allFindings())
        all.append(u"%1 %2 %3"_qs.arg(position).arg(
            QLatin1StringView(finding.field), finding.what.section(u'"', 0, 0)));
    return all;
}

} // namespace

class ToolCheck_test : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        m_rules.drives.assign(u'C', u"/c"_qs);
        m_rules.macroFolder = u"/macros"_qs;
        m_rules.files = &m_files;
    }

    void findings_data()
    {
        const auto at = [](const char *location, qint16 kind = 0) -> Change {
            return [=](CVBATool &tool) {
                tool.setLocation(QString::fromUtf8(location));
                tool.ToolType = kind;
            };
        };
        rows<Change, QList<Problem>>({
            {"flawless", [](CVBATool &) {}, {}},
            {"missing", at("C:\\b.exe"), {Problem::FileMissing}},
            {"missing here", at("/b.exe"), {Problem::FileMissing}},
            {"quoted", at("\"C:/tools/a.exe\""), {}},
            {"drive without a folder", at("D:\\b.exe"), {Problem::FileNotChecked}},
            {"path of a drive's own folder", at("C:b.exe"), {Problem::FileNotChecked}},
            {"share", at("\\\\server\\b.exe"), {Problem::FileNotChecked}},
            {"server name", at("Excel.Sheet", 1), {Problem::FileNotChecked}},
            {"library as a standard program", at("C:\\tools\\a.dll"),
                {Problem::FileMissing, Problem::KindAndExtension}},
            {"program of the add-in", at("c:\\tools\\a.exe", 1), {}},
            {"macro by its name", at("m.bas", 2), {}},
            {"macro by its path", at("/macros/m.bas", 2), {}},
            {"macro elsewhere", at("c:\\n.bas", 2),
                {Problem::FileMissing, Problem::MacroElsewhere}},
            {"no location", at("", 3), {Problem::NoLocation}},
            {"no kind, no location", at("", -1), {}},
            {"separator",
                [](CVBATool &tool) {
                    tool = {};
                    tool.ToolType = 5;
                },
                {}},
            {"separator with events",
                [](CVBATool &tool) {
                    tool = {};
                    tool.ToolType = 5;
                    tool.VBEvents = 1;
                },
                {Problem::EventsNotReceived}},
            {"shown nowhere", [](CVBATool &tool) { tool.AccessOptions = 16; },
                {Problem::ShownNowhere}},
            {"reached by events", [](CVBATool &tool) { tool.AccessOptions = 8; }, {}},
            {"shown, not enabled", [](CVBATool &tool) { tool.Enabled = false; },
                {Problem::ShownNotEnabled}},
            {"no key", [](CVBATool &tool) { useKey(tool, u"Ctrl+Foo"_qs); }, {Problem::NoKey}},
            {"key", [](CVBATool &tool) { useKey(tool, u"^{F5}"_qs); }, {}},
            {"number", [](CVBATool &tool) { tool.Description = u"1e3"_qs; },
                {Problem::NumericName}},
            {"blanks", [](CVBATool &tool) { tool.CommandLine = u"/a "_qs; },
                {Problem::BlanksAtEnds}},
            {"character", [](CVBATool &tool) { tool.AppName16 = u"\u0416"_qs; },
                {Problem::NotStorable}},
            {"long plain help, blank at its end",
                [](CVBATool &tool) { tool.HelpString = QString(65536, u' '); },
                {Problem::NotStorable, Problem::HelpIsNoRtf}},
            {"no picture", [](CVBATool &tool) { tool.Picture = {}; }, {Problem::NoPicture}},
            {"one colour", [](CVBATool &tool) { tool.Picture.fill(Qt::red); },
                {Problem::PlainPicture}},
            {"bits above the events", [](CVBATool &tool) { tool.VBEvents = 1 << 26; },
                {Problem::FlagsLost}},
        });
    }
    void findings()
    {
        const auto [change, expected] = row<Change, QList<Problem>>();
        const ToolPtr tool = flawless();
        ToolSetDocument document(m_storage);
        document.append({tool});
        change(*tool); // also to what the document would not take
        ToolCheck check(document, m_rules);
        check.finish();
        QList<Problem> found;
        for (const ToolFinding &finding : check.findings(1))
            found.append(finding.problem);
        QCOMPARE(found, expected);
    }

    void keys_data()
    {
        rows<QString, QString>({
            {"words", u"ctrl + SHIFT-f5"_qs, u"Ctrl+Shift+F5"_qs},
            {"signs", u"+^a"_qs, u"Ctrl+Shift+A"_qs},
            {"blanks between", u"Alt Page Down"_qs, u"Alt+PageDown"_qs},
            {"the plus key", u"Ctrl++"_qs, u"Ctrl++"_qs},
            {"braces", u"%{INSERT}"_qs, u"Alt+Insert"_qs},
            {"a name that starts as a modifier", u"Altitude"_qs, {}},
            {"no key", u"Ctrl+"_qs, {}},
            {"F25", u"F25"_qs, {}},
        });
    }
    void keys()
    {
        const auto [text, expected] = row<QString, QString>();
        QCOMPARE(HotKey::canonical(text), expected);
    }

    /// Edits and late answers give what a new check would give.
    void followsTheDocument()
    {
        QRandomGenerator random(11);
        ToolSetDocument document(m_storage);
        ToolCheck check(document, m_rules);
        check.start();
        const QStringList keys {u"Ctrl+A"_qs, u"^a"_qs, u"F5"_qs, {}};
        for (int i = 0; i < 300; ++i) {
            const int any = random.bounded(document.count() + 1);
            CVBATool other = *flawless();
            useKey(other, keys[random.bounded(4)]);
            other.Enabled = random.bounded(4) > 0;
            if (random.bounded(3) == 0)
                other.setLocation(u"/f%1.exe"_qs.arg(random.bounded(9)));
            const QString file = u"/f%1.exe"_qs.arg(random.bounded(9));
            switch (any == 0 ? 0 : random.bounded(5)) {
            case 0:
                document.append({std::make_shared<CVBATool>(other)});
                break;
            case 1:
                document.remove({any});
                break;
            case 2:
                document.move({any}, random.bounded(document.count()) + 1);
                break;
            case 3:
                document.undo();
                break;
            default:
                document.change(document.toolAt(any), other);
                break;
            }
            m_files.states[file] = i % 2 ? State::Found : State::Pending;
            check.finish();
            Q_EMIT m_files.answered();
            ToolCheck fresh(document, m_rules);
            fresh.finish();
            if (i % 10 == 9) { // states of files are looked up anew by a new start only
                check.start();
                check.finish();
                QCOMPARE(texts(check), texts(fresh));
                QCOMPARE(check.isComplete(), fresh.isComplete());
            }
            const auto keysOf = [](const ToolCheck &of) { return texts(of).filter(u"hot key"_qs); };
            QCOMPARE(keysOf(check), keysOf(fresh));
        }
    }

private:
    QTemporaryDir m_folder;
    ToolSetStorage m_storage {1252, m_folder.path(), m_folder.path()};
    FakeFiles m_files;
    ToolCheck::Rules m_rules;
};

TSM_TEST(ToolCheck_test);
#include "tst_ToolCheck.moc"
