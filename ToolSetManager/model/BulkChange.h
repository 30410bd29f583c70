#pragma once

#include "model/CVBATool.h"

#include <QRegularExpression>

#include <functional>
#include <memory>
#include <optional>

class CodePage;
class ToolSetDocument;

/// One change of many tools, with a preview: texts found and replaced, switches, kind, events and
/// pictures. Each tool ends as if the properties dialog had applied the same values.
class BulkChange
{
public:
    enum class Field { Location, CommandLine, Name };
    enum class Search {
        Text, ///< Anywhere in the field, as it stands.
        Folder, ///< A folder and what lies in it; see replaceFolder().
        RegularExpression ///< `$1` or `\1` in the replacement is the first group, `$0` all, `$$`
                          ///< "$".
    };
    struct Replacement
    {
        Field field = Field::Location;
        Search search = Search::Text;
        QString find; ///< Nothing is replaced when it is empty.
        QString replace;
        bool caseSensitive = false; ///< Not of folders: these follow the rules of their system.
    };
    enum class Switch { AsIs, On, Off };
    /// Makes a picture from a tool's location; null when there is none.
    using TakePicture = std::function<QImage(const CVBATool &tool)>;

    // --- What is changed ---
    Replacement replacement;
    Switch enabled = Switch::AsIs;
    Switch inToolBar = Switch::AsIs;
    Switch inList = Switch::AsIs;
    Switch outOfProcess = Switch::AsIs;
    /// A tool that becomes a separator is named "Separator", has the blank picture and no location.
    std::optional<qint16> kind;
    qint32 addedEvents = 0;
    qint32 removedEvents = 0;
    TakePicture takePicture; ///< Null: pictures stay. Asked for programs only.

    /// Why nothing can be changed: what is wrong with the regular expression. Empty for nothing.
    QString error() const;

    // --- Preview ---
    /// A field that would change, as texts; of a picture there are no texts.
    struct FieldChange
    {
        const char *field; ///< By its name in ToolFields.
        QString before;
        QString after;
    };
    struct Row
    {
        int position = 0;
        ToolPtr tool;
        CVBATool after;
        QString name; ///< What the set will make of the name of \a after.
        QList<FieldChange> changes; ///< Not empty.
        QString remark; ///< One or more sentences on clashes and what cannot be stored.
        bool storable = true; ///< The set could be saved afterwards, as far as these fields go.
    };
    /// The tools of those positions that would change, each on the supposition that those before it
    /// change, too: names are free or taken accordingly. \a positions are ascending.
    QList<Row> preview(const ToolSetDocument &document, const QList<int> &positions,
        const CodePage &codePage) const;

    /// The same in pieces, for windows that must not wait: a regular expression may need long.
    class Preview;

    /// Changes the tools of those rows of a preview, in one step of undo. Returns the number of
    /// tools; rows that cannot be stored are left out.
    static int apply(ToolSetDocument &document, const QList<Row> &rows);

    /// Replaces a folder at the start of a path, the whole path included: "C:\Tools" is a folder of
    /// "c:/tools/x.exe", but not of "C:\Toolset\x.exe". Both separators are the same, and letter
    /// case counts in paths that start with "/" only. What follows gets the separators of the
    /// replacement; an empty replacement leaves a relative path. Returns the path unchanged when it
    /// is in another folder.
    static QString replaceFolder(const QString &path, const QString &folder, const QString &with);

private:
    CVBATool changed(const CVBATool &tool, const QRegularExpression &expression) const;
    QString replaced(const QString &text, const QRegularExpression &expression) const;
    QRegularExpression expression() const;
    /// Whether the matching in that tool's text is not completed: it ends after a number of steps.
    bool givesUp(const CVBATool &tool, const QRegularExpression &expression) const;
};

/// A preview that is being made. What it was made from is copied; the document is borrowed and must
/// not change meanwhile.
class BulkChange::Preview
{
public:
    Preview(const BulkChange &change, const ToolSetDocument &document, const QList<int> &positions,
        const CodePage &codePage);
    ~Preview();

    /// Goes on for about so long, a negative time for as long as it takes. True when it is
    /// complete.
    bool work(int milliseconds);
    int done() const { return m_next; } ///< Tools that were looked at.
    int count() const { return static_cast<int>(m_positions.size()); }

    const QList<Row> &rows() const { return m_rows; } ///< So far.
    /// The tools for which the regular expression was given up, because it needs too many steps;
    /// their rows lack what it would have changed.
    const QList<ToolPtr> &givenUp() const { return m_givenUp; }

private:
    class Names;

    void add(int position);

    BulkChange m_change;
    const ToolSetDocument &m_document;
    QList<int> m_positions;
    const CodePage &m_codePage;
    QRegularExpression m_expression;
    std::unique_ptr<Names> m_names;
    int m_next = 0;
    QList<Row> m_rows;
    QList<ToolPtr> m_givenUp;
};
