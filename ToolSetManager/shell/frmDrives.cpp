#include "shell/frmDrives.h"

#include "platform/VbError.h"
#include "platform/desktop/MsgBox.h"
#include "platform/desktop/SettingsStore.h"
#include "shell/Settings.h"
#include "shell/ToolPlaces.h"

#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

frmDrives::frmDrives(SettingsStore &store, QWidget *parent)
    : QDialog(parent)
    , m_store(store)
    , m_wine(DosDrives::ofWine())
    , m_stored(ToolPlaces::namedDrives(store))
    , m_drives(m_stored)
    , cboDrive(new QComboBox(this))
    , txtFolder(new QLineEdit(this))
    , cmdBrowse(new QPushButton(QStringLiteral("&Browse..."), this))
    , cmdOK(new QPushButton(QStringLiteral("OK"), this))
    , cmdCancel(new QPushButton(QStringLiteral("Cancel"), this))
{
    setObjectName(QStringLiteral("frmDrives"));
    setWindowTitle(QStringLiteral("Drives"));
    auto *text = new QLabel(
        QStringLiteral("Locations such as C:\\Tools\\x.exe are looked up in the folder that stands "
                       "for the drive on this computer."),
        this);
    text->setWordWrap(true);
    auto *grid = new QGridLayout(this);
    grid->addWidget(text, 0, 0, 1, 3);
    const auto row = [&](int at, const QString &label, const QString &name, QWidget *control) {
        auto *caption = new QLabel(label, this);
        caption->setBuddy(control);
        control->setObjectName(name);
        grid->addWidget(caption, at, 0);
        grid->addWidget(control, at, 1, 1, at == 1 ? 2 : 1);
    };
    row(1, QStringLiteral("&Drive:"), QStringLiteral("cboDrive"), cboDrive);
    row(2, QStringLiteral("&Folder:"), QStringLiteral("txtFolder"), txtFolder);
    grid->addWidget(cmdBrowse, 2, 2);
    grid->setRowStretch(3, 1);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    grid->addLayout(buttons, 4, 0, 1, 3);
    txtFolder->setMinimumWidth(fontMetrics().averageCharWidth() * 44);
    cmdBrowse->setObjectName(QStringLiteral("cmdBrowse"));
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setDefault(true);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));

    for (char each = 'A'; each <= 'Z'; ++each)
        cboDrive->addItem(caption(QLatin1Char(each)));
    cboDrive->setCurrentIndex('C' - 'A');
    cboDrive_Click();
    connect(cboDrive, &QComboBox::currentIndexChanged, this, &frmDrives::cboDrive_Click);
    connect(txtFolder, &QLineEdit::textEdited, this, &frmDrives::txtFolder_Change);
    connect(cmdBrowse, &QPushButton::clicked, this, &frmDrives::cmdBrowse_Click);
    connect(cmdOK, &QPushButton::clicked, this, &frmDrives::cmdOK_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
}

QChar frmDrives::letter() const
{
    return QLatin1Char(static_cast<char>('A' + cboDrive->currentIndex()));
}

QString frmDrives::caption(QChar letter) const
{
    const QString name = QString(letter) + u':';
    if (!m_drives.folder(letter).isEmpty())
        return name + u' ' + m_drives.folder(letter);
    const QString wine = m_wine.folder(letter);
    return wine.isEmpty() ? name : QStringLiteral("%1 %2 (Wine)").arg(name, wine);
}

void frmDrives::cboDrive_Click()
{
    const QString wine = m_wine.folder(letter());
    txtFolder->setText(m_drives.folder(letter()));
    txtFolder->setPlaceholderText(
        wine.isEmpty() ? QStringLiteral("none") : QStringLiteral("that of Wine: ") + wine);
}

void frmDrives::txtFolder_Change()
{
    m_drives.assign(letter(), txtFolder->text().trimmed());
    cboDrive->setItemText(cboDrive->currentIndex(), caption(letter()));
}

void frmDrives::cmdBrowse_Click()
{
    QFileDialog dialog(this, QStringLiteral("Folder of Drive %1:").arg(letter()));
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
    if (!txtFolder->text().isEmpty())
        dialog.setDirectory(txtFolder->text());
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return;
    txtFolder->setText(dialog.selectedFiles().constFirst());
    txtFolder_Change();
}

void frmDrives::cmdOK_Click()
{
    QList<QPair<QString, QString>> changed;
    for (char each = 'A'; each <= 'Z'; ++each) {
        const QString folder = m_drives.folder(QLatin1Char(each));
        if (folder == m_stored.folder(QLatin1Char(each)))
            continue;
        if (!folder.isEmpty() && !QDir::isAbsolutePath(folder)) {
            cboDrive->setCurrentIndex(each - 'A');
            MsgBox::show(this,
                QStringLiteral("The folder of a drive needs its whole path, such as %1.")
                    .arg(QDir::toNativeSeparators(QDir::homePath() + QStringLiteral("/tools"))),
                MsgBox::Buttons::Ok, MsgBox::Icon::Exclamation);
            return;
        }
        changed.append({QString(QLatin1Char(each)) + u':', folder});
    }
    try {
        m_store.SaveSettings(QString::fromUtf16(Settings::application),
            QString::fromUtf16(ToolPlaces::drivesSection), changed);
    } catch (const VbError &error) {
        MsgBox::show(this, error.description(), MsgBox::Buttons::Ok, MsgBox::Icon::Exclamation);
        return;
    }
    accept();
}
