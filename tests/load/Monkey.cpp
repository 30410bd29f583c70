#include "load/Monkey.h"

#include "platform/desktop/Toolbar.h"
#include "safety/SetDigest.h"
#include "shell/CommandTable.h"
#include "support/Answers.h"
#include "support/TestDrag.h"
#include "toolset/FindBar.h"
#include "toolset/ToolSetMenus.h"

#include <QtWidgets>

namespace {

constexpr Qt::KeyboardModifiers moving = Qt::ControlModifier | Qt::ShiftModifier;

template <class Widget>
QList<Widget *> usable(QWidget *form)
{
    QList<Widget *> found = form->findChildren<Widget *>();
    found.removeIf([](QWidget *each) {
        return !each->isVisible() || !each->isEnabled() || each->width() < 1;
    });
    return found;
}

QPoint centreOf(QAbstractItemView *view, int row)
{
    const QModelIndex index = view->model()->index(row, 0);
    view->scrollTo(index);
    return view->visualRect(index).center();
}

/// All of a document that undo brings back.
QByteArray contentOf(const ToolSetDocument &document)
{
    QCryptographicHash hash(QCryptographicHash::Sha1);
    const ToolSetDocument::Properties properties = document.properties();
    QStringList texts {properties.Description, properties.LongDescription,
        QString::number(properties.FLAGS), document.keysInOrder().join(u'\n')};
    for (const ToolPtr &tool : document.Tools()) { // in the set's own order
        texts.append(SetDump::line(*tool));
        const QImage &picture = tool->Picture;
        hash.addData(QByteArrayView(picture.constBits(), picture.sizeInBytes()));
    }
    hash.addData(texts.join(u'\n').toUtf8());
    return hash.result();
}

} // namespace

Monkey::Monkey(Program &program, const QString &folder, QRandomGenerator &random)
    : m_program(program)
    , m_folder(folder)
    , m_random(random)
{
    program.frame.findChild<QTimer *>(u"tmrAction"_qs)->setInterval(0);
    program.frame.findChild<QTimer *>(u"tmrDrag"_qs)->setInterval(0);
}

int Monkey::run(int steps)
{
    m_left = steps;
    QEventLoop loop;
    QTimer done;
    connect(&done, &QTimer::timeout, &loop, [&] {
        if (settled() && (m_left <= 0 || !m_fault.isEmpty() || !m_program.frame.isVisible()))
            loop.quit();
    });
    done.start(1);
    QTimer::singleShot(1, this, &Monkey::tick);
    loop.exec();
    return m_left;
}

void Monkey::tell(const QString &action)
{
    m_trace.append(QString::number(m_left) + u' ' + action);
    if (qEnvironmentVariableIsSet("MONKEY_TRACE"))
        qInfo("%s", qPrintable(m_trace.constLast()));
    if (m_trace.size() > 30)
        m_trace.removeFirst();
}

/// Nothing is under way that goes on by itself. A dialog or a menu waits for the user.
bool Monkey::settled() const
{
    return !QApplication::activeModalWidget() && !QApplication::activePopupWidget() && !m_dragged
        && !m_program.frame.findChild<QTimer *>(u"tmrAction"_qs)->isActive();
}

void Monkey::tick()
{
    const bool waits =
        QApplication::activeModalWidget() || QApplication::activePopupWidget() || m_dragged;
    if (settled() && (m_left <= 0 || !m_fault.isEmpty() || !m_program.frame.isVisible()))
        return;
    // Before acting: an action may open a dialog, and return only when that has been answered.
    QTimer::singleShot(1, this, &Monkey::tick);
    if (!waits && !settled())
        return;
    check();
    --m_left;
    act();
}

void Monkey::act()
{
    if (m_dragged)
        return moveDrag();
    if (QWidget *popup = QApplication::activePopupWidget())
        return choose(popup);
    if (QWidget *modal = QApplication::activeModalWidget()) {
        auto *dialog = qobject_cast<QDialog *>(modal);
        return dialog ? answer(dialog) : actIn(modal);
    }
    auto *window = static_cast<frmToolSet *>(m_program.frame.activeDocument());
    if (!window || one(4) || !actInList(window))
        actOnFrame();
}

// --- The windows ---

