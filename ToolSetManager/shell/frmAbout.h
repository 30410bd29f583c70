#pragma once

#include <QDialog>

/// The about box: name, version, toolkit and licence of the program.
class frmAbout : public QDialog
{
    Q_OBJECT
public:
    explicit frmAbout(QWidget *parent);
};
