#pragma once

#include "shell/CFileList.h"
#include "shell/DocumentWindow.h"
#include "shell/Frame.h"

#include <QMap>
#include <QStringList>

/// A frame that only notes what the windows ask of it.
class FakeFrame : public Frame
{
public:
    QStringList words; ///< Queued command words.
    QStringList warnings;
    QStringList opened; ///< Paths handed over with openFile().
    CommandState commands; ///< Of the window that told last.
    QMap<int, QString> panels;
    QStringList results; ///< Text of showResult(), and its file behind an arrow.
    QList<DocumentWindow *> documents;
    QList<Arrangement> arranged;
    CFileList files;
    int closes = 0;

    void setAction(const QString &word) override { words.append(word); }
    void openFile(const QString &path) override { opened.append(path); }
    void closeFrame() override { ++closes; }
    void commandStateChanged(const DocumentWindow &document) override
    {
        commands = document.commandState();
    }
    void statusChanged(const DocumentWindow &) override { }
    QString panelText(int panel) const override { return panels.value(panel); }
    void setPanelText(int panel, const QString &text) override { panels[panel] = text; }
    void showResult(const QString &text, const QString &file) override
    {
        results.append(file.isEmpty() ? text : text + u" -> " + file);
    }
    void showProgress(const QString &, int) override { }
    void endProgress() override { }
    void showWarning(const QString &text) override { warnings.append(text); }
    QList<DocumentWindow *> openDocuments() const override { return documents; }
    DocumentWindow *activeDocument() const override { return documents.value(0); }
    void activateDocument(DocumentWindow *) override { }
    void addDocument(DocumentWindow *document) override { documents.append(document); }
    DocumentWindow *newDocument(const QString &) override { return nullptr; }
    DocumentWindow *openDocument(const QString &) override { return nullptr; }
    void documentClosed(DocumentWindow *document) override { documents.removeOne(document); }
    void arrangeWindows(Arrangement arrangement) override { arranged.append(arrangement); }
    CFileList &FileListHandler() override { return files; }
    void showHelp(const QString &, const QString &) override { }
    void showAbout() override { }
};
