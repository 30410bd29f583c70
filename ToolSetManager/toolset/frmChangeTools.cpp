#include "toolset/frmChangeTools.h"

#include "model/BmtFormat.h"
#include "model/ToolKinds.h"
#include "model/ToolSetDocument.h"
#include "platform/desktop/Accessible.h"
#include "platform/desktop/Hourglass.h"
#include "toolset/ChangesModel.h"
#include "toolset/EventChoices.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QTabWidget>
#include <QTreeView>

namespace {

constexpr int pauseInTyping = 150; ///< Milliseconds.

} // namespace

frmChangeTools::frmChangeTools(ToolSetDocument &document, const CodePage &codePage,
    const ToolPlaces &places, const Scope &scope, QWidget *parent)
    : QDialog(parent)
    , m_document(document)
    , m_scope(scope)
    , m_pictures(places)
    , m_preview(document, codePage, m_pictures, this)
    , m_changes(new ChangesModel(this))
{
    setObjectName(QStringLiteral("frmChangeTools"));
    setWindowTitle(QStringLiteral("Change Several Tools"));
    m_typing.setParent(this);
    m_typing.setObjectName(QStringLiteral("tmrTyping"));
    m_typing.setSingleShot(true);
    m_typing.setInterval(pauseInTyping);
    auto *all = new QVBoxLayout(this);
    all->addLayout(scopeRow());
    auto *pages = named("sstChange", new QTabWidget(this));
    pages->setAccessibleName(QStringLiteral("Pages"));
    pages->addTab(replacePage(), QStringLiteral("Find and Replace"));
    pages->addTab(switchesPage(), QStringLiteral("Switches, Type and Picture"));
    tvwEvents = named("tvwEvents", new EventChoices(pages));
    pages->addTab(tvwEvents, QStringLiteral("Events"));
    all->addWidget(pages);
    all->addLayout(previewRows(), 1);
    all->addLayout(buttonRow());
    pages->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);

    connect(&m_typing, &QTimer::timeout, this, &frmChangeTools::refresh);
    connect(tvwEvents, &EventChoices::changed, this, &frmChangeTools::refresh);
    connect(m_changes, &ChangesModel::ticksChanged, this, &frmChangeTools::ticksChanged);
    connect(&m_preview, &ChangePreview::progressed, this, &frmChangeTools::progressed);
    connect(&m_preview, &ChangePreview::completed, this, &frmChangeTools::completed);
    resize(QSize(fontMetrics().averageCharWidth() * 125, fontMetrics().height() * 38)
               .boundedTo(screen()->availableSize() * 0.9));
    txtFind->setFocus();
    refresh();
}

// --- Controls ---

template <class Control>
Control *frmChangeTools::named(const char *name, Control *control)
{
    control->setObjectName(QString::fromLatin1(name));
    return control;
}

QComboBox *frmChangeTools::choice(const char *name, const QStringList &entries)
{
    auto *box = named(name, new QComboBox(this));
    box->addItems(entries);
    connect(box, &QComboBox::currentIndexChanged, this, &frmChangeTools::refresh);
    return box;
}

QLayout *frmChangeTools::scopeRow()
{
    const auto option = [this](const char *name, const QString &text, qsizetype count) {
        auto *button = named(name, new QRadioButton(text.arg(count), this));
        button->setEnabled(count > 0);
        connect(button, &QRadioButton::toggled, this, [this](bool on) {
            if (on)
                refresh();
        });
        return button;
    };
    optSelected =
        option("optSelected", QStringLiteral("&Selected tools (%L1)"), m_scope.selected.size());
    optShown = option("optShown", QStringLiteral("All tools sho&wn (%L1)"), m_scope.shown.size());
    // One selected tool is what every list has; several were meant.
    const QSignalBlocker blockers[] = {QSignalBlocker(optSelected), QSignalBlocker(optShown)};
    (m_scope.selected.size() > 1 ? optSelected : optShown)->setChecked(true);
    auto *row = new QHBoxLayout;
    row->addWidget(optSelected);
    row->addSpacing(12);
    row->addWidget(optShown);
    row->addStretch(1);
    return row;
}

