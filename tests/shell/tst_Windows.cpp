#include "model/CVBATools.h"
#include "model/ToolSetStorage.h"
#include "platform/desktop/ListView.h"
#include "platform/desktop/MsgBox.h"
#include "platform/desktop/SettingsStore.h"
#include "platform/picture/PictureBox.h"
#include "platform/print/Printers.h"
#include "printing/PrintProgress.h"
#include "printing/frmRTF.h"
#include "shell/MDI.h"
#include "shell/Settings.h"
#include "shell/mTSM.h"
#include "support/Answers.h"
#include "support/Files.h"
#include "support/ProgramFile.h"
#include "support/TestRunner.h"
#include "tooledit/frmFileButton.h"
#include "toolset/ToolSetMenus.h"
#include "toolset/frmToolSet.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QDir>
#include <QHeaderView>
#include <QLabel>
#include <QListView>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QTreeView>

/// Every window as those meet it who work without a mouse or without eyes. With TSM_PICTURES set
/// to a folder, it keeps a picture of each there.
class Windows_test : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<ToolSetStorage> m_storage;
    std::unique_ptr<SettingsStore> m_store;
    std::unique_ptr<Settings> m_settings;
    std::unique_ptr<mTSM> m_state;
    Printers m_printers {[] { return QStringList {Printers::pdfFile()}; }};
    std::unique_ptr<MDI> m_frame;
    std::unique_ptr<Answers> m_answers;
    QString m_picture;

    QString path(const char *name) const { return m_folder->filePath(QLatin1String(name)); }
    void openSet();
    void run(const QString &word);
    void modal(const QString &name, const std::function<void(QDialog *)> &act);
    ToolSetMenus *menus() const { return m_frame->findChild<ToolSetMenus *>(); }
    /// All that is wrong with a window, and with the menus of its menu bar.
    void look(QWidget *window, const QString &page = {});
    void lookAtMenus();
    void tabs(QTabWidget *tabs, QWidget *window);

private Q_SLOTS:
    void init();
    void cleanup();
    void windows_data();
    void windows();
    void hints();
    void columnWidths();
};

namespace {

using Test = void (*)(Windows_test &);

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

void Windows_test::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_storage = std::make_unique<ToolSetStorage>(1252, path("scratch"), path("data"));
    m_store = std::make_unique<SettingsStore>(path("settings"));
    m_settings = std::make_unique<Settings>(m_folder->path());
    m_state = std::make_unique<mTSM>();
    m_printers.choose(Printers::pdfFile(), QPageSize(QPageSize::A4), QPageLayout::Portrait);
    m_answers = std::make_unique<Answers>();
    m_frame = std::make_unique<MDI>(
        *m_state, *m_settings, *m_store,
        [this](Frame &frame) -> DocumentWindow * {
            return new frmToolSet(frame, *m_state, *m_settings, *m_store, *m_storage, m_printers);
        },
        QString());
    m_frame->show();
    m_frame->activateWindow();
    QVERIFY(QTest::qWaitForWindowExposed(m_frame.get()));
}

void Windows_test::cleanup()
{
    m_answers.reset();
    m_frame.reset();
    m_state.reset();
}

void Windows_test::run(const QString &word)
{
    m_frame->setAction(word);
    QTRY_VERIFY(!m_frame->findChild<QTimer *>(u"tmrAction"_qs)->isActive());
}

void Windows_test::modal(const QString &name, const std::function<void(QDialog *)> &act)
{
    m_answers->dialog(name, [act](QDialog *dialog) {
        act(dialog);
        dialog->reject();
    });
}

