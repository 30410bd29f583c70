#pragma once

#include <QDialog>

class CVBATools;
class QCheckBox;
class Printers;
class QLabel;
class QLineEdit;
class QPushButton;
class RTFEditor;
class ToolSetDocument;

/// The modal dialog for the values of a set as a whole: its descriptions and whether the add-in
/// lists it in its menu. OK is one operation of the document, if anything was changed.
class frmTSProps : public QDialog
{
    Q_OBJECT
public:
    /// The document is borrowed; its set is the one that `Toolset` is to be set to.
    explicit frmTSProps(ToolSetDocument &document, QWidget *parent = nullptr);

    /// Where the long description can be printed; borrowed.
    void setPrinters(Printers &printers);

    // --- Fields ---
    /// Borrowed; to be set before the dialog is shown. Null: nothing is shown and stored.
    const CVBATools *Toolset = nullptr;

protected:
    void showEvent(QShowEvent *event) override;
    void changeEvent(QEvent *event) override;

private Q_SLOTS:
    void cmdOK_Click();
    void cmdCancel_Click();

private:
    void Form_Load();
    void Form_Activate();

    ToolSetDocument &m_document;

    // --- Controls ---
    QLabel *lbl;
    QLineEdit *txtDescription;
    QLabel *Label1;
    RTFEditor *rtf;
    QCheckBox *chkHide;
    QPushButton *cmdOK;
    QPushButton *cmdCancel;

    bool m_loaded = false;
};