QString Monkey::text()
{
    const QString names[] = {u"Tool"_qs, u"TOOL"_qs, u"tool(1)"_qs, u"&Co"_qs, u"ß"_qs,
        u"Separator"_qs, u"C:\\a b\\c.exe"_qs, QString(300, u'x'), u"1"_qs, u"[*]%1"_qs};
    if (one(20))
        return QString(); // a tool without a name gets one
    if (one(60))
        return u"ж"_qs; // cannot be stored
    return one(2) ? u"n%1"_qs.arg(++m_typed) : any(std::to_array(names));
}

void Monkey::key(QWidget *target, std::initializer_list<int> keys, Qt::KeyboardModifiers modifiers)
{
    const auto chosen = static_cast<Qt::Key>(any(QList<int>(keys)));
    tell(u"key "_qs + QKeySequence(chosen | modifiers).toString());
    QTest::keyClick(target, chosen, modifiers);
}

bool Monkey::actInList(frmToolSet *window)
{
    ListView *list = Program::listOf(window);
    QAbstractItemView *view = list->currentView();
    const int rows = Program::modelOf(window)->rowCount();
    if (auto *line = view->findChild<QLineEdit *>(); line && line->isVisible() && !one(3)) {
        rename(list);
        return true;
    }
    if (window->Document().count() > 80) {
        window->findChild<FindBar *>()->close();
        key(view, {Qt::Key_A}, Qt::ControlModifier);
        m_program.frame.setAction(u"delete"_qs);
        return true;
    }
    auto *check = window->findChild<QWidget *>(u"checkPanel"_qs);
    if (check && check->isVisible() && one(6)) {
        actIn(check);
        return true;
    }
    switch (random(15)) {
    case 0:
        key(view,
            {Qt::Key_Up, Qt::Key_Down, Qt::Key_Home, Qt::Key_End, Qt::Key_PageDown, Qt::Key_T,
                Qt::Key_Escape, Qt::Key_Space, Qt::Key_Return});
        break;
    case 1:
        key(view, {Qt::Key_Up, Qt::Key_Down, Qt::Key_End}, Qt::ShiftModifier);
        break;
    case 2:
        key(view, {Qt::Key_Up, Qt::Key_Down, Qt::Key_Home, Qt::Key_End}, moving);
        break;
    case 3:
    case 4:
        if (rows > 0) {
            constexpr Qt::KeyboardModifiers with[] = {
                Qt::NoModifier, Qt::ControlModifier, Qt::ShiftModifier};
            const int row = random(rows);
            tell(u"click on row %1"_qs.arg(row));
            QTest::mouseClick(view->viewport(), one(8) ? Qt::RightButton : Qt::LeftButton,
                any(std::to_array(with)), centreOf(view, row));
        }
        break;
    case 5:
        rename(list);
        break;
    case 6:
        if (rows > 0)
            drag(view->viewport());
        break;
    case 7:
        if (auto *report = qobject_cast<QTreeView *>(view)) {
            const int column = random(3);
            tell(u"header %1"_qs.arg(column));
            QTest::mouseClick(report->header()->viewport(), Qt::LeftButton, {},
                QPoint(report->header()->sectionViewportPosition(column) + 9, 5));
        }
        break;
    case 8:
        key(view,
            {Qt::Key_A, Qt::Key_C, Qt::Key_X, Qt::Key_V, Qt::Key_V, Qt::Key_S, Qt::Key_Z,
                Qt::Key_Y},
            Qt::ControlModifier);
        break;
    case 9:
        if (rows > 0) {
            tell(u"double click"_qs);
            QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, centreOf(view, random(rows)));
        }
        break;
    case 10:
        tell(u"files dropped"_qs);
        TestDrag::dropFiles(
            view->viewport(), {m_folder + u"/a program.exe"_qs, m_folder + u"/0.bmt"_qs});
        break;
    case 11:
    case 12:
        undo(window);
        break;
    case 13:
        find(window);
        break;
    default:
        return false;
    }
    return true;
}

void Monkey::undo(frmToolSet *window)
{
    const int steps = 1 + random(one(8) ? 60 : 6);
    const QString word = one(3) ? u"redo"_qs : u"undo"_qs;
    tell(u"%1 of %2"_qs.arg(word).arg(steps));
    for (int i = 0; i < steps; ++i)
        window->setAction(word);
}

