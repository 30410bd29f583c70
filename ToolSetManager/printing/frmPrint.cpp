#include "printing/frmPrint.h"

#include "model/CVBATools.h"
#include "platform/VbError.h"
#include "platform/desktop/ButtonIcons.h"
#include "platform/desktop/HelpTopic.h"
#include "platform/desktop/Hourglass.h"
#include "platform/desktop/Icons.h"
#include "platform/desktop/MWindowPosition.h"
#include "platform/desktop/MsgBox.h"
#include "platform/desktop/StatusBar.h"
#include "platform/desktop/Toolbar.h"
#include "platform/print/PagePreview.h"
#include "platform/print/PageThumbnails.h"
#include "platform/print/PdfPath.h"
#include "platform/print/PrintJob.h"
#include "platform/print/Printers.h"
#include "printing/PrintProgress.h"
#include "report/ToolsetReport.h"

#include <QApplication>
#include <QComboBox>
#include <QFileInfo>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QVBoxLayout>

namespace {

using Text = QLatin1StringView;

constexpr int pagesPanel = 1;
constexpr int resultPanel = 2;

struct Button
{
    Text key; ///< The tool tip too.
    Text icon;
    QStyle::StandardPixmap fallback;
};
constexpr Button buttons[] = {
    {Text("First"), Text("go-first"), QStyle::SP_MediaSkipBackward},
    {Text("Previous"), Text("go-previous"), QStyle::SP_ArrowLeft},
    {Text("Next"), Text("go-next"), QStyle::SP_ArrowRight},
    {Text("Last"), Text("go-last"), QStyle::SP_MediaSkipForward},
    {Text("Print"), Text("document-print"), QStyle::SP_FileIcon},
};
/// How the pages are shown; they stay pressed.
struct ViewButton
{
    Text key;
    Text caption;
    Text icon;
    QStyle::StandardPixmap fallback;
    QKeyCombination shortcut;
};
constexpr ViewButton viewButtons[] = {
    {Text("FitWidth"), Text("Fit Width"), Text("zoom-fit-width"), QStyle::SP_TitleBarMaxButton,
        Qt::ALT | Qt::Key_W},
    {Text("WholePage"), Text("Whole Page"), Text("zoom-fit-page"), QStyle::SP_TitleBarNormalButton,
        Qt::ALT | Qt::Key_P},
    {Text("TwoPages"), Text("Two Pages"), Text("view-pages-facing"), QStyle::SP_FileDialogListView,
        Qt::ALT | Qt::Key_2},
    {Text("Thumbnails"), Text("Page Thumbnails"), Text("view-list-icons"),
        QStyle::SP_FileDialogDetailedView, Qt::ALT | Qt::Key_T},
};
constexpr Text zooms[] = {Text("50"), Text("75"), Text("100"), Text("150"), Text("200")};
constexpr int wholeSize = 2; ///< Index of "100".

QString positionName()
{
    return QString::fromUtf16(MWindowPosition::preview);
}

QString reportTitle()
{
    return QStringLiteral("VB Quillon");
}

QString noPrinterText()
{
    return QStringLiteral("VB Quillon cannot access the printer or cannot start the print job.  "
                          "A printer may not be available or installed.");
}

} // namespace

frmPrint::frmPrint(SettingsStore &store, const Printers &printers, QWidget *parent)
    : QDialog(parent,
        Qt::Window | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowMinMaxButtonsHint
            | Qt::WindowCloseButtonHint)
    , m_store(store)
    , m_printers(printers)
    , toolbar(new Toolbar(QStringLiteral("Report"), this))
    , cboZoom(new QComboBox)
    , cmdClose(new QPushButton(QStringLiteral("Close")))
    , prtStatus(new PagePreview)
    , lvPages(new PageThumbnails(prtStatus->document()))
    , status(new StatusBar({1, 3}, this))
{
    setObjectName(QStringLiteral("frmPrint"));
    setWindowTitle(QStringLiteral("Tool Set Report"));
    makeControls();
}

