#pragma once

#include <QObject>
#include <QString>
#include <QWidget>

#include <functional>

/// The editor of the help text as the properties dialog needs it. Any widget with the properties
/// `TextRTF` and `SelText` and the signal `Change` will do, such as an RTFEditor:
/// `HelpEditor::of(new RTFEditor)`.
struct HelpEditor
{
    QWidget *widget = nullptr; ///< The dialog becomes its parent.
    std::function<QString()> TextRTF;
    std::function<void(const QString &)> setTextRTF;
    std::function<void(const QString &)> setSelText;
    std::function<void(const QObject *, std::function<void()>)> onChange; ///< Context, handler.

    template <class Editor>
    static HelpEditor of(Editor *editor)
    {
        return {editor, [editor] { return editor->TextRTF(); },
            [editor](const QString &rtf) { editor->setTextRTF(rtf); },
            [editor](const QString &text) { editor->setSelText(text); },
            [editor](const QObject *context, std::function<void()> handler) {
                QObject::connect(editor, &Editor::Change, context, std::move(handler));
            }};
    }
};
