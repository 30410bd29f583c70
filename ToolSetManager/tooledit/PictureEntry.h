#pragma once

#include <QWidget>

class QLineEdit;
class QMimeData;
class QPushButton;

/// The line of the picker in which a path is typed. It also takes what is pasted or dropped
/// anywhere in its dialog: a path, a file, or a picture itself.
class PictureEntry : public QWidget
{
    Q_OBJECT
public:
    explicit PictureEntry(QWidget *dialog);

    /// Shows where the dialog is; what has been typed gives way.
    void setPath(const QString &path);
    /// Enters what has been typed and not been entered; false when there is nothing of that kind.
    bool enterTyped();

    QList<QWidget *> fields() const; ///< In the order of Tab.

    /// A path as people and programs write it, without quotes, "file:" and "~". It may be relative.
    static QString cleaned(const QString &typed);

Q_SIGNALS:
    void pathEntered(const QString &path);
    void pictureEntered(const QImage &picture);
    void nothingEntered(); ///< The clipboard holds nothing of use.

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void cmdPaste_Click();
    bool typedReturn(const QEvent &event);
    void drag(QEvent *event);

    QLineEdit *txtPath;
    QPushButton *cmdPaste;
    QStringList m_dragged; ///< The files of the drag above the dialog.
};