QWidget *frmChangeTools::replacePage()
{
    auto *page = new QWidget(this);
    cboField = choice("cboField",
        {QStringLiteral("Location"), QStringLiteral("Command line"), QStringLiteral("Name")});
    cboSearch = choice("cboSearch",
        {QStringLiteral("Text"), QStringLiteral("Folder"), QStringLiteral("Regular expression")});
    cboSearch->setCurrentIndex(static_cast<int>(BulkChange::Search::Folder));
    const auto line = [this](const char *name) {
        auto *edit = named(name, new QLineEdit(this));
        edit->setMaxLength(BmtFormat::longestString);
        connect(edit, &QLineEdit::textChanged, this, [this] {
            cmdApply->setEnabled(false); // what is shown is not what is entered
            m_typing.start();
        });
        return edit;
    };
    txtFind = line("txtFind");
    txtReplace = line("txtReplace");
    chkMatchCase = named("chkMatchCase", new QCheckBox(QStringLiteral("Match &case"), this));
    connect(chkMatchCase, &QCheckBox::toggled, this, &frmChangeTools::refresh);
    lblHint = named("lblHint", new QLabel(this));
    lblHint->setTextFormat(Qt::PlainText);
    lblHint->setWordWrap(true);
    lblHint->setMinimumHeight(fontMetrics().height() * 2);
    lblHint->setAlignment(Qt::AlignTop | Qt::AlignLeft);

    auto *grid = new QGridLayout(page);
    const auto put = [&](int row, int column, const QString &caption, QWidget *control, int span) {
        auto *label = new QLabel(caption, page);
        label->setBuddy(control);
        control->setAccessibleName(QString(caption).remove(u'&').remove(u':'));
        grid->addWidget(label, row, column);
        grid->addWidget(control, row, column + 1, 1, span);
    };
    put(0, 0, QStringLiteral("&Field:"), cboField, 1);
    put(0, 2, QStringLiteral("Find &what:"), cboSearch, 1);
    grid->addWidget(chkMatchCase, 0, 4);
    put(1, 0, QStringLiteral("Fi&nd:"), txtFind, 4);
    put(2, 0, QStringLiteral("Replace &with:"), txtReplace, 4);
    grid->addWidget(lblHint, 3, 1, 1, 4);
    grid->setColumnStretch(4, 1);
    grid->setRowStretch(4, 1);
    return page;
}

QWidget *frmChangeTools::switchesPage()
{
    auto *page = new QWidget(this);
    auto *grid = new QGridLayout(page);
    const auto put = [&](int row, int column, const QString &caption, QWidget *control) {
        auto *label = new QLabel(caption, page);
        label->setBuddy(control);
        grid->addWidget(label, row, column);
        grid->addWidget(control, row, column + 1);
    };
    const QStringList states {
        QStringLiteral("as it is"), QStringLiteral("on"), QStringLiteral("off")};
    const std::pair<const char *, const char *> switches[] = {{"cboEnabled", "&Enabled:"},
        {"cboInToolBar", "Show in tool &bar:"}, {"cboInList", "Show in &list:"},
        {"cboOutOfProcess", "Run &out of process:"}};
    for (int i = 0; i < 4; ++i) {
        cboSwitch[static_cast<size_t>(i)] = choice(switches[i].first, states);
        put(i, 0, QString::fromLatin1(switches[i].second), cboSwitch[static_cast<size_t>(i)]);
    }
    QStringList kinds {QStringLiteral("as it is")};
    for (const char16_t *caption : ToolKinds::captions)
        kinds.append(QString::fromUtf16(caption));
    cboKind = choice("cboKind", kinds);
    put(0, 3, QStringLiteral("Tool t&ype:"), cboKind);
    chkPictures = named("chkPictures",
        new QCheckBox(QStringLiteral("Take &pictures again from the programs' files"), page));
    connect(chkPictures, &QCheckBox::toggled, this, &frmChangeTools::refresh);
    grid->addWidget(chkPictures, 1, 3, 1, 2);
    grid->setColumnMinimumWidth(2, 24);
    grid->setColumnStretch(5, 1);
    grid->setRowStretch(4, 1);
    return page;
}

QLayout *frmChangeTools::previewRows()
{
    tvwChanges = named("tvwChanges", new QTreeView(this));
    tvwChanges->setAccessibleName(QStringLiteral("Preview"));
    tvwChanges->setModel(m_changes);
    tvwChanges->setRootIsDecorated(false);
    tvwChanges->setItemsExpandable(false);
    tvwChanges->setUniformRowHeights(true);
    tvwChanges->setAllColumnsShowFocus(true);
    tvwChanges->setTextElideMode(Qt::ElideMiddle); // of paths, both ends matter
    const int letter = fontMetrics().averageCharWidth();
    const int widths[] = {letter * 24, letter * 19, letter * 32, letter * 32};
    for (int column = 0; column < ChangesModel::RemarkColumn; ++column)
        tvwChanges->setColumnWidth(column, widths[column]);
    auto *label =
        new QLabel(QStringLiteral("P&review; tools that are not ticked stay as they are:"));
    label->setBuddy(tvwChanges);
    cmdTickAll = named("cmdTickAll", new QPushButton(QStringLiteral("&Tick All"), this));
    cmdTickNone = named("cmdTickNone", new QPushButton(QStringLiteral("Tick N&one"), this));
    connect(cmdTickAll, &QPushButton::clicked, this, [this] { m_changes->setAllTicked(true); });
    connect(cmdTickNone, &QPushButton::clicked, this, [this] { m_changes->setAllTicked(false); });
    auto *rows = new QVBoxLayout;
    rows->addWidget(label);
    rows->addWidget(tvwChanges, 1);
    return rows;
}

