#include "platform/desktop/MsgBox.h"
#include "printing/PrintProgress.h"
#include "printing/frmRTF.h"
#include "support/Answers.h"
#include "support/Files.h"
#include "support/Find.h"
#include "support/Program.h"
#include "support/ProgramFile.h"
#include "support/TestRunner.h"
#include "tooledit/frmFileButton.h"
#include "toolset/ToolSetMenus.h"

#include <QtWidgets>

/// Every window as those meet it who work without a mouse or without eyes. With TSM_PICTURES set
/// to a folder, it keeps a picture of each there.

namespace {

/// Captions that are given as they are, also where their letters clash.
const QStringList givenClashes {u"Tool Set &Properties...|&Paste"_qs,
    u"&Tool Properties...|Tool &Help..."_qs, u"&Apply|Select &All"_qs};

QChar mnemonic(const QString &text)
{
    for (qsizetype i = 0; i + 1 < text.size(); ++i) {
        if (text[i] != u'&')
            continue;
        if (text[i + 1] != u'&')
            return text[i + 1].toLower();
        ++i;
    }
    return {};
}

/// Texts of which two have the same letter.
QStringList clashes(const QStringList &texts)
{
    QStringList found;
    for (qsizetype i = 0; i < texts.size(); ++i) {
        for (qsizetype j = i + 1; j < texts.size(); ++j) {
            const bool given = givenClashes.contains(texts[i] + u'|' + texts[j])
                || givenClashes.contains(texts[j] + u'|' + texts[i]);
            if (!mnemonic(texts[i]).isNull() && mnemonic(texts[i]) == mnemonic(texts[j]) && !given)
                found.append(texts[i] + u" and "_qs + texts[j] + u" clash"_qs);
        }
    }
    return found;
}

QStringList textsOf(const QMenu *menu)
{
    QStringList texts;
    const auto actions = menu->actions();
    for (const QAction *action : actions) {
        if (!action->isSeparator())
            texts.append(action->text());
    }
    return texts;
}

void walk(QAccessibleInterface *node, QStringList &wrong)
{
    if (!node || node->state().invisible)
        return;
    const QAccessible::Role role = node->role();
    const bool named = !node->text(QAccessible::Name).trimmed().isEmpty();
    const bool speaks = node->state().focusable || role == QAccessible::Button
        || role == QAccessible::CheckBox || role == QAccessible::PageTab;
    // Cells say their texts, and may be empty.
    if (speaks && !named && role != QAccessible::TreeItem) {
        const QObject *object = node->object();
        wrong.append(u"no name: %1 %2"_qs.arg(
            QLatin1String(object ? object->metaObject()->className() : "-"),
            object ? object->objectName() : QString()));
    }
    const bool plain = (role == QAccessible::Client && !qobject_cast<QTabWidget *>(node->object()))
        || (role == QAccessible::StaticText && !qobject_cast<QLabel *>(node->object()));
    if (node->state().focusable && plain)
        wrong.append(u"no role: "_qs + node->text(QAccessible::Name));
    // A combo box has its text as name, and its label's as a relation.
    if (role == QAccessible::ComboBox && node->relations(QAccessible::Label).isEmpty())
        wrong.append(u"no label: "_qs + node->text(QAccessible::Name));
    for (int i = 0; i < node->childCount(); ++i)
        walk(node->child(i), wrong);
}

/// Whether the Tab key goes to the left or to the top, other than from one column to the next.
bool goesBack(const QRect &from, const QRect &to)
{
    const bool above = to.bottom() < from.top();
    const bool sameRow = to.top() <= from.bottom() && from.top() <= to.bottom();
    return (above && to.left() <= from.right()) || (sameRow && to.right() < from.left());
}

QStringList tabOrder(QWidget *window)
{
    QStringList back;
    QList<QWidget *> stops;
    for (QWidget *at = window->nextInFocusChain(); at && at != window;
         at = at->nextInFocusChain()) {
        if (at->window() == window && at->isVisibleTo(window) && at->isEnabled()
            && !at->focusProxy() && (at->focusPolicy() & Qt::TabFocus))
            stops.append(at);
    }
    for (qsizetype i = 0; i < stops.size(); ++i) {
        QWidget *from = stops[i];
        QWidget *to = stops[(i + 1) % stops.size()];
        const auto place = [&](QWidget *widget) {
            return QRect(widget->mapTo(window, QPoint(0, 0)), widget->size());
        };
        if (goesBack(place(from), place(to)))
            back.append(
                u"Tab goes back from %1 to %2"_qs.arg(from->objectName(), to->objectName()));
    }
    return back.size() > 1 ? back : QStringList(); // once round is not wrong
}

} // namespace

