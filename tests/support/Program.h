#pragma once

#include "model/CVBATools.h"
#include "model/ToolSetStorage.h"
#include "platform/desktop/ListView.h"
#include "platform/desktop/SettingsStore.h"
#include "platform/picture/PictureBox.h"
#include "platform/print/Printers.h"
#include "shell/MDI.h"
#include "shell/Settings.h"
#include "shell/mTSM.h"
#include "support/SetDump.h"
#include "toolset/ToolListModel.h"
#include "toolset/frmToolSet.h"

#include <QDirIterator>
#include <QTest>
#include <QTimer>

/// All of the program but its main(), with its data below one folder.
class Program
{
public:
    explicit Program(const QString &home, const QStringList &printerNames = {},
        const QString &commandLine = QString())
        : storage(1252, home + u"/cache", home + u"/data")
        , store(home + u"/settings")
        , m_settings(home)
        , printers([printerNames] { return printerNames; })
        , frame(
              state, m_settings, store,
              [this](Frame &owner) -> DocumentWindow * {
                  return new frmToolSet(owner, state, m_settings, store, storage, printers);
              },
              commandLine)
    {
        storage.snapshotDelay = std::chrono::milliseconds(10);
        frame.show();
    }

    void waitForQueue() { QTRY_VERIFY(!frame.findChild<QTimer *>(u"tmrAction"_qs)->isActive()); }
    void run(const QString &word)
    {
        frame.setAction(word);
        waitForQueue();
    }
    frmToolSet *open(const QString &path)
    {
        frame.openFile(path);
        waitForQueue();
        return window();
    }
    /// The last one opened.
    frmToolSet *window() const
    {
        return frame.openDocuments().isEmpty()
            ? nullptr
            : static_cast<frmToolSet *>(frame.openDocuments().constLast());
    }
    /// As the user does with Delete, who is not asked.
    void remove(frmToolSet *form, int row)
    {
        listOf(form)->selectRows({row});
        run(u"silentdelete"_qs);
    }
    static ListView *listOf(frmToolSet *window) { return window->findChild<ListView *>(); }
    static ToolListModel *modelOf(frmToolSet *window)
    {
        return window->findChild<ToolListModel *>();
    }

    ToolSetStorage storage;
    SettingsStore store;

private:
    Settings m_settings;

public:
    Printers printers;
    mTSM state;
    MDI frame;
};

namespace Sets {

/// A file with tools of these one-letter names. Tool "x" has the location "C:\X" and the help text
/// "help of x".
inline bool put(const QString &path, const QString &names, ToolSetStorage &storage)
{
    CVBATools set(storage);
    set.setDescription(u"About "_qs + QFileInfo(path).fileName());
    QStringList keys;
    for (const QChar name : names) {
        const auto tool = std::make_shared<CVBATool>();
        tool->Description = name;
        tool->setLocation(u"C:\\"_qs + name.toUpper());
        tool->HelpString = u"help of "_qs + name;
        set.Add(tool);
        keys.append(name);
    }
    PictureBox box(Twips {275}, Twips {275});
    return set.Save(path, keys, box);
}

/// The names of the tools in a file.
inline QString names(const QString &path, ToolSetStorage &storage)
{
    CVBATools set(storage);
    if (!set.Load(path))
        return u"(unreadable)"_qs;
    return SetDump::names(set).join(u' ');
}

/// All files below a folder that match, in no particular order.
inline QStringList files(const QString &folder, const QString &pattern = u"*"_qs)
{
    QStringList found;
    QDirIterator walk(folder, {pattern}, QDir::Files, QDirIterator::Subdirectories);
    while (walk.hasNext())
        found.append(walk.next());
    return found;
}

} // namespace Sets
