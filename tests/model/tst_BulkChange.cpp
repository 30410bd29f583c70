#include "model/BulkChange.h"
#include "model/ToolSetDocument.h"
#include "model/ToolSetStorage.h"
#include "support/Rows.h"
#include "support/SetDump.h"
#include "support/TestRunner.h"

#include <QTemporaryDir>

#include <numeric>

using Field = BulkChange::Field;
using Search = BulkChange::Search;
using Switch = BulkChange::Switch;

class BulkChange_test : public QObject
{
    Q_OBJECT

    QList<BulkChange::Row> preview(const BulkChange &change, ToolSetDocument &document) const
    {
        QList<int> all(document.count());
        std::iota(all.begin(), all.end(), 1);
        return change.preview(document, all, m_storage.codePage);
    }

    static void append(ToolSetDocument &document, const QStringList &names)
    {
        for (const QString &name : names) {
            auto tool = std::make_shared<CVBATool>();
            tool->Description = name;
            tool->setLocation(u"C:\\Tools\\"_qs + name);
            document.append({tool});
        }
        document.saved();
    }

private Q_SLOTS:
    void replacing_data()
    {
        // In a location, or, where the row's name says so, in the command line.
        rows<Search, QString, QString, QString, QString>({
            {"folder, any case and separator", Search::Folder, u"C:\\Tools"_qs, u"D:\\New"_qs,
                u"c:/tools/a.exe"_qs, u"D:\\New\\a.exe"_qs},
            {"not in the middle of a name", Search::Folder, u"C:\\Tool"_qs, u"D:"_qs,
                u"C:\\Tools\\a"_qs, u"C:\\Tools\\a"_qs},
            {"separators at the ends", Search::Folder, u"C:\\Tools\\"_qs, u"D:\\"_qs,
                u"C:\\Tools\\a"_qs, u"D:\\a"_qs},
            {"to this system", Search::Folder, u"C:\\Tools"_qs, u"/opt"_qs, u"C:\\Tools\\s\\a"_qs,
                u"/opt/s/a"_qs},
            {"letter case counts here", Search::Folder, u"/opt"_qs, u"/x"_qs, u"/Opt/a"_qs,
                u"/Opt/a"_qs},
            {"to a bare name", Search::Folder, u"C:\\Macros"_qs, {}, u"C:\\Macros\\a.bas"_qs,
                u"a.bas"_qs},
            {"the folder itself", Search::Folder, u"C:\\Tools"_qs, u"D:"_qs, u"C:\\TOOLS"_qs,
                u"D:"_qs},
            {"drive", Search::Folder, u"C:"_qs, u"D:"_qs, u"C:\\a"_qs, u"D:\\a"_qs},
            {"command line: arguments", Search::Folder, u"C:\\T"_qs, u"D:\\N"_qs,
                u"/f=C:\\T\\a \"c:\\t\\b c\" xC:\\T\\d C:\\Tx"_qs,
                u"/f=D:\\N\\a \"D:\\N\\b c\" xC:\\T\\d C:\\Tx"_qs},
            {"command line: quoted folder with a blank", Search::Folder, u"C:\\T"_qs, u"D:"_qs,
                u"\"C:\\T x\\a\" C:\\T x"_qs, u"\"C:\\T x\\a\" D: x"_qs},
            {"text, each place", Search::Text, u"AB"_qs, u"$1"_qs, u"xabAb"_qs, u"x$1$1"_qs},
            {"groups", Search::RegularExpression, u"(\\w):\\\\(\\w+)"_qs, u"$2:\\1$$\\9"_qs,
                u"c:\\dir\\x"_qs, u"dir:c$\\9\\x"_qs},
            {"empty matches", Search::RegularExpression, u"^"_qs, u"\\\\s"_qs, u"a"_qs,
                u"\\\\sa"_qs},
        });
    }
    void replacing()
    {
        const auto [search, find, with, text, expected] =
            row<Search, QString, QString, QString, QString>();
        const bool inArguments = QByteArray(QTest::currentDataTag()).startsWith("command line");
        ToolSetDocument document(m_storage);
        append(document, {u"a"_qs});
        CVBATool before = *document.toolAt(1);
        if (inArguments)
            before.CommandLine = text;
        else
            before.setLocation(text);
        document.change(document.toolAt(1), before);
        BulkChange change;
        change.replacement = {
            inArguments ? Field::CommandLine : Field::Location, search, find, with};
        BulkChange::apply(document, preview(change, document));
        const CVBATool &after = *document.toolAt(1);
        QCOMPARE(inArguments ? after.CommandLine : after.FileName, expected);
        QCOMPARE(after.AppName32, inArguments ? before.AppName32 : expected); // as the dialog
    }