void Windows_test::openSet()
{
    QString file = qEnvironmentVariable("TSM_SET");
    if (file.isEmpty()) {
        CVBATools set(*m_storage);
        for (const QString &name : {u"one"_qs, u"two"_qs}) {
            auto tool = std::make_shared<CVBATool>();
            tool->Description = name;
            tool->setLocation(u"/usr/bin/"_qs + name);
            set.Add(tool);
        }
        PictureBox box(Twips {275}, Twips {275});
        file = path("set.bmt");
        QVERIFY(set.Save(file, {u"one"_qs, u"two"_qs}, box));
    }
    m_frame->openFile(file);
    QTRY_VERIFY(m_frame->activeDocument() && !m_frame->activeDocument()->FileName().isEmpty());
    m_frame->findChild<ListView *>()->setSelectedItem(0);
}

void Windows_test::look(QWidget *window, const QString &page)
{
    QVERIFY(QTest::qWaitForWindowExposed(window));
    QCoreApplication::processEvents();
    const QString folder = qEnvironmentVariable("TSM_PICTURES");
    if (!folder.isEmpty())
        window->grab().save(folder + u'/' + m_picture + page + u".png"_qs);

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
    QCOMPARE(wrong.join(u'\n'), QString());
    const QSize screen = window->screen()->availableSize();
    QVERIFY(window->minimumSizeHint().boundedTo(QSize(1024, 740)) == window->minimumSizeHint());
    QVERIFY2(window->width() <= screen.width() && window->height() <= screen.height(), "too large");
}

void Windows_test::tabs(QTabWidget *tabs, QWidget *window)
{
    for (int i = 0; i < tabs->count(); ++i) {
        tabs->setCurrentIndex(i);
        auto *inner = tabs->currentWidget()->findChild<QTabWidget *>();
        if (inner)
            this->tabs(inner, window);
        else
            look(window, u' ' + tabs->tabText(i));
    }
}

void Windows_test::windows_data()
{
    QTest::addColumn<Test>("open");
    const auto row = [](const char *name, Test open) { QTest::newRow(name) << open; };

    row("frame without a set", [](Windows_test &t) { t.look(t.m_frame.get()); });
    row("frame with an empty set", [](Windows_test &t) {
        t.run(u"newtoolset"_qs);
        t.look(t.m_frame.get());
    });
    row("frame in details view", [](Windows_test &t) {
        t.openSet();
        t.look(t.m_frame.get());
    });
    row("frame in list view", [](Windows_test &t) {
        t.openSet();
        t.run(u"list"_qs);
        t.look(t.m_frame.get());
    });
    row("recovery bar", [](Windows_test &t) {
        t.m_frame->offerRecovery({t.path("everyday.bmt"), t.path("other.bmt")});
        t.look(t.m_frame.get());
    });
    row("tool properties", [](Windows_test &t) {
        t.openSet();
        t.modal(u"frmToolProps"_qs, [&](QDialog *dialog) {
            t.tabs(dialog->findChild<QTabWidget *>(u"sstAll"_qs), dialog);
        });
        t.run(u"toolproperties"_qs);
    });
    row("picker", [](Windows_test &t) {
        const QDir folder(t.path("programs"));
        QVERIFY(folder.mkpath(u"inner"_qs));
        QVERIFY(Files::put(folder.filePath(u"icons.exe"_qs),
            ProgramFile::pe({{{}, 1, {ProgramFile::plain(32, qRgb(40, 90, 200))}},
                {{}, 2, {ProgramFile::plain(32, qRgb(200, 90, 40))}}})));
        frmFileButton picker(*t.m_store, t.m_frame.get());
        picker.setFileName(t.path("scratch.bmp"));
        picker.setFolder(folder.path());
        picker.show();
        t.look(&picker, u" empty"_qs);
        auto *files = picker.findChild<QAbstractItemView *>(u"FileList"_qs);
        QVERIFY(files);
        files->setFocus();
        QTest::keyClick(files, Qt::Key_I);
        t.look(&picker);
    });
    row("tool set properties", [](Windows_test &t) {
        t.openSet();
        t.modal(u"frmTSProps"_qs, [&](QDialog *dialog) { t.look(dialog); });
        t.run(u"properties"_qs);
    });
    row("tool help", [](Windows_test &t) {
        t.openSet();
        t.menus()->mnuViewX[ToolSetMenus::ViewToolHelp]->trigger();
        auto *help = t.m_frame->findChild<QWidget *>(u"frmToolHelp"_qs);
        QVERIFY(help);
        t.look(help);
    });
    row("manual", [](Windows_test &t) {
        t.m_frame->showHelp(QString::fromUtf16(Frame::programHelp));
        t.look(t.m_frame->findChild<QWidget *>(u"frmHelp"_qs));
    });
    row("about", [](Windows_test &t) {
        t.modal(u"frmAbout"_qs, [&](QDialog *dialog) { t.look(dialog); });
        t.m_frame->showAbout();
    });
    row("print preview", [](Windows_test &t) {
        t.openSet();
        t.modal(u"frmPrint"_qs, [&](QDialog *dialog) { t.look(dialog); });
        t.menus()->mnuFilePrintPreview->trigger();
    });
    row("print setup", [](Windows_test &t) {
        t.openSet();
        t.modal(u"PrintSetupDialog"_qs, [&](QDialog *dialog) { t.look(dialog); });
        t.menus()->mnuFilex[ToolSetMenus::FilePrintSetup]->trigger();
    });
    row("print progress", [](Windows_test &t) {
        const PrintProgress progress(t.m_frame.get(), u"Printing page %1 of %2"_qs, 40);
        t.modal(u"PrintProgress"_qs, [&](QDialog *dialog) { t.look(dialog); });
        t.m_frame->findChild<QDialog *>(u"PrintProgress"_qs)->exec();
    });
    row("printing a document", [](Windows_test &t) {
        auto *form = new frmRTF(t.m_printers, t.m_frame.get());
        form->show();
        t.look(form);
        form->close();
    });
    row("message", [](Windows_test &t) {
        t.modal(QString(), [&](QDialog *dialog) { t.look(dialog); });
        MsgBox::show(t.m_frame.get(), u"Save changes to C:\\everyday.bmt"_qs,
            MsgBox::Buttons::YesNoCancel, MsgBox::Icon::Question);
    });
}