void frmPrint::makeControls()
{
    toolbar->setObjectName(QStringLiteral("toolbar"));
    cboZoom->setObjectName(QStringLiteral("cboZoom"));
    cmdClose->setObjectName(QStringLiteral("cmdClose"));
    prtStatus->setObjectName(QStringLiteral("prtStatus"));
    lvPages->setObjectName(QStringLiteral("lvPages"));
    lvPages->hide();
    status->setObjectName(QStringLiteral("status"));
    ButtonIcons::giveClose(*cmdClose);
    HelpTopic::set(*this, "printing");
    makeToolbar();
    layOut();
    connect(toolbar, &Toolbar::ButtonClick, this, &frmPrint::toolbar_ButtonClick);
    connect(cboZoom, &QComboBox::activated, this, &frmPrint::cboZoom_Click);
    connect(cmdClose, &QPushButton::clicked, this, &frmPrint::cmdClose_Click);
    connectPreview();
    connect(this, &frmPrint::produced, this, [this](const QString &text, const QString &file) {
        status->showResult(resultPanel, text, file);
    });
}

void frmPrint::makeToolbar()
{
    for (const Button &each : buttons) {
        QAction *action = toolbar->addButton(each.key, each.key);
        action->setIcon(Icons::named(each.icon, each.fallback));
    }
    toolbar->addSeparator();
    auto *zoomLabel = new QLabel(QStringLiteral(" &Zoom: "));
    zoomLabel->setBuddy(cboZoom);
    toolbar->addWidget(zoomLabel);
    for (const Text zoom : zooms)
        cboZoom->addItem(zoom);
    cboZoom->setToolTip(QStringLiteral("Per cent of the real size"));
    QPalette colours = cboZoom->palette(); // what a fit makes of the zoom is no mere hint
    colours.setColor(QPalette::PlaceholderText, colours.color(QPalette::ButtonText));
    cboZoom->setPalette(colours);
    toolbar->addWidget(cboZoom);
    toolbar->addWidget(new QLabel(QStringLiteral(" % ")));
    toolbar->addSeparator();
    for (const ViewButton &each : viewButtons) {
        QAction *action = toolbar->addButton(each.key, each.caption, true);
        action->setIcon(Icons::named(each.icon, each.fallback));
        action->setShortcut(each.shortcut);
        action->setToolTip(each.caption + QStringLiteral(" (")
            + action->shortcut().toString(QKeySequence::NativeText) + u')');
    }
    auto *space = new QWidget;
    space->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    toolbar->addWidget(space);
    cmdClose->setAutoDefault(false);
    toolbar->addWidget(cmdClose);
}

void frmPrint::layOut()
{
    auto *pages = new QHBoxLayout;
    pages->setSpacing(0);
    pages->addWidget(lvPages);
    pages->addWidget(prtStatus, 1);
    auto *all = new QVBoxLayout(this);
    all->setContentsMargins(0, 0, 0, 0);
    all->setSpacing(0);
    all->addWidget(toolbar);
    all->addLayout(pages, 1);
    all->addWidget(status);
}

void frmPrint::connectPreview()
{
    const auto press = [this](Text key) {
        return [this, key] {
            if (m_pages.isEnabled(key))
                toolbar_ButtonClick(key);
        };
    };
    connect(prtStatus, &PagePreview::firstWanted, this, press(Text("First")));
    connect(prtStatus, &PagePreview::previousWanted, this, press(Text("Previous")));
    connect(prtStatus, &PagePreview::nextWanted, this, press(Text("Next")));
    connect(prtStatus, &PagePreview::lastWanted, this, press(Text("Last")));
    connect(prtStatus, &PagePreview::zoomWanted, this, &frmPrint::stepZoom);
    connect(prtStatus, &PagePreview::zoomChanged, this, &frmPrint::showZoom);
    connect(prtStatus, &PagePreview::pageWanted, this, &frmPrint::goToPage);
    connect(lvPages, &PageThumbnails::pageWanted, this, &frmPrint::goToPage);
    connect(new QShortcut(QKeySequence::Print, this), &QShortcut::activated, this,
        press(Text("Print")));
}

void frmPrint::setReport(const OtherReport &report)
{
    m_other = report;
    setWindowTitle(report.title);
}

// --- Operations ---

void frmPrint::PreviewToolset()
{
    if (Form_Load())
        exec();
}

void frmPrint::PrintToolset()
{
    // Asked first, because writing the report may take a while.
    const auto path = choosePath();
    if (path && WriteToolsetReport())
        PrintDoc(*path);
}

