#pragma once

#include <QComboBox>

/// The list of "drives" as people of today's desktops know them: the home folder and the mounted
/// volumes.
class DriveListBox : public QComboBox
{
    Q_OBJECT
public:
    explicit DriveListBox(QWidget *parent = nullptr);

    /// The root folder of the chosen drive.
    QString Drive() const;
    /// Chooses the drive in which the path lies: home where it lies there, else the volume.
    void setDrive(const QString &path);

Q_SIGNALS:
    void Change(); ///< Another drive was chosen, by the user or by setDrive().

private:
    void fill();
};