class Windows_test : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<Program> m_program;
    std::unique_ptr<Answers> m_answers;

    MDI *frame() const { return &m_program->frame; }
    QString path(const char *name) const { return m_folder->filePath(QLatin1String(name)); }
    void openSet()
    {
        QString file = qEnvironmentVariable("TSM_SET");
        if (file.isEmpty()) {
            file = path("set.bmt");
            QVERIFY(Sets::put(file, u"ab"_qs, m_program->storage));
        }
        Program::listOf(m_program->open(file))->setSelectedItem(0);
    }
    void run(const QString &word) { m_program->run(word); }
    /// Looks at the dialog of that name when it opens, and closes it.
    void expect(const QString &name, const QString &picture)
    {
        m_answers->dialog(name, [=, this](QDialog *dialog) {
            look(dialog, picture);
            dialog->reject();
        });
    }

    ToolSetMenus *menus() const { return m_program->window()->findChild<ToolSetMenus *>(); }
    /// All that is wrong with a window, and with the menus of its menu bar.
    void look(QWidget *window, const QString &name)
    {
        QVERIFY(QTest::qWaitForWindowExposed(window));
        QCoreApplication::processEvents();
        const QString folder = qEnvironmentVariable("TSM_PICTURES");
        if (!folder.isEmpty())
            window->grab().save(folder + u'/' + name + u".png"_qs);

        QStringList wrong;
        walk(QAccessible::queryAccessibleInterface(window), wrong);
        wrong += tabOrder(window);
        QStringList letters;
        if (auto *main = qobject_cast<QMainWindow *>(window)) {
            const auto menus = main->menuBar()->actions();
            for (const QAction *menu : menus) {
                letters.append(menu->text());
                wrong += clashes(textsOf(menu->menu()));
            }
        }
        const auto inside = window->findChildren<QWidget *>();
        for (const QWidget *widget : inside) {
            if (!widget->isVisibleTo(window) || widget->window() != window)
                continue;
            if (const auto *label = qobject_cast<const QLabel *>(widget)) {
                if (label->buddy())
                    letters.append(label->text());
                else if (label->text().endsWith(u':'))
                    wrong.append(u"no buddy: "_qs + label->text());
            } else if (const auto *button = qobject_cast<const QAbstractButton *>(widget)) {
                letters.append(button->text());
            }
        }
        wrong += clashes(letters);
        wrong.removeDuplicates();
        QVERIFY2(wrong.isEmpty(), qPrintable(name + u'\n' + wrong.join(u'\n')));
        const QSize screen = window->screen()->availableSize();
        QVERIFY(window->minimumSizeHint().boundedTo(QSize(1024, 740)) == window->minimumSizeHint());
        QVERIFY2(
            window->width() <= screen.width() && window->height() <= screen.height(), "too large");
    }

    void tabs(QTabWidget *tabs, QWidget *window)
    {
        for (int i = 0; i < tabs->count(); ++i) {
            tabs->setCurrentIndex(i);
            auto *inner = tabs->currentWidget()->findChild<QTabWidget *>();
            if (inner)
                this->tabs(inner, window);
            else
                look(window, u"tool properties, "_qs + tabs->tabText(i));
        }
    }

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_program = std::make_unique<Program>(m_folder->path(), QStringList {Printers::pdfFile()});
        m_program->printers.choose(
            Printers::pdfFile(), QPageSize(QPageSize::A4), QPageLayout::Portrait);
        m_answers = std::make_unique<Answers>();
        frame()->activateWindow();
        QVERIFY(QTest::qWaitForWindowExposed(frame()));
    }
    void cleanup()
    {
        m_answers.reset();
        m_program.reset();
    }

    void frames()
    {
        look(frame(), u"frame without a set"_qs);
        run(u"newtoolset"_qs);
        look(frame(), u"frame with an empty set"_qs);
        openSet();
        look(frame(), u"frame in details view"_qs);
        run(u"list"_qs);
        look(frame(), u"frame in list view"_qs);
        menus()->mnuViewX[ToolSetMenus::ViewToolHelp]->trigger();
        look(child<QWidget>(frame(), "frmToolHelp"), u"tool help"_qs);
        frame()->offerRecovery({path("everyday.bmt"), path("other.bmt")});
        look(frame(), u"recovery bar"_qs);
        frame()->showHelp(QString::fromUtf16(Frame::programHelp));
        look(child<QWidget>(frame(), "frmHelp"), u"manual"_qs);
        auto *form = new frmRTF(m_program->printers, frame());
        form->show();
        look(form, u"printing a document"_qs);
        form->close();
    }

    void dialogs()
    {
        openSet();
        m_answers->dialog(u"frmToolProps"_qs, [&](QDialog *dialog) {
            tabs(child<QTabWidget>(dialog, "sstAll"), dialog);
            dialog->reject();
        });
        run(u"toolproperties"_qs);
        expect(u"frmTSProps"_qs, u"tool set properties"_qs);
        run(u"properties"_qs);
        expect(u"frmPrint"_qs, u"print preview"_qs);
        menus()->mnuFilePrintPreview->trigger();
        expect(u"PrintSetupDialog"_qs, u"print setup"_qs);
        menus()->mnuFilex[ToolSetMenus::FilePrintSetup]->trigger();
        const PrintProgress progress(frame(), u"Printing page %1 of %2"_qs, 40);
        expect(u"PrintProgress"_qs, u"print progress"_qs);
        child<QDialog>(frame(), "PrintProgress")->exec();
        expect(u"frmAbout"_qs, u"about"_qs);
        frame()->showAbout();
        expect(QString(), u"message"_qs);
        MsgBox::show(frame(), u"Save changes to C:\\everyday.bmt"_qs, MsgBox::Buttons::YesNoCancel,
            MsgBox::Icon::Question);
    }

    void picker()
    {
        const QDir folder(path("programs"));
        QVERIFY(folder.mkpath(u"inner"_qs));
        QVERIFY(Files::put(folder.filePath(u"icons.exe"_qs),
            ProgramFile::pe({{{}, 1, {ProgramFile::plain(32, qRgb(40, 90, 200))}},
                {{}, 2, {ProgramFile::plain(32, qRgb(200, 90, 40))}}})));
        frmFileButton picker(m_program->store, frame());
        picker.setFileName(path("scratch.bmp"));
        picker.setFolder(folder.path());
        picker.show();
        look(&picker, u"picker, empty"_qs);
        auto *files = child<QAbstractItemView>(&picker, "FileList");
        files->setFocus();
        QTest::keyClick(files, Qt::Key_I);
        look(&picker, u"picker"_qs);
    }

    void hints()
    {
        auto *area = frame()->findChild<QWidget *>(u"mdi"_qs);
        QVERIFY(area->accessibleDescription().contains(u"Ctrl+N"_qs));
        QVERIFY(area->hasFocus());
        run(u"newtoolset"_qs);
        QTRY_COMPARE(area->accessibleDescription(), QString());
        auto *list = frame()->findChild<ListView *>();
        QVERIFY(list->currentView()->hasFocus());
        QVERIFY(list->currentView()->accessibleDescription().contains(u"Ins"_qs));
        m_answers->dialog(u"frmToolProps"_qs, &QDialog::reject);
        run(u"newtool"_qs);
        QCOMPARE(list->currentView()->accessibleDescription(), QString());
        m_answers->message(u"*"_qs, QMessageBox::Yes);
        run(u"delete"_qs);
        QVERIFY(!list->currentView()->accessibleDescription().isEmpty());
    }

    void columnWidths()
    {
        run(u"newtoolset"_qs);
        auto *first = frame()->findChild<ListView *>();
        const int usual = first->columnWidths().at(0);
        run(u"list"_qs);
        run(u"details"_qs);
        QVERIFY(m_program->state.ColumnWidths.isEmpty()); // not by the user
        first->reportView()->header()->resizeSection(0, usual + 50);
        run(u"newtoolset"_qs);
        const auto lists = frame()->findChildren<ListView *>();
        QCOMPARE(lists.at(1)->columnWidths(), first->columnWidths());
        QCOMPARE(first->columnWidths().at(0), usual + 50);
    }
};

TSM_TEST(Windows_test);
#include "tst_Windows.moc"
