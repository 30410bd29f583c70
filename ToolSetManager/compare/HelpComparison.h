#pragma once

#include <QWidget>

class QLabel;
class QTextEdit;

/// Two help texts beside each other, as plain text: words that only the left one has are struck
/// through, words that only the right one has are bold and underlined; a line above says what
/// differs.
class HelpComparison : public QWidget
{
    Q_OBJECT
public:
    /// The code page is that of rich texts that do not tell theirs.
    explicit HelpComparison(int codePage, QWidget *parent = nullptr);

    /// RTF, or empty; \a what names the texts ("Help text").
    void setTexts(const QString &what, const QString &left, const QString &right);

protected:
    void changeEvent(QEvent *event) override;

private:
    void show();

    const int m_codePage;
    QString m_what;
    QString m_leftRtf;
    QString m_rightRtf;
    QLabel *lblHelp;
    QTextEdit *txtLeft;
    QTextEdit *txtRight;
};