void Monkey::find(frmToolSet *window)
{
    auto *field = window->findChild<QLineEdit *>(u"txtFind"_qs);
    if (field->parentWidget()->isHidden()) {
        key(viewOf(window), {Qt::Key_F}, Qt::ControlModifier);
    } else if (one(2)) {
        const QString words[] = {u"n"_qs, u"name:n1"_qs, u"some words"_qs, u"help:words name:t"_qs,
            u"kind:exec"_qs, u"toolbar:no \"tool"_qs, u"none at all"_qs, QString()};
        field->setText(any(std::to_array(words)));
        tell(u"finds "_qs + field->text());
    } else {
        key(field,
            {Qt::Key_Escape, Qt::Key_Return, Qt::Key_Down, Qt::Key_F3, Qt::Key_Backspace,
                Qt::Key_T});
    }
}

void Monkey::rename(ListView *list)
{
    auto *line = list->currentView()->findChild<QLineEdit *>();
    if (!line || !line->isVisible()) {
        key(list->currentView(), {Qt::Key_F2});
        return;
    }
    line->setText(text());
    tell(u"name typed: "_qs + line->text().left(20));
    if (one(6))
        key(line, {Qt::Key_Z, Qt::Key_Y}, Qt::ControlModifier);
    else
        key(line, {Qt::Key_Return, Qt::Key_Return, Qt::Key_Tab, Qt::Key_Escape, Qt::Key_Left});
}

void Monkey::actOnFrame()
{
    MDI &frame = m_program.frame;
    const auto documents = frame.openDocuments();
    auto *active = static_cast<frmToolSet *>(frame.activeDocument());
    const int action = documents.size() > 6 ? 0 : random(active ? 12 : 3);
    if (action == 0 && !documents.isEmpty()) {
        QWidget *window = any(documents)->widget();
        tell(u"closing "_qs + window->windowTitle());
        window->parentWidget()->close();
    } else if (action <= 4) {
        auto *tools = frame.findChild<Toolbar *>(u"tbTools"_qs);
        QAction *button = any(tools->buttons());
        tell(u"button "_qs + Toolbar::key(button)
            + (button->isEnabled() ? u""_qs : u" (disabled)"_qs));
        QTest::mouseClick(tools->widgetForAction(button), Qt::LeftButton);
    } else if (action <= 7) {
        auto *menus = active->findChild<ToolSetMenus *>();
        QMenu *menu = any(menus->all());
        Q_EMIT menu->aboutToShow();
        QAction *item = any(menu->actions());
        if (item != menus->mnuFileExit || one(6)) {
            tell(u"menu "_qs + item->text());
            item->trigger();
        }
        Q_EMIT menu->aboutToHide();
    } else if (action == 8) {
        tell(u"next window"_qs);
        frame.findChild<QMdiArea *>()->activateNextSubWindow();
    } else if (action == 9) {
        constexpr Qt::WindowStates states[] = {
            Qt::WindowNoState, Qt::WindowMaximized, Qt::WindowMinimized};
        auto *window = active->parentWidget();
        const Qt::WindowStates state = any(std::to_array(states));
        tell(u"window state %1"_qs.arg(state.toInt()));
        window->setWindowState(state);
    } else if (action == 10) {
        tell(u"set dropped on the frame"_qs);
        TestDrag::dropFiles(
            frame.findChild<QMdiArea *>()->viewport(), {m_folder + u"/%1.bmt"_qs.arg(random(4))});
    } else {
        frame.resize(300 + random(900), 200 + random(600));
        tell(u"label double-clicked"_qs);
        QTest::mouseDClick(active->findChild<QLabel *>(u"lblToolSet"_qs), Qt::LeftButton);
    }
}

void Monkey::choose(QWidget *popup)
{
    key(popup, {Qt::Key_Down, Qt::Key_Down, Qt::Key_Up, Qt::Key_Return, Qt::Key_Escape});
}

// --- Drags ---

void Monkey::drag(QWidget *from)
{
    auto *view = qobject_cast<QAbstractItemView *>(from->parentWidget());
    QWindow *frame = m_program.frame.windowHandle();
    const QPoint start =
        from->mapTo(&m_program.frame, centreOf(view, random(view->model()->rowCount())));
    if (!m_program.frame.rect().adjusted(0, 0, -12, -22).contains(start))
        return;
    tell(u"drag begins"_qs);
    m_dragged = frame; // the mouse events let others run
    QTest::mousePress(frame, Qt::LeftButton, {}, start);
    // Returns when the drag has ended, if it was one.
    QTest::mouseMove(frame, start + QPoint(4, 8));
    QTest::mouseMove(frame, start + QPoint(10, 20));
    m_dragged = nullptr;
    QTest::mouseRelease(frame, Qt::LeftButton, {}, start + QPoint(10, 20));
}

