#pragma once

#include <QWidget>

class RichTextBox;

/// Shows one tool's help text, like a large tool tip. One window for each request; it deletes
/// itself when the user closes it.
class frmToolHelp : public QWidget
{
    Q_OBJECT
public:
    explicit frmToolHelp(QWidget *parent = nullptr);

    /// Moves the window to that place on the screen (twips) and shows it, not modal.
    void ShowHelp(const QString &HelpText, float Left, float Top, const QString &ToolName);

protected:
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void Form_Load();
    void Form_Resize();

    RichTextBox *rtf;
};
