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
#include "toolset/ToolListModel.h"
#include "toolset/frmToolSet.h"

#include <QDirIterator>
#include <QTest>
#include <QTimer>

/// All of the program but its main(), with its data below one folder.
class Program
{
public:
    explicit Program(const QString &home, const QStringList &printerNames = {})
        : storage(1252, home + u"/cache", home + u"/data")
        , m_store(home + u"/settings")
        , m_settings(home)
        , m_printers([printerNames] { return printerNames; })
        , frame(
              state, m_settings, m_store,
              [this](Frame &owner) -> DocumentWindow * {
                  return new frmToolSet(owner, state, m_settings, m_store, storage, m_printers);
              },
              QString())
    {
        storage.snapshotDelay = std::chrono::milliseconds(10);
        frame.show();
    }

    void run(const QString &word)
    {
        frame.setAction(word);
        QTRY_VERIFY(!frame.findChild<QTimer *>(u"tmrAction"_qs)->isActive());
    }
    frmToolSet *open(const QString &path)
    {
        frame.openFile(path);
        run(QString());
        return window();
    }
    /// The last one opened.
    frmToolSet *window() const
    {
        return frame.openDocuments().isEmpty()
            ? nullptr
            : static_cast<frmToolSet *>(frame.openDocuments().constLast());
    }
    static ListView *listOf(frmToolSet *window) { return window->findChild<ListView *>(); }
    static ToolListModel *modelOf(frmToolSet *window)
    {
        return window->findChild<ToolListModel *>();
    }

    ToolSetStorage storage;

private:
    SettingsStore m_store;
    Settings m_settings;
    Printers m_printers;

public:
    mTSM state;
    MDI frame;
};

namespace Sets {

/// A file with tools of these one-letter names.
inline bool put(const QString &path, const QString &names, ToolSetStorage &storage)
{
    CVBATools set(storage);
    QStringList keys;
    for (const QChar name : names) {
        const auto tool = std::make_shared<CVBATool>();
        tool->Description = name;
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
    QString all = set.Load(path) ? QString() : u"(unreadable)"_qs;
    for (const ToolPtr &tool : set)
        all += tool->Description;
    return all;
}

/// All files below a folder that match, in no particular order.
inline QStringList files(const QString &folder, const QString &pattern)
{
    QStringList found;
    QDirIterator walk(folder, {pattern}, QDir::Files, QDirIterator::Subdirectories);
    while (walk.hasNext())
        found.append(walk.next());
    return found;
}

} // namespace Sets