void Monkey::moveDrag()
{
    QWindow *frame = m_dragged;
    auto *target = static_cast<frmToolSet *>(any(m_program.frame.openDocuments()));
    QWidget *viewport = viewOf(target)->viewport();
    const QPoint at(random(viewport->width() + 1), random(viewport->height() + 1));
    const QRect inside(QPoint(0, 0), frame->size() - QSize(1, 1));
    const QPoint mapped = viewport->mapTo(&m_program.frame, at);
    const QPoint place(
        qBound(0, mapped.x(), inside.right()), qBound(0, mapped.y(), inside.bottom()));
    tell(u"drag to %1 %2"_qs.arg(place.x()).arg(place.y()));
    if (one(8))
        QTest::keyClick(frame, Qt::Key_Escape);
    else
        QTest::mouseMove(frame, place);
    if (one(3))
        QTest::mouseRelease(frame, Qt::LeftButton, {}, place);
}

// --- Dialogs ---

void Monkey::answer(QDialog *dialog)
{
    if (auto *box = qobject_cast<QMessageBox *>(dialog)) {
        QAbstractButton *button = any(box->buttons());
        tell(u"\"%1\": %2"_qs.arg(box->text().left(200), button->text()));
        require(!box->text().startsWith(u"Error loading"_qs), box->text());
        for (Known &known : m_known) // saving clears the flag, also when it failed
            known.excused = known.excused || box->text().startsWith(u"Error saving"_qs);
        button->click();
    } else if (auto *files = qobject_cast<QFileDialog *>(dialog)) {
        answerFile(files);
    } else if (one(12) || dialog->inherits("QPrintDialog")) {
        tell(u"leaves "_qs + dialog->windowTitle());
        dialog->close();
    } else if (auto *ok = dialog->findChild<QPushButton *>(u"cmdOK"_qs); ok && one(10)) {
        tell(u"OK"_qs);
        ok->click();
    } else {
        actIn(dialog);
    }
}

void Monkey::answerFile(QFileDialog *dialog)
{
    const bool printed = dialog->windowTitle().startsWith(u"Print"_qs);
    const QString path =
        printed ? m_folder + u"/out.pdf"_qs : m_folder + u"/%1.bmt"_qs.arg(random(6));
    if (one(3)) {
        tell(u"cancels "_qs + dialog->windowTitle());
        dialog->reject();
        return;
    }
    tell(dialog->windowTitle() + u" "_qs + path);
    Answers::choose(dialog, path);
}

/// Uses any one control.
void Monkey::actIn(QWidget *form)
{
    const auto name = [](QWidget *control) -> QString {
        return QLatin1StringView(control->metaObject()->className()) + u' ' + control->objectName();
    };
    QList<QWidget *> controls;
    for (QWidget *control : usable<QWidget>(form)) {
        if (control->focusPolicy() != Qt::NoFocus || qobject_cast<QAbstractButton *>(control))
            controls.append(control);
    }
    if (controls.isEmpty())
        return;
    QWidget *control = any(controls);
    tell(form->objectName() + u": "_qs + name(control));
    if (auto *button = qobject_cast<QAbstractButton *>(control)) {
        button->click();
    } else if (auto *tabs = qobject_cast<QTabBar *>(control)) {
        tabs->setCurrentIndex(random(tabs->count()));
    } else if (auto *box = qobject_cast<QComboBox *>(control); box && box->count() > 0) {
        QTest::keyClick(box, one(2) ? Qt::Key_Down : Qt::Key_Up);
    } else if (auto *line = qobject_cast<QLineEdit *>(control); line && !line->isReadOnly()) {
        line->selectAll();
        QTest::keyClick(line, Qt::Key_Delete);
        line->insert(text());
    } else if (auto *view = qobject_cast<QAbstractItemView *>(control)) {
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {},
            QPoint(random(view->viewport()->width() + 1), random(view->viewport()->height() + 1)));
    } else {
        edit(control);
    }
}

