// The tool set window, with 1,000 and 10,000 tools, beside a bare tree view over the same texts and
// beside the loading of the file.

#include "compare/ComparedSet.h"
#include "compare/frmCompare.h"
#include "model/CVBATools.h"
#include "model/ToolSetDocument.h"
#include "platform/desktop/ListView.h"
#include "platform/desktop/SettingsStore.h"
#include "platform/print/Printers.h"
#include "shell/Settings.h"
#include "shell/mTSM.h"
#include "support/FakeFrame.h"
#include "support/Ratios.h"
#include "support/SampleSet.h"
#include "toolset/EditCommands.h"
#include "toolset/FindBar.h"
#include "toolset/ToolListModel.h"
#include "toolset/frmToolSet.h"

#include <QAbstractTableModel>
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>
#include <QTreeView>

#include <algorithm>
#include <array>
#include <numeric>

namespace {

SampleSet *samples = nullptr;

int countOf(const benchmark::State &state)
{
    return static_cast<int>(state.range(0));
}

/// Tells when a view has been painted.
class PaintWatch : public QObject
{
public:
    explicit PaintWatch(QAbstractItemView *view)
        : m_viewport(view->viewport())
    {
        m_viewport->installEventFilter(this);
    }

    /// Lets events run until the view has been painted after this call.
    void wait(benchmark::State &state)
    {
        m_painted = false;
        m_viewport->update();
        QElapsedTimer timer;
        timer.start();
        while (!m_painted && timer.elapsed() < 10000)
            QCoreApplication::processEvents();
        if (!m_painted)
            state.SkipWithError("never painted");
    }

    bool eventFilter(QObject *, QEvent *event) override
    {
        m_painted = m_painted || event->type() == QEvent::Paint;
        return false;
    }

private:
    QWidget *m_viewport;
    bool m_painted = false;
};

/// What a tool set window needs around it.
struct Desk
{
    mTSM state;
    Settings settings {QString()};
    SettingsStore store {QDir::tempPath()}; ///< Never written here.
    Printers printers {[] { return QStringList(); }};
    FakeFrame frame;

    ~Desk()
    {
        while (!frame.documents.isEmpty())
            delete frame.documents.takeFirst()->widget();
    }

    frmToolSet *newWindow(const QString &caption)
    {
        auto *window = new frmToolSet(frame, state, settings, store, samples->storage(), printers);
        frame.documents.append(window);
        window->setCaption(caption);
        window->resize(620, 380);
        window->show();
        return window;
    }
};

/// A window with an open set, painted.
struct Opened
{
    Opened(Desk &desk, benchmark::State &state)
        : form(desk.newWindow(QStringLiteral("opened")))
        , list(form->findChild<ListView *>())
        , model(form->findChild<ToolListModel *>())
        , edit(form->findChild<EditCommands *>())
        , painted(list->currentView())
    {
        form->setFileName(samples->file(countOf(state)));
        form->setAction(QStringLiteral("open"));
        painted.wait(state);
        if (model->rowCount() != countOf(state))
            state.SkipWithError("not opened");
    }

    /// Selects \a count tools that stand apart.
    void selectScattered(int count)
    {
        QList<int> rows;
        for (int i = 0; i < count; ++i)
            rows.append(static_cast<int>(qint64(i) * model->rowCount() / count));
        list->selectRows(rows);
    }

    frmToolSet *form;
    ListView *list;
    ToolListModel *model;
    EditCommands *edit;
    PaintWatch painted;
};

// --- The floors ---

/// The same texts as plain strings.
class PlainModel : public QAbstractTableModel
{
public:
    using Row = std::array<QString, 3>;

    explicit PlainModel(int count)
    {
        int position = 0;
        for (const ToolPtr &tool : SampleSet::tools(count))
            m_all.push_back({tool->Description, QString::number(++position), tool->Location()});
    }

    void fill()
    {
        beginResetModel();
        m_rows = m_all;
        endResetModel();
    }
    void clear()
    {
        beginResetModel();
        m_rows.clear();
        endResetModel();
    }
    template <class Change>
    void rearrange(Change change)
    {
        Q_EMIT layoutAboutToBeChanged({}, VerticalSortHint);
        change(m_rows);
        Q_EMIT layoutChanged({}, VerticalSortHint);
    }

