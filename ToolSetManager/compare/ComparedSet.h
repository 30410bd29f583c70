#pragma once

#include "model/ToolSetDiff.h"
#include "model/ToolSetDocument.h"

#include <QHash>
#include <QObject>
#include <QPointer>

#include <memory>

class CVBATools;
class DocumentWindow;
class QWidget;

/// One side of a comparison: the set of an open window, which is followed, or one that was read
/// from a file or from an earlier version and stays as it was read.
///
/// Sets are compared as their files have them: a tool that was made a minute ago is no other one
/// than the same tool from the file that it was saved to. So state() has copies of the tools in
/// the form in which they are saved and loaded, while originals() has the tools themselves.
class ComparedSet : public QObject
{
    Q_OBJECT
public:
    enum Kind { Window, File, Version };

    /// The window's set, for as long as it is open; afterwards as it was then.
    explicit ComparedSet(DocumentWindow &window);
    /// \a path is that of the file, or for a version of the file that it is a version of.
    ComparedSet(
        Kind kind, const QString &title, const QString &path, std::unique_ptr<CVBATools> tools);

    Kind kind() const { return m_kind; }
    QString title() const; ///< Path of the file, caption of the window, or what version it is.
    QString note() const; ///< Whether it can be changed, in a few words.
    /// To be changed by; null for none.
    ToolSetDocument *document() const { return m_document; }
    /// The file to open in a window when the set is to be changed; empty for none.
    QString fileToOpen() const;
    bool canChange() const { return m_document || !fileToOpen().isEmpty(); }

    const ToolSetState &state() const { return m_state; }
    const ToolSetState &originals() const { return m_originals; }
    /// Brings both up to date with the document.
    void refresh();

Q_SIGNALS:
    void changed(); ///< refresh() has something to do.
    void titleChanged();

private:
    CVBATool storedForm(const CVBATool &tool, QHash<qint64, QImage> &pictures) const;

    Kind m_kind;
    QString m_title;
    QString m_path;
    QPointer<QWidget> m_widget; ///< Of the window.
    DocumentWindow *m_window = nullptr; ///< Valid while the widget is there.
    QPointer<ToolSetDocument> m_document;
    ToolSetState m_originals;
    ToolSetState m_state;
    QHash<qint64, QImage> m_pictures; ///< Stored forms, by the pictures' cache keys.
};
