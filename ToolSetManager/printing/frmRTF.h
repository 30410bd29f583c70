#pragma once

#include <QWidget>

class Printers;
class QLabel;
class QPushButton;
class RichTextBox;
class RTFPrinter;

/// Prints one rich text with a numbered footer, showing the page being printed; the user can
/// cancel. It deletes itself when printing has ended.
class frmRTF : public QWidget
{
    Q_OBJECT
public:
    /// The printers are borrowed.
    explicit frmRTF(const Printers &printers, QWidget *parent = nullptr);

    void setDocumentText(const QString &rtf);
    /// Shows the window, prints and closes it. Throws VbError when the printer or the file
    /// refuses. The printer "PDF File" asks for its path first; cancelled, nothing is printed.
    void PrintDocument();

protected:
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private Q_SLOTS:
    void rtfPrint_BeginPage(int Page);
    void rtfPrint_EndDocument();
    void cmdCancel_Click();

private:
    void Form_Load();

    const Printers &m_printers;

    // --- Controls ---
    RichTextBox *rtfHeader;
    RichTextBox *rtfFooter;
    RichTextBox *rtfDocument;
    QLabel *lblMsg;
    QPushButton *cmdCancel;

    RTFPrinter *rtfPrint;
    bool m_printing = false;
};