void Monkey::edit(QWidget *text)
{
    switch (random(6)) {
    case 0:
        QTest::keyClicks(text, u"Some words. "_qs);
        break;
    case 1:
        key(text,
            {Qt::Key_Z, Qt::Key_Z, Qt::Key_Y, Qt::Key_A, Qt::Key_C, Qt::Key_X, Qt::Key_V, Qt::Key_B,
                Qt::Key_I, Qt::Key_U},
            Qt::ControlModifier);
        break;
    case 2:
        key(text, {Qt::Key_Left, Qt::Key_Up, Qt::Key_Home, Qt::Key_End}, Qt::ShiftModifier);
        break;
    default:
        key(text,
            {Qt::Key_Return, Qt::Key_Tab, Qt::Key_Backspace, Qt::Key_Delete, Qt::Key_Left,
                Qt::Key_Down, Qt::Key_PageUp, Qt::Key_PageDown, Qt::Key_X});
    }
}

// --- What must hold ---

void Monkey::require(bool holds, const QString &what)
{
    if (!holds && m_fault.isEmpty())
        m_fault = what;
}

void Monkey::excuse(frmToolSet *window)
{
    for (Known &each : m_known)
        each.excused = each.excused || each.window == window;
}

/// Whatever leads to a state of the document, undo and redo must lead to that very state again.
void Monkey::watchUndo(frmToolSet *window)
{
    struct History
    {
        QMap<int, QByteArray> states; ///< By the number of steps that led there.
        int at = 0;
        bool undoing = false;
    };
    ToolSetDocument &document = window->Document();
    const auto history = std::make_shared<History>();
    const auto forget = [&document, history] {
        history->at = document.stepIndex();
        history->states = {{history->at, contentOf(document)}};
    };
    forget();
    connect(&document, &ToolSetDocument::reset, this, forget);
    connect(&document, &ToolSetDocument::selectionRestored, this,
        [history] { history->undoing = true; });
    connect(&document, &ToolSetDocument::changed, this, [=, this, &document] {
        const int before = std::exchange(history->at, document.stepIndex());
        const QByteArray now = contentOf(document);
        if (!std::exchange(history->undoing, false)) {
            if (history->at == before) // the oldest step has gone
                history->states.clear();
            while (!history->states.isEmpty() && history->states.lastKey() > before)
                history->states.remove(history->states.lastKey());
            history->states.insert(history->at, now);
            return;
        }
        const bool undone = history->at < before;
        const QString step = undone ? document.redoText() : document.undoText();
        if (step.startsWith(u"Rename"_qs))
            excuse(window);
        require(history->states.value(history->at, now) == now,
            window->Caption()
                + u": %1 of \"%2\" led to another state"_qs.arg(undone ? u"undo" : u"redo", step));
    });
}

void Monkey::check()
{
    const auto documents = m_program.frame.openDocuments();
    m_known.removeIf([](const Known &known) { return !known.window; });
    for (DocumentWindow *document : documents)
        check(static_cast<frmToolSet *>(document));
    if (!settled())
        return;
    checkCommands();
    qsizetype windows = 0;
    for (QWidget *window : QApplication::topLevelWidgets()) {
        const QLatin1StringView kind(window->metaObject()->className());
        require(!qobject_cast<QDialog *>(window)
                && (!window->isVisible() || window == &m_program.frame
                    || kind == QLatin1StringView("frmHelp")
                    || kind == QLatin1StringView("frmToolHelp")),
            u"left over: "_qs + kind);
        windows += kind == QLatin1StringView("frmToolHelp") ? 0 : 1;
    }
    require(windows <= 6 + 14 * documents.size(), u"%1 windows"_qs.arg(windows));
    const auto menus = m_program.frame.findChildren<QMenu *>().size();
    require(menus <= 6 + 8 * documents.size(), u"%1 menus"_qs.arg(menus));
}

