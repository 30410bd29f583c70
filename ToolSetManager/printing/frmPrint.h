#pragma once

#include "printing/PreviewPages.h"
#include "report/ToolsetReport.h"

#include <QDialog>

#include <functional>
#include <optional>

class CVBATools;
class PageDocument;
class PagePreview;
class PageThumbnails;
class Printers;
class QComboBox;
class QPushButton;
class SettingsStore;
class StatusBar;
class Toolbar;

/// The report of a tool set, or another report about one: shown page by page, or printed without
/// being shown. One use each.
class frmPrint : public QDialog
{
    Q_OBJECT
public:
    /// What is handed in is borrowed.
    frmPrint(SettingsStore &store, const Printers &printers, QWidget *parent = nullptr);

    // --- To be set before either operation ---
    const CVBATools *ToolSet = nullptr;
    QString FileName; ///< Path of the set; stands in the header.

    /// A report that is not the listing of the tools; ToolSet is not needed then.
    struct OtherReport
    {
        QString title; ///< Of the window and the print job.
        QString progressText; ///< "%1" is the step, "%2" their number.
        int steps = 0;
        std::function<bool(PageDocument &page, const ToolsetReport::Progress &progress)> write;
    };
    void setReport(const OtherReport &report);

    // --- Operations ---
    void PreviewToolset(); ///< Shows the window and returns when the user has closed it.
    void PrintToolset(); ///< Prints the whole report; the window is not shown.

    void done(int result) override;

Q_SIGNALS:
    /// Pages were printed or written: what to tell the user, and the file, if it is one.
    void produced(const QString &text, const QString &file);

private Q_SLOTS:
    void toolbar_ButtonClick(const QString &key);
    void cboZoom_Click();
    void cmdClose_Click();

private:
    void makeControls();
    void makeToolbar();
    void layOut();
    void connectPreview();
    /// False when the user has cancelled the report. Without a printer it is empty.
    bool Form_Load();
    void Form_QueryUnload();
    /// Lays the report out. False when there is no report: a message has told why, or the user
    /// has cancelled it.
    bool WriteToolsetReport();
    bool write(PageDocument &page); ///< False when the user has cancelled.
    /// Where the printer "PDF File" shall write to; empty for other printers, nothing when the user
    /// cancels.
    std::optional<QString> choosePath();
    void PrintDoc(const QString &path);
    QWidget *owner(); ///< Of the dialogs: this window where it is shown.
    void tellProduced(const QString &path);
    /// Runs one of the buttons that say how the pages are shown; false for other keys.
    bool changeView(const QString &key);
    void showPage();
    void goToPage(int page);
    void stepZoom(int steps);
    void showZoom(); ///< In the box, which has no entry for what a fit makes of it.

    SettingsStore &m_store;
    const Printers &m_printers;

    // --- Controls ---
    Toolbar *toolbar;
    QComboBox *cboZoom;
    QPushButton *cmdClose;
    PagePreview *prtStatus;
    PageThumbnails *lvPages;
    StatusBar *status;

    PreviewPages m_pages;
    OtherReport m_other; ///< Without a writer: none.
};
