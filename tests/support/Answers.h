#pragma once

#include <QMessageBox>
#include <QObject>

#include <deque>
#include <functional>

class QFileDialog;

/// Answers the real dialogs that a test is about to raise, in the order armed. A dialog that was
/// not armed, has another text than armed or is never shown fails the test.
class Answers : public QObject
{
    Q_OBJECT
public:
    explicit Answers(QObject *parent = nullptr);
    ~Answers() override;

    /// A message box with exactly that text, or one that starts with it when it ends in "*".
    void message(const QString &text, QMessageBox::StandardButton button);
    /// A file dialog: types the path and confirms; an empty path cancels.
    void file(const QString &title, const QString &path);
    /// Types the path into a file dialog and confirms.
    static void choose(QFileDialog *dialog, const QString &path);
    /// Any other dialog, by its object name; \a act must close it.
    void dialog(const QString &name, std::function<void(QDialog *)> act);

    /// The text of the message box answered last.
    QString lastText() const { return m_lastText; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Armed
    {
        QString what;
        std::function<bool(QDialog *)> answer; ///< False: another dialog than armed.
    };
    void answer(QDialog *dialog);

    std::deque<Armed> m_armed;
    QString m_lastText;
};
