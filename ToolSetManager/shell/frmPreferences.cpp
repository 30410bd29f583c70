#include "shell/frmPreferences.h"

#include "platform/VbError.h"
#include "platform/desktop/MWindowPosition.h"
#include "platform/desktop/MsgBox.h"
#include "platform/desktop/SettingsStore.h"
#include "platform/desktop/Theme.h"
#include "shell/Settings.h"
#include "shell/frmDrives.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

QString application()
{
    return QString::fromUtf16(Settings::application);
}

} // namespace

frmPreferences::frmPreferences(
    SettingsStore &store, const Settings &settings, Theme &theme, QWidget *parent)
    : QDialog(parent)
    , m_store(store)
    , m_theme(theme)
    , cboTheme(new QComboBox(this))
    , cmdDrives(new QPushButton(QStringLiteral("&Drives..."), this))
    , cmdReset(new QPushButton(QStringLiteral("&Reset Window Places"), this))
{
    setObjectName(QStringLiteral("frmPreferences"));
    setWindowTitle(QStringLiteral("Preferences"));
    cboTheme->setObjectName(QStringLiteral("cboTheme"));
    cboTheme->addItems({QStringLiteral("As the desktop"), QStringLiteral("Light"),
        QStringLiteral("Dark")}); // in the order of Theme::Choice
    cboTheme->setCurrentIndex(theme.choice());
    cmdDrives->setObjectName(QStringLiteral("cmdDrives"));
    cmdReset->setObjectName(QStringLiteral("cmdReset"));

    auto *form = new QFormLayout;
    auto *lblTheme = new QLabel(QStringLiteral("&Colours:"), this);
    lblTheme->setBuddy(cboTheme);
    form->addRow(lblTheme, cboTheme);
    form->addRow(
        new QLabel(QStringLiteral("Folders that stand for C: and other drives:"), this), cmdDrives);
    form->addRow(
        new QLabel(QStringLiteral("Size and place of the main window and the preview:"), this),
        cmdReset);
    auto *buttons =
        new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, Qt::Horizontal, this);
    auto *column = new QVBoxLayout(this);
    column->addLayout(form);
    column->addWidget(makeAddInSettings(settings));
    column->addStretch(1);
    column->addWidget(buttons);

    connect(cmdDrives, &QPushButton::clicked, this, [this] { frmDrives(m_store, this).exec(); });
    connect(cmdReset, &QPushButton::clicked, this, &frmPreferences::cmdReset_Click);
    connect(buttons, &QDialogButtonBox::accepted, this, &frmPreferences::cmdOK_Click);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

QWidget *frmPreferences::makeAddInSettings(const Settings &settings)
{
    auto *group = new QGroupBox(QStringLiteral("Set by the add-in"), this);
    auto *form = new QFormLayout(group);
    const auto row = [&](const QString &caption, const QString &value) {
        auto *field = new QLineEdit(value, group);
        field->setReadOnly(true);
        field->setMinimumWidth(fontMetrics().averageCharWidth() * 50);
        field->setCursorPosition(0);
        auto *label = new QLabel(caption, group);
        label->setBuddy(field);
        form->addRow(label, field);
    };
    const auto yesNo = [](bool on) { return on ? QStringLiteral("yes") : QStringLiteral("no"); };
    row(QStringLiteral("&Tool sets:"), settings.ToolsetPath());
    row(QStringLiteral("&Macros:"), settings.MacroPath());
    row(QStringLiteral("D&efault tool set:"), settings.DefaultToolset());
    row(QStringLiteral("&Permanent tool set:"), settings.PermanentToolSet());
    row(QStringLiteral("&Hot keys:"), yesNo(settings.EnableHotkeys()));
    row(QStringLiteral("E&vents:"), yesNo(settings.VBEvents()));
    return group;
}

void frmPreferences::restoreTheme(const SettingsStore &store, Theme &theme)
{
    theme.choose(Theme::fromWord(store.GetSetting(
        application(), QString::fromUtf16(section), QString::fromUtf16(themeKey))));
}

void frmPreferences::cmdReset_Click()
{
    try {
        for (const char16_t *name : {MWindowPosition::mainWindow, MWindowPosition::preview})
            MWindowPosition::ForgetWindowPosition(m_store, QString::fromUtf16(name));
    } catch (const VbError &error) {
        MsgBox::show(this, error.description(), MsgBox::Buttons::Ok, MsgBox::Icon::Exclamation);
        return;
    }
    if (parentWidget())
        MWindowPosition::Center(*parentWidget()->window());
}

void frmPreferences::cmdOK_Click()
{
    const auto choice = static_cast<Theme::Choice>(cboTheme->currentIndex());
    if (choice != m_theme.choice()) {
        try {
            m_store.SaveSetting(application(), QString::fromUtf16(section),
                QString::fromUtf16(themeKey), Theme::word(choice));
        } catch (const VbError &error) {
            MsgBox::show(this, error.description(), MsgBox::Buttons::Ok, MsgBox::Icon::Exclamation);
            return;
        }
        m_theme.choose(choice);
    }
    accept();
}