    int rowCount(const QModelIndex &parent = {}) const override
    {
        return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
    }
    int columnCount(const QModelIndex &) const override { return 3; }
    QVariant data(const QModelIndex &index, int role) const override
    {
        if (role != Qt::DisplayRole)
            return {};
        return m_rows[static_cast<size_t>(index.row())][static_cast<size_t>(index.column())];
    }
    bool setData(const QModelIndex &index, const QVariant &value, int) override
    {
        m_rows[static_cast<size_t>(index.row())][static_cast<size_t>(index.column())] =
            value.toString();
        Q_EMIT dataChanged(index, index);
        return true;
    }

private:
    std::vector<Row> m_all;
    std::vector<Row> m_rows;
};

/// A tree view that shows such a model.
struct Bare
{
    explicit Bare(int count)
        : model(count)
        , painted(&view)
    {
        view.setModel(&model);
        view.setUniformRowHeights(true);
        view.setRootIsDecorated(false);
        view.resize(620, 380);
        view.show();
        QCoreApplication::processEvents();
    }

    PlainModel model;
    QTreeView view;
    PaintWatch painted;
};

void load(benchmark::State &state)
{
    const QString path = samples->file(countOf(state));
    for (auto _ : state) {
        auto set = std::make_unique<CVBATools>(samples->storage());
        set->setAllowDupes(true);
        if (!set->Load(path))
            state.SkipWithError("not loaded");
        state.PauseTiming();
        set.reset();
        state.ResumeTiming();
    }
}

void bareFill(benchmark::State &state)
{
    Bare bare(countOf(state));
    for (auto _ : state) {
        bare.model.fill();
        bare.painted.wait(state);
    }
}

template <size_t Column>
void bareSort(benchmark::State &state)
{
    Bare bare(countOf(state));
    bare.model.fill();
    bool up = false;
    for (auto _ : state) {
        up = !up;
        bare.model.rearrange([up](std::vector<PlainModel::Row> &rows) {
            std::sort(
                rows.begin(), rows.end(), [up](const PlainModel::Row &a, const PlainModel::Row &b) {
                    int order = 0;
                    if constexpr (Column == 1)
                        order = a[1].toInt() - b[1].toInt();
                    else
                        order = a[Column].localeAwareCompare(b[Column]);
                    return up ? order < 0 : order > 0;
                });
        });
        bare.painted.wait(state);
    }
}

void bareRename(benchmark::State &state)
{
    Bare bare(countOf(state));
    bare.model.fill();
    int number = 0;
    for (auto _ : state) {
        const int row = ++number % countOf(state);
        const QString name = u"Renamed " + QString::number(number);
        bare.model.setData(bare.model.index(row, 0), name, Qt::EditRole);
        bare.painted.wait(state);
    }
}

void bareMove(benchmark::State &state)
{
    Bare bare(countOf(state));
    bare.model.fill();
    const auto count = static_cast<size_t>(countOf(state));
    for (auto _ : state) {
        bare.model.rearrange([count](std::vector<PlainModel::Row> &rows) {
            std::vector<bool> moves(count);
            for (size_t i = 0; i < count / 10; ++i)
                moves[i * 10] = true;
            size_t at = 0;
            std::stable_partition(
                rows.begin(), rows.end(), [&](const PlainModel::Row &) { return !moves[at++]; });
        });
        bare.painted.wait(state);
    }
}

/// Freeing the tools, and a view that shows none any more.
void bareDelete(benchmark::State &state)
{
    Bare bare(countOf(state));
    for (auto _ : state) {
        state.PauseTiming();
        QList<ToolPtr> tools = SampleSet::tools(countOf(state));
        bare.model.fill();
        bare.painted.wait(state);
        state.ResumeTiming();
        tools.clear();
        bare.model.clear();
        bare.painted.wait(state);
    }
}

// --- The window ---

void open(benchmark::State &state)
{
    const QString path = samples->file(countOf(state));
    for (auto _ : state) {
        auto desk = std::make_unique<Desk>();
        auto opened = std::make_unique<Opened>(*desk, state);
        state.PauseTiming();
        opened.reset();
        desk.reset();
        state.ResumeTiming();
    }
}

void fill(benchmark::State &state)
{
    ToolSetDocument document(samples->storage());
    auto set = std::make_unique<CVBATools>(samples->storage());
    set->Load(samples->file(countOf(state)));
    document.setTools(std::move(set), true);
    ToolListModel model(document, 1252);
    ListView list(QStringLiteral("Tools"), QSize(18, 18));
    list.setModel(&model);
    list.resize(620, 380);
    list.show();
    PaintWatch painted(list.currentView());
    painted.wait(state);
    for (auto _ : state) {
        Q_EMIT document.reset();
        painted.wait(state);
    }
}

template <int Column>
void sort(benchmark::State &state)
{
    Desk desk;
    Opened opened(desk, state);
    for (auto _ : state) {
        Q_EMIT opened.list->ColumnClick(Column);
        opened.painted.wait(state);
    }
}

void rename(benchmark::State &state)
{
    Desk desk;
    Opened opened(desk, state);
    int number = 0;
    for (auto _ : state) {
        // Anywhere in the list.
        const int row = static_cast<int>(qint64(++number) * 7919 % countOf(state));
        Q_EMIT opened.list->AfterLabelEdit(row, u"Renamed " + QString::number(number));
        opened.painted.wait(state);
    }
}

void paste(benchmark::State &state)
{
    Desk desk;
    Opened source(desk, state);
    for (auto _ : state) {
        state.PauseTiming();
        frmToolSet *target = desk.newWindow(QStringLiteral("target"));
        PaintWatch painted(target->findChild<ListView *>()->currentView());
        painted.wait(state);
        QList<int> all(countOf(state));
        std::iota(all.begin(), all.end(), 0);
        source.list->selectRows(all);
        state.ResumeTiming();
        source.form->setAction(QStringLiteral("copy"));
        target->setAction(QStringLiteral("paste"));
        painted.wait(state);
        state.PauseTiming();
        if (target->Tools().Count() != countOf(state))
            state.SkipWithError("not pasted");
        desk.frame.documents.removeOne(target);
        delete target;
        state.ResumeTiming();
    }
}

void deleteAll(benchmark::State &state)
{
    for (auto _ : state) {
        state.PauseTiming();
        auto desk = std::make_unique<Desk>();
        auto opened = std::make_unique<Opened>(*desk, state);
        QList<int> all(countOf(state));
        std::iota(all.begin(), all.end(), 0);
        opened->list->selectRows(all);
        state.ResumeTiming();
        opened->form->setAction(QStringLiteral("silentdelete"));
        opened->painted.wait(state);
        state.PauseTiming();
        if (opened->model->rowCount() != 0)
            state.SkipWithError("not deleted");
        opened.reset();
        desk.reset();
        state.ResumeTiming();
    }
}

void move(benchmark::State &state)
{
    Desk desk;
    Opened opened(desk, state);
    for (auto _ : state) {
        state.PauseTiming();
        opened.selectScattered(countOf(state) / 10);
        opened.painted.wait(state);
        state.ResumeTiming();
        opened.edit->moveSelection(EditCommands::Direction::ToEnd);
        opened.painted.wait(state);
    }
}

void undoDeleteAll(benchmark::State &state)
{
    Desk desk;
    Opened opened(desk, state);
    for (auto _ : state) {
        state.PauseTiming();
        QList<int> all(countOf(state));
        std::iota(all.begin(), all.end(), 0);
        opened.list->selectRows(all);
        opened.form->setAction(QStringLiteral("silentdelete"));
        opened.painted.wait(state);
        state.ResumeTiming();
        opened.form->setAction(QStringLiteral("undo"));
        opened.painted.wait(state);
        if (opened.model->rowCount() != countOf(state))
            state.SkipWithError("not undone");
    }
}

void undoMove(benchmark::State &state)
{
    Desk desk;
    Opened opened(desk, state);
    for (auto _ : state) {
        state.PauseTiming();
        opened.selectScattered(countOf(state) / 10);
        opened.edit->moveSelection(EditCommands::Direction::ToEnd);
        opened.painted.wait(state);
        state.ResumeTiming();
        opened.form->setAction(QStringLiteral("undo"));
        opened.painted.wait(state);
    }
}

/// Two sets that were loaded, 100 tools changed in one of them, until their comparison has been
/// painted.
void compareSets(benchmark::State &state)
{
    FakeFrame frame;
    const QString path = samples->file(countOf(state));
    const auto loaded = [&](bool changed) {
        auto tools = std::make_unique<CVBATools>(samples->storage());
        if (!tools->Load(path))
            state.SkipWithError("not loaded");
        for (int i = 1; changed && i <= 100; ++i)
            tools->Item(i * (tools->Count() / 100))->CommandLine += u'x';
        return tools;
    };
    const auto side = [](std::unique_ptr<CVBATools> tools) {
        return std::make_unique<ComparedSet>(
            ComparedSet::File, QString(), QString(), std::move(tools));
    };
    for (auto _ : state) {
        state.PauseTiming();
        auto left = loaded(false);
        auto right = loaded(true);
        state.ResumeTiming();
        auto form = std::make_unique<frmCompare>(frame,
            std::make_unique<Comparison>(side(std::move(left)), side(std::move(right))), 1252,
            nullptr);
        form->resize(860, 560);
        form->show();
        PaintWatch(form->findChild<QTreeView *>()).wait(state);
        state.PauseTiming();
        form.reset();
        state.ResumeTiming();
    }
}

/// A keystroke in the find field that no former result helps, until its matches are painted: two
/// texts in turns. The help texts have been read before.
void find(benchmark::State &state, const QString &one, const QString &other)
{
    Desk desk;
    Opened opened(desk, state);
    opened.form->findChild<FindBar *>()->open();
    auto *field = opened.form->findChild<QLineEdit *>(QStringLiteral("txtFind"));
    const auto type = [&](const QString &text) {
        field->setText(text);
        while (!opened.model->finder().isComplete())
            QCoreApplication::processEvents();
        opened.painted.wait(state);
    };
    type(one);
    type(other);
    bool first = true;
    for (auto _ : state) {
        type(first ? one : other);
        first = !first;
    }
    if (opened.model->rowCount() == countOf(state))
        state.SkipWithError("not narrowed");
}

void findInNames(benchmark::State &state)
{
    find(state, QStringLiteral("name:9 location:8"), QStringLiteral("name:8 location:9"));
}

void findInHelps(benchmark::State &state)
{
    find(state, QStringLiteral("9 refresher"), QStringLiteral("8 settinx"));
}

/// F7, until the panel shows all findings.
void check(benchmark::State &state)
{
    Desk desk;
    Opened opened(desk, state);
    for (auto _ : state) {
        opened.form->setAction(QStringLiteral("check"));
        const auto *text = opened.form->findChild<QLabel *>(QStringLiteral("lblFindings"));
        do
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        while (text->text().isEmpty() || text->text().contains(QStringLiteral("left")));
        state.PauseTiming();
        opened.form->findChild<QToolButton *>(QStringLiteral("cmdCloseCheck"))->click();
        state.ResumeTiming();
    }
}

/// The least that the disk takes.
void lookUpFiles(benchmark::State &state)
{
    const auto tools = SampleSet::tools(countOf(state));
    for (auto _ : state) {
        for (const ToolPtr &tool : tools)
            benchmark::DoNotOptimize(QFile::exists(samples->path(tool->FileName)));
    }
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
    QApplication application(argc, argv);
    QLocale::setDefault(QLocale(QLocale::English));
    SampleSet set;
    samples = &set;
    // A drive C:, so that the check looks at the disk.
    qputenv("WINEPREFIX", set.path(QStringLiteral("wine")).toUtf8());
    QDir().mkpath(set.path(QStringLiteral("wine/dosdevices")));
    QFile::link(set.path(QString()), set.path(QStringLiteral("wine/dosdevices/c:")));
    Ratios ratios({1000, 10000});
    ratios.compare({"open until painted", open}, {"load", load}, 2);
    ratios.compare({"list filled and painted", fill}, {"bare tree view", bareFill});
    ratios.compare({"sort by name", sort<0>}, {"bare view, std::sort of names", bareSort<0>});
    ratios.compare(
        {"sort by position", sort<1>}, {"bare view, std::sort of positions", bareSort<1>});
    ratios.compare(
        {"sort by location", sort<2>}, {"bare view, std::sort of locations", bareSort<2>});
    ratios.compare({"rename one", rename}, {"bare view, one text set", bareRename});
    ratios.compare({"copy all and paste", paste}, {"load", load}, 2);
    ratios.compare({"delete all", deleteAll}, {"bare view cleared, tools freed", bareDelete});
    ratios.compare({"move a tenth to the end", move}, {"bare view, a tenth moved", bareMove});
    ratios.compare({"undo of delete all", undoDeleteAll}, {"copy all and paste", paste}, 2);
    ratios.compare({"undo of a move of a tenth", undoMove}, {"bare view, a tenth moved", bareMove});
    ratios.compare({"find: keystroke on names", findInNames}, {"bare tree view", bareFill});
    ratios.compare({"find: keystroke on help texts", findInHelps}, {"bare tree view", bareFill});
    ratios.compare({"check, all findings shown", check}, {"files looked up", lookUpFiles});
    ratios.compare({"compare with 100 changes", compareSets}, {"load", load}, 1);
    return ratios.run(argc, argv);
}