    void oneStep()
    {
        ToolSetDocument document(m_storage);
        append(document, {u"a1"_qs, u"A2"_qs, u"b"_qs, u"a3"_qs});
        const QStringList before = SetDump::lines(document.Tools());
        BulkChange change;
        change.replacement = {Field::Name, Search::RegularExpression, u"a\\d"_qs, u"B"_qs};
        change.enabled = Switch::On;
        change.inList = Switch::On;
        change.addedEvents = 3;
        change.removedEvents = 1;
        auto rows = preview(change, document);
        QCOMPARE(rows.size(), 4);
        QCOMPARE(rows[1].name, u"B(2)"_qs);
        QVERIFY(rows[0].remark.contains(u"taken"_qs) && rows[2].remark.isEmpty());
        rows.removeAt(1); // unticked
        QCOMPARE(BulkChange::apply(document, rows), 3);
        QVERIFY(document.Dirty());
        QCOMPARE(document.undoText(), u"Change of 3 Tools"_qs);
        QStringList names;
        for (const ToolPtr &tool : document.toolsInOrder())
            names.append(tool->Description);
        QCOMPARE(names, (QStringList {u"B(1)"_qs, u"A2"_qs, u"b"_qs, u"B(2)"_qs}));
        const CVBATool &changed = *document.toolAt(4);
        QVERIFY(changed.Enabled && changed.AccessOptions == 2 && changed.VBEvents == 2);
        document.undo();
        QCOMPARE(SetDump::lines(document.Tools()), before);
        QVERIFY(!document.Dirty());
        document.redo();
        QCOMPARE(document.toolAt(4)->Description, u"B(2)"_qs);
        QVERIFY(document.Dirty());
    }

    void separatorsAndPictures()
    {
        ToolSetDocument document(m_storage);
        append(document, {u"a"_qs, u"b"_qs});
        BulkChange change;
        change.takePicture = [](const CVBATool &tool) {
            QImage picture(18, 18, QImage::Format_RGB32);
            picture.fill(Qt::red);
            return tool.Location().endsWith(u'a') ? picture : QImage();
        };
        QCOMPARE(BulkChange::apply(document, preview(change, document)), 1);
        change.kind = CVBATool::Separator;
        QCOMPARE(BulkChange::apply(document, preview(change, document)), 2);
        QVERIFY(preview(change, document).isEmpty()); // they are separators already
        const CVBATool &second = *document.toolAt(2);
        QCOMPARE(second.Description, u"Separator(1)"_qs);
        QCOMPARE(second.Location(), QString());
        QCOMPARE(second.Picture, document.toolAt(1)->Picture);
        QCOMPARE(second.Picture.pixelColor(9, 9), QColor(192, 192, 192));
    }

    void whatCannotBeStored_data()
    {
        rows<QString, QString>({
            {"character", u"\u0416"_qs, u"The name cannot be stored: the code page 1252"_qs},
            {"length", QString(65536, u'x'), u"The name cannot be stored: it has"_qs},
            {"blank, only lost", u"x "_qs, u"The blanks at the ends of the name"_qs},
            {"no name", {}, u"\"\" cannot be a name."_qs},
        });
    }
    void whatCannotBeStored()
    {
        const auto [name, remark] = row<QString, QString>();
        ToolSetDocument document(m_storage);
        append(document, {u"a"_qs});
        BulkChange change;
        change.replacement = {Field::Name, Search::Text, u"a"_qs, name};
        const auto rows = preview(change, document);
        QVERIFY2(rows.constFirst().remark.startsWith(remark), qPrintable(rows.constFirst().remark));
        QCOMPARE(BulkChange::apply(document, rows), remark.contains(u"stored"_qs) ? 0 : 1);
        change.replacement.search = Search::RegularExpression;
        change.replacement.find = u"("_qs;
        QVERIFY(!change.error().isEmpty() && preview(change, document).isEmpty());
    }

private:
    QTemporaryDir m_folder;
    ToolSetStorage m_storage {1252, m_folder.path(), m_folder.path()};
};

TSM_TEST(BulkChange_test);
#include "tst_BulkChange.moc"
