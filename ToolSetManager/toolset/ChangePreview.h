#pragma once

#include "model/BulkChange.h"

#include <QObject>
#include <QSet>
#include <QTimer>

#include <memory>

class CodePage;
class ToolPictures;
class ToolSetDocument;

/// Makes the preview of a change of several tools in pieces from the event loop: first for all
/// tools, then once more for those that are to change, because a tool that stays as it is keeps its
/// name.
class ChangePreview : public QObject
{
    Q_OBJECT
public:
    /// What is handed in is borrowed.
    ChangePreview(const ToolSetDocument &document, const CodePage &codePage, ToolPictures &pictures,
        QObject *parent = nullptr);

    /// Begins anew. With \a takePictures the programs' own pictures are part of the change.
    void start(const BulkChange &change, const QList<int> &positions, bool takePictures);
    /// Tools that stay as they are, by position.
    void setLeftOut(const QSet<int> &positions);
    const QSet<int> &leftOut() const { return m_leftOut; }

    bool isComplete() const { return m_state == State::Complete; }
    QString progress() const; ///< What is being done; empty when complete.

    // --- When complete ---
    /// All tools that would change, by position; those that are left out as they would be.
    QList<BulkChange::Row> rows() const;
    /// Those that will: neither left out nor impossible to store.
    QList<BulkChange::Row> changingRows() const;
    const QList<ToolPtr> &givenUp() const { return m_givenUp; } ///< As of BulkChange::Preview.

Q_SIGNALS:
    void progressed();
    void completed();

private:
    enum class State { Complete, AllTools, Pictures, ChangingTools };

    void begin(State state, const QList<int> &positions);
    void beginChanging();
    void work();
    void finishAll();

    const ToolSetDocument &m_document;
    const CodePage &m_codePage;
    ToolPictures &m_pictures;
    BulkChange m_change;
    QList<int> m_positions;
    QSet<int> m_leftOut;
    State m_state = State::Complete;
    std::unique_ptr<BulkChange::Preview> m_preview;
    QList<BulkChange::Row> m_all;
    QList<BulkChange::Row> m_changing;
    QList<ToolPtr> m_givenUp;
    QTimer m_timer;
};
