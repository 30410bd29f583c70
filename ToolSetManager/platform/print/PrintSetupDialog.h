#pragma once

#include <QDialog>

class Printers;
class QComboBox;
class QDialogButtonBox;
class QLabel;
class QPageSize;
class QRadioButton;

/// The printer set-up: chooses the printer, its paper and which way round it is used.
class PrintSetupDialog : public QDialog
{
    Q_OBJECT
public:
    /// Shows the present choice of \a printers; OK changes it, Cancel leaves it alone.
    explicit PrintSetupDialog(Printers &printers, QWidget *parent = nullptr);

    /// Makes it the question before a text is printed: all of it or, which is chosen at first where
    /// there is a selection, only that.
    void askWhatToPrint(bool hasSelection);
    bool selectionOnly() const;

private:
    void showPrinter();
    void showPaper(const QPageSize &size); ///< Chooses that one, where it is offered.
    void showOrientation();
    void accept() override;
    QPageSize chosenPaper() const;

    Printers &m_printers;
    QComboBox *cboPrinter;
    QLabel *lblPrinter;
    QComboBox *cboPaper;
    QRadioButton *optPortrait;
    QRadioButton *optLandscape;
    QLabel *lblSheet; ///< A drawing of the sheet.
    QRadioButton *optSelection = nullptr; ///< Only where it is asked what to print.
    QDialogButtonBox *m_buttons;
};
