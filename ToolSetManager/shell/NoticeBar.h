#pragma once

#include <QWidget>

class QHBoxLayout;
class QLabel;
class QPushButton;

/// A strip above the document windows with something that the user should know, and buttons that
/// answer it. It takes no focus and stays until it is answered.
class NoticeBar : public QWidget
{
    Q_OBJECT
public:
    /// The theme's icon of that name, else the information sign, stands before the text.
    NoticeBar(const QString &text, const QString &icon, QWidget *parent = nullptr);

    QString text() const { return m_text; }
    QPushButton *addButton(const QString &name, const QString &caption, const QString &toolTip);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void fitText();
    void refreshIcon();

    QString m_text;
    QString m_icon;
    QHBoxLayout *m_row;
    QLabel *lblIcon;
    QLabel *lblText;
};