bool frmPrint::Form_Load()
{
    Hourglass busy;
    cboZoom->setCurrentIndex(wholeSize);
    prtStatus->setZoom(cboZoom->currentText().toInt());
    const bool written = WriteToolsetReport();
    if (!written && prtStatus->document().Error() == PageDocument::NoError)
        return false; // cancelled: there is nothing to show, and the user knows why

    // Room for a whole page where the screen has it; the stored size outranks this.
    const QSize page = prtStatus->sheetSize()
        + QSize(2 * prtStatus->fontMetrics().height() + 24,
            24 + toolbar->sizeHint().height() + status->sizeHint().height());
    resize(page.boundedTo(screen()->availableSize() * 9 / 10).expandedTo({480, 360}));
    MWindowPosition::RestoreWindowPosition(m_store, positionName(), *this);
    MWindowPosition::WriteWhenChanged(m_store, positionName(), *this);

    m_pages = PreviewPages(prtStatus->PageCount());
    lvPages->refresh();
    for (const ViewButton &each : viewButtons)
        toolbar->button(each.key)->setEnabled(m_pages.count() > 0);
    toolbar->button(QStringLiteral("TwoPages"))->setEnabled(m_pages.count() > 1);
    showPage();
    prtStatus->setFocus();
    return true;
}

void frmPrint::Form_QueryUnload()
{
    try {
        MWindowPosition::SaveWindowPosition(m_store, positionName(), *this);
    } catch (const VbError &) {
        // The window closes all the same; its place stays as it was stored before.
    }
}

void frmPrint::done(int result)
{
    if (isVisible())
        Form_QueryUnload();
    QDialog::done(result);
}

// --- The report ---

bool frmPrint::WriteToolsetReport()
{
    PageDocument &page = prtStatus->document();
    QString message;
    {
        Hourglass busy;
        page.StartDoc(m_printers.paper());
        switch (page.Error()) {
        case PageDocument::NoError: {
            const bool written = write(page);
            if (!written)
                page.Clear();
            return written;
        }
        case PageDocument::NoPrinter:
        case PageDocument::CannotStart:
            message = noPrinterText();
            break;
        default:
            message = QStringLiteral(
                "An unexpected error occurred while attempting to initialize the printer.");
        }
    }
    QApplication::beep();
    MsgBox::show(
        parentWidget(), message, MsgBox::Buttons::Ok, MsgBox::Icon::Exclamation, reportTitle());
    return false;
}

bool frmPrint::write(PageDocument &page)
{
    if (m_other.write) {
        PrintProgress progress(owner(), m_other.progressText, m_other.steps);
        return m_other.write(page, [&progress](int done) { return progress.step(done); });
    }
    PrintProgress progress(owner(), QStringLiteral("Writing tool %1 of %2"), ToolSet->Count());
    return ToolsetReport::write(
        page, *ToolSet, FileName, [&progress](int done) { return progress.step(done); });
}

QWidget *frmPrint::owner()
{
    return isVisible() ? this : parentWidget();
}

std::optional<QString> frmPrint::choosePath()
{
    if (m_printers.name() != Printers::pdfFile())
        return QString();
    const QFileInfo set(FileName);
    QString proposed =
        FileName.isEmpty() ? windowTitle() : set.path() + u'/' + set.completeBaseName();
    if (m_other.write && !FileName.isEmpty())
        proposed += QStringLiteral(" - ") + windowTitle(); // not over the listing
    const QString path = askForPdfPath(owner(), proposed);
    return path.isEmpty() ? std::nullopt : std::optional(path);
}

void frmPrint::PrintDoc(const QString &path)
{
    const PageDocument &document = prtStatus->document();
    const QString setName = QFileInfo(FileName).completeBaseName();
    PrintJob job(m_printers,
        setName.isEmpty() ? windowTitle() : windowTitle() + QStringLiteral(" - ") + setName);
    job.setFileName(path);
    {
        Hourglass busy;
        PrintProgress progress(
            owner(), QStringLiteral("Printing page %1 of %2"), document.PageCount());
        bool going = job.start();
        for (int page = 1; going && page <= document.PageCount(); ++page) {
            if (page > 1)
                job.newPage();
            document.draw(job.painter(), page);
            if (!progress.step(page))
                return; // the job is given up: nothing is printed
        }
        if (going && job.end()) {
            tellProduced(path);
            return;
        }
    }
    const QString message =
        path.isEmpty() ? noPrinterText() : QStringLiteral("\"%1\" cannot be written.").arg(path);
    MsgBox::show(owner(), message + QStringLiteral("\n\n") + job.errorText(), MsgBox::Buttons::Ok,
        MsgBox::Icon::Exclamation, reportTitle());
}