void Windows_test::windows()
{
    QFETCH(const Test, open);
    m_picture = QString::fromLatin1(QTest::currentDataTag());
    open(*this);
}

void Windows_test::hints()
{
    auto *area = m_frame->findChild<QWidget *>(u"mdi"_qs);
    QVERIFY(area->accessibleDescription().contains(u"Ctrl+N"_qs));
    QVERIFY(area->hasFocus());
    run(u"newtoolset"_qs);
    QTRY_COMPARE(area->accessibleDescription(), QString());
    auto *list = m_frame->findChild<ListView *>();
    QVERIFY(list->currentView()->hasFocus());
    QVERIFY(list->currentView()->accessibleDescription().contains(u"Ins"_qs));
    modal(u"frmToolProps"_qs, [](QDialog *) {});
    run(u"newtool"_qs);
    QCOMPARE(list->currentView()->accessibleDescription(), QString());
    m_answers->message(u"*"_qs, QMessageBox::Yes);
    run(u"delete"_qs);
    QVERIFY(!list->currentView()->accessibleDescription().isEmpty());
}

void Windows_test::columnWidths()
{
    run(u"newtoolset"_qs);
    auto *first = m_frame->findChild<ListView *>();
    const int usual = first->columnWidths().at(0);
    run(u"list"_qs);
    run(u"details"_qs);
    QVERIFY(m_state->ColumnWidths.isEmpty()); // not by the user
    first->reportView()->header()->resizeSection(0, usual + 50);
    run(u"newtoolset"_qs);
    const auto lists = m_frame->findChildren<ListView *>();
    QCOMPARE(lists.at(1)->columnWidths(), first->columnWidths());
    QCOMPARE(first->columnWidths().at(0), usual + 50);
}

TSM_TEST(Windows_test);
#include "tst_Windows.moc"
