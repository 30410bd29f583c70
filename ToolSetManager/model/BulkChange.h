#pragma once

#include "model/CVBATool.h"

#include <QRegularExpression>

#include <functional>
#include <optional>
#include <vector>

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
};