void frmPrint::tellProduced(const QString &path)
{
    const int count = prtStatus->PageCount();
    const QString pages =
        count == 1 ? QStringLiteral("1 page") : QStringLiteral("%1 pages").arg(count);
    Q_EMIT produced(path.isEmpty()
            ? pages + QStringLiteral(" sent to \"%1\"").arg(m_printers.name())
            : pages + QStringLiteral(" written to \"%1\"").arg(QFileInfo(path).fileName()),
        path);
}

// --- The preview ---

void frmPrint::toolbar_ButtonClick(const QString &key)
{
    if (key == Text("Print")) {
        if (const auto path = choosePath())
            PrintDoc(*path);
        prtStatus->setFocus();
        return;
    }
    Hourglass busy;
    if (changeView(key))
        return;
    m_pages.go(key);
    showPage();
}

bool frmPrint::changeView(const QString &key)
{
    using Fit = PagePreview::Fit;
    const auto fitOr = [this](Fit fit) { return prtStatus->fit() == fit ? Fit::None : fit; };
    if (key == Text("FitWidth"))
        prtStatus->setFit(fitOr(Fit::Width));
    else if (key == Text("WholePage"))
        prtStatus->setFit(fitOr(Fit::WholePage));
    else if (key == Text("TwoPages"))
        prtStatus->setTwoPages(!prtStatus->twoPages());
    else if (key == Text("Thumbnails"))
        lvPages->setVisible(!lvPages->isVisible());
    else
        return false;
    showZoom();
    if (!lvPages->hasFocus())
        prtStatus->setFocus();
    return true;
}

void frmPrint::goToPage(int page)
{
    m_pages.goTo(page);
    showPage();
}

void frmPrint::showPage()
{
    prtStatus->setPreviewPage(m_pages.shown());
    lvPages->setCurrentPage(m_pages.shown());
    for (const Button &each : buttons)
        toolbar->button(each.key)->setEnabled(m_pages.isEnabled(each.key));
    status->setPanelText(pagesPanel, m_pages.panelText());
}

void frmPrint::cboZoom_Click()
{
    Hourglass busy;
    // No drawing at a size in between.
    prtStatus->setUpdatesEnabled(false);
    prtStatus->setZoom(cboZoom->currentText().toInt());
    prtStatus->setUpdatesEnabled(true);
    showZoom();
    prtStatus->setFocus();
}

void frmPrint::showZoom()
{
    const QString zoom = QString::number(prtStatus->Zoom());
    const bool fits = prtStatus->fit() != PagePreview::Fit::None;
    cboZoom->setPlaceholderText(zoom);
    cboZoom->setCurrentIndex(fits ? -1 : cboZoom->findText(zoom));
    toolbar->setPressed(QStringLiteral("FitWidth"), prtStatus->fit() == PagePreview::Fit::Width);
    toolbar->setPressed(
        QStringLiteral("WholePage"), prtStatus->fit() == PagePreview::Fit::WholePage);
    toolbar->setPressed(QStringLiteral("TwoPages"), prtStatus->twoPages());
    toolbar->setPressed(QStringLiteral("Thumbnails"), lvPages->isVisibleTo(this));
}

void frmPrint::stepZoom(int steps)
{
    // From a zoom that is none of the entries to the nearest one on that side.
    int larger = 0;
    while (larger < cboZoom->count() && cboZoom->itemText(larger).toInt() <= prtStatus->Zoom())
        ++larger;
    int smaller = larger;
    while (smaller > 0 && cboZoom->itemText(smaller - 1).toInt() >= prtStatus->Zoom())
        --smaller;
    const int index = steps > 0 ? larger : smaller - 1;
    if (index < 0 || index >= cboZoom->count())
        return;
    cboZoom->setCurrentIndex(index);
    cboZoom_Click();
}

void frmPrint::cmdClose_Click()
{
    close();
}