QLayout *frmChangeTools::buttonRow()
{
    lblSummary = named("lblSummary", new QLabel(this));
    lblSummary->setTextFormat(Qt::PlainText);
    lblSummary->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    cmdApply = named("cmdApply", new QPushButton(QStringLiteral("&Apply"), this));
    cmdCancel = named("cmdCancel", new QPushButton(QStringLiteral("Cancel"), this));
    connect(cmdApply, &QPushButton::clicked, this, &frmChangeTools::cmdApply_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    auto *row = new QHBoxLayout;
    row->addWidget(cmdTickAll);
    row->addWidget(cmdTickNone);
    row->addWidget(lblSummary, 1);
    row->addWidget(cmdApply);
    row->addWidget(cmdCancel);
    // Return in a field must not change hundreds of tools.
    for (QPushButton *button : {cmdTickAll, cmdTickNone, cmdApply, cmdCancel})
        button->setAutoDefault(false);
    return row;
}

// --- What is entered ---

const QList<int> &frmChangeTools::positions() const
{
    return optSelected->isChecked() ? m_scope.selected : m_scope.shown;
}

BulkChange frmChangeTools::change() const
{
    BulkChange change;
    change.replacement = {static_cast<BulkChange::Field>(cboField->currentIndex()),
        static_cast<BulkChange::Search>(cboSearch->currentIndex()), txtFind->text(),
        txtReplace->text(), chkMatchCase->isChecked()};
    BulkChange::Switch *const switches[] = {
        &change.enabled, &change.inToolBar, &change.inList, &change.outOfProcess};
    for (size_t i = 0; i < cboSwitch.size(); ++i)
        *switches[i] = static_cast<BulkChange::Switch>(cboSwitch[i]->currentIndex());
    if (cboKind->currentIndex() > 0)
        change.kind = static_cast<qint16>(CVBATool::NoKind + cboKind->currentIndex() - 1);
    change.addedEvents = tvwEvents->added();
    change.removedEvents = tvwEvents->removed();
    return change;
}

QString frmChangeTools::hint() const
{
    const QString error = change().error();
    if (!error.isEmpty())
        return error;
    if (!m_preview.givenUp().isEmpty()) {
        return QStringLiteral("The regular expression needs too many steps for \"%1\" (%L2 tools "
                              "in all), so these texts stay as they are. Make it simpler.")
            .arg(m_preview.givenUp().constFirst()->Description)
            .arg(m_preview.givenUp().size());
    }
    switch (static_cast<BulkChange::Search>(cboSearch->currentIndex())) {
    case BulkChange::Search::Folder:
        return QStringLiteral("A folder with all that lies in it, such as C:\\Tools. \\ and / are "
                              "the same; upper and lower case differ only after a / at the start.");
    case BulkChange::Search::RegularExpression:
        return QStringLiteral("In the replacement $1 is the first group in brackets, $0 all that "
                              "was found, $$ a dollar sign.");
    default:
        return QStringLiteral("Every place where the text stands is replaced.");
    }
}

void frmChangeTools::refresh()
{
    if (!cmdApply) // still being made
        return;
    m_typing.stop();
    chkMatchCase->setEnabled(
        cboSearch->currentIndex() != static_cast<int>(BulkChange::Search::Folder));
    cmdApply->setEnabled(false);
    m_preview.start(change(), positions(), chkPictures->isChecked());
}

void frmChangeTools::ticksChanged()
{
    cmdApply->setEnabled(false);
    m_preview.setLeftOut(m_changes->leftOut());
}

// --- The preview ---

void frmChangeTools::progressed()
{
    lblSummary->setText(m_preview.progress());
}

void frmChangeTools::completed()
{
    m_changes->setPreview(m_preview.rows(), m_preview.leftOut());
    lblHint->setText(hint());
    lblSummary->setText(summary());
    cmdApply->setEnabled(!m_preview.changingRows().isEmpty());
    if (!tvwChanges->currentIndex().isValid() && m_changes->rowCount() > 0)
        tvwChanges->setCurrentIndex(m_changes->index(0, 0));
}

QString frmChangeTools::summary() const
{
    const auto rows = m_preview.rows();
    const auto changing = m_preview.changingRows();
    QString text = changing.size() == 1
        ? QStringLiteral("1 tool of %L1 changes.").arg(positions().size())
        : QStringLiteral("%L1 tools of %L2 change.").arg(changing.size()).arg(positions().size());
    qsizetype impossible = 0;
    qsizetype remarks = 0;
    for (const BulkChange::Row &row : rows)
        impossible += row.storable ? 0 : 1;
    for (const BulkChange::Row &row : changing)
        remarks += row.remark.isEmpty() ? 0 : 1;
    if (impossible > 0)
        text += QStringLiteral(" %L1 cannot be stored.").arg(impossible);
    if (remarks > 0)
        text += QStringLiteral(" %L1 with a remark.").arg(remarks);
    return text;
}

void frmChangeTools::cmdApply_Click()
{
    const Hourglass hourglass;
    BulkChange::apply(m_document, m_preview.changingRows());
    accept();
}