void Monkey::check(frmToolSet *window)
{
    const CVBATools &set = window->Tools();
    const ToolListModel &list = *Program::modelOf(window);
    const QString &caption = window->Caption();
    const bool finds = window->findChild<FindBar *>()->isVisibleTo(window);
    require(finds ? list.rowCount() <= set.Count() : list.rowCount() == set.Count(),
        caption + u": %1 tools, %2 rows"_qs.arg(set.Count()).arg(list.rowCount()));
    std::vector<bool> positions(static_cast<size_t>(set.Count()), false);
    QSet<QString> names;
    for (int row = 0; row < list.rowCount() && m_fault.isEmpty(); ++row) {
        const ToolPtr &tool = list.toolAt(row);
        const auto at = static_cast<size_t>(list.positionAt(row) - 1);
        require(at < positions.size() && !positions[at], caption + u": positions have a gap"_qs);
        if (!m_fault.isEmpty())
            return;
        positions[at] = true;
        require(!names.contains(tool->Description.toUpper()), u"twice: "_qs + tool->Description);
        names.insert(tool->Description.toUpper());
        require(set.Items().contains(tool->Description)
                && set.Item(tool->Description).get() == tool.get(),
            caption + u": not in the set: "_qs + tool->Description);
    }
    const mTSM &state = m_program.state;
    require(list.ghostedPositions().isEmpty() || m_dragged
            || (state.ClipboardMode == mTSM::CutPending && state.SourceCaption == caption),
        caption + u": faint, and not cut"_qs);
    require(caption == set.ToolSetName
            || (set.ToolSetName.isEmpty() && caption.startsWith(u"Untitled"_qs)),
        u"the caption of %1 is %2"_qs.arg(set.ToolSetName, caption));

    auto known = std::find_if(
        m_known.begin(), m_known.end(), [&](const Known &each) { return each.window == window; });
    const auto &order = window->Document().toolsInOrder();
    const QByteArray now = digestOf(set, QList<ToolPtr>(order.begin(), order.end()));
    if (known == m_known.end()) {
        known = m_known.insert(m_known.end(), {window, now, window->Dirty()});
        connect(Program::listOf(window), &ListView::AfterLabelEdit, this,
            [this, window] { excuse(window); });
        watchUndo(window);
    }
    // A dialog may stand between a change and what it does to the flag.
    if (QApplication::activeModalWidget())
        return;
    if (!window->Dirty() && (known->dirty || now != known->clean)) {
        CVBATools file(m_program.storage);
        file.setAllowDupes(true);
        QList<ToolPtr> stored;
        const bool loaded = !set.ToolSetName.isEmpty() && file.Load(set.ToolSetName);
        for (const ToolPtr &tool : file)
            stored.append(tool);
        const bool saved = loaded && digestOf(file, stored) == now;
        const bool undone = now == known->clean;
        require(saved || undone || known->excused, caption + u": neither dirty nor saved"_qs);
        known->excused = !saved && !undone;
        known->clean = now;
    }
    known->dirty = window->Dirty();
}

void Monkey::checkCommands()
{
    auto *tools = m_program.frame.findChild<Toolbar *>(u"tbTools"_qs);
    auto *active = static_cast<frmToolSet *>(m_program.frame.activeDocument());
    const auto needs = [&](const char *key, bool wanted) {
        require(tools->button(QLatin1StringView(key))->isEnabled() == wanted,
            u"button %1 is %2"_qs.arg(QLatin1StringView(key), wanted ? u"disabled" : u"enabled"));
    };
    const bool any = active && active->Document().count() > 0;
    for (const char *key : {"cut", "copy", "delete", "toolproperties"})
        needs(key, any);
    for (const char *key : {"save", "newtool", "print", "properties", "list", "details"})
        needs(key, active != nullptr);
    const auto &clipboard = m_program.state.ToolClipboard;
    if (!active || !clipboard || clipboard->Count() > 0)
        needs("paste", active && clipboard);
    const bool list = active && active->View() == ListView::lvwList;
    require(tools->button(u"list"_qs)->isChecked() == list
            && tools->button(u"details"_qs)->isChecked() == (active && !list),
        u"the view buttons show another view"_qs);
    if (active) {
        const auto *menus = active->findChild<ToolSetMenus *>();
        const ToolSetDocument &document = active->Document();
        require(Program::listOf(active)->labelEditor()
                || (menus->mnuEditUndo->isEnabled() == document.canUndo()
                    && menus->mnuEditRedo->isEnabled() == document.canRedo()),
            u"the menu does not show what can be undone"_qs);
        require(menus->mnuEditX[ToolSetMenus::EditCut]->isEnabled() == any
                && menus->mnuViewX[ToolSetMenus::ViewToolHelp]->isEnabled() == any,
            u"the menu items do not fit the set"_qs);
    }
}
