#pragma once

#include <QDialog>

class CVBATools;
class QCheckBox;
class Printers;
class QLabel;
class QLineEdit;
class QPushButton;
class RTFEditor;

/// The modal dialog for the values of a set as a whole: its descriptions and whether the add-in
/// lists it in its menu. OK writes into the set; the caller compares the set's values when it wants
/// to know whether something changed.
class frmTSProps : public QDialog
{
    Q_OBJECT
public:
    explicit frmTSProps(QWidget *parent = nullptr);

    /// Where the long description can be printed; borrowed.
    void setPrinters(Printers &printers);

    // --- Fields ---
    CVBATools *Toolset = nullptr; ///< Borrowed; to be set before the dialog is shown.

protected:
    void showEvent(QShowEvent *event) override;
    void changeEvent(QEvent *event) override;

private Q_SLOTS:
    void cmdOK_Click();
    void cmdCancel_Click();

private:
    void Form_Load();
    void Form_Activate();

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
