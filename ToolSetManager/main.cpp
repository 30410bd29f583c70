#include "compare/CompareCommands.h"
#include "model/ToolSetStorage.h"
#include "platform/desktop/InformationOptions.h"
#include "platform/desktop/ProgramEnd.h"
#include "platform/desktop/SettingsStore.h"
#include "platform/desktop/SingleInstance.h"
#include "platform/desktop/Theme.h"
#include "platform/desktop/mFileUtil.h"
#include "platform/print/Printers.h"
#include "shell/MDI.h"
#include "shell/Settings.h"
#include "shell/frmPreferences.h"
#include "shell/mTSM.h"
#include "toolset/frmToolSet.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QIcon>
#include <QStandardPaths>

#include <cstdio>

namespace {

constexpr char usage[] =
    R"(Usage: ToolSetManager [FILE]
Makes and edits tool sets of the VB Quillon add-in. FILE is a tool set (*.bmt) to open.

The program runs once in a session: a second start brings the running window to the front and opens
nothing. "ToolSetManager-open FILE..." opens files in the running window.

  --help     prints this text
  --version  prints the version)";

/// The command line's words as one path. A relative one becomes absolute when it names a file,
/// because recent files are opened from other folders than this.
QString pathFromCommandLine(const QStringList &arguments)
{
    QString path = arguments.mid(1).join(u' ');
    const QFileInfo file(path);
    const bool blank = path.count(u' ') == path.size();
    if (!blank && file.isRelative() && file.exists())
        return QDir::toNativeSeparators(file.absoluteFilePath());
    return path;
}

void complain(const char *text)
{
    std::fprintf(stderr, "ToolSetManager: %s\n", text);
}

} // namespace

int main(int argc, char *argv[])
{
    if (InformationOptions::answered(argc, argv, usage))
        return 0;
    QApplication application(argc, argv);
    QApplication::setApplicationName(QString::fromUtf16(MDI::caption));
    QApplication::setApplicationVersion(QStringLiteral(TSM_VERSION));
    QApplication::setDesktopFileName(QStringLiteral("org.vbquillon.ToolSetManager"));

    SingleInstance instance(QString::fromUtf16(MDI::windowClass), QString::fromUtf16(MDI::caption));
    if (!instance.claim()) {
        if (!instance.askFirstToComeForward())
            complain("the Tool Set Manager does not answer");
        if (!pathFromCommandLine(QCoreApplication::arguments()).trimmed().isEmpty())
            complain("it runs already; use ToolSetManager-open to open a file in its window");
        return 0;
    }

    SettingsStore store;
    Settings settings(mFileUtil::ProgramFolder());
    ToolSetStorage storage(CodePage::systemNumber(),
        QStandardPaths::writableLocation(QStandardPaths::CacheLocation),
        QStandardPaths::writableLocation(QStandardPaths::AppDataLocation));
    const ProgramEnd end([&storage] { storage.snapshots.writeAll(); });
    Theme theme;
    frmPreferences::restoreTheme(store, theme);
    Printers printers;
    mTSM state;
    const auto makeDocument = [&](Frame &frame) -> DocumentWindow * {
        return new frmToolSet(frame, state, settings, store, storage, printers);
    };
    MDI frame(
        state, settings, store, makeDocument, pathFromCommandLine(QCoreApplication::arguments()));
    new CompareCommands(frame, settings, storage);
    frame.setCommand(QString::fromUtf16(Frame::preferencesWord),
        [&] { frmPreferences(store, settings, theme, &frame).exec(); });
    QObject::connect(&instance, &SingleInstance::comeForward, &frame, &MDI::comeForward);
    QObject::connect(&instance, &SingleInstance::openRequested, &frame, &MDI::openFile);
    // Drawing it takes a third of what the bare frame needs to appear.
    QObject::connect(&frame, &MDI::firstPainted, &frame, [&frame] {
        QApplication::setWindowIcon(QIcon(QStringLiteral(":/program.svg")));
        // Windows inside the frame that were there before hear of the frame's own icon only.
        frame.setWindowIcon(QApplication::windowIcon());
    });
    // Read once the frame stands, too; a file on the command line does not wait for the answer.
    QObject::connect(&frame, &MDI::firstPainted, &frame,
        [&] { frame.offerRecovery(storage.snapshots.abandoned()); });
    frame.show();
    return QApplication::exec();
}
