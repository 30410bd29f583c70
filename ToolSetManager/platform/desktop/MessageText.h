#pragma once

#include <QLabel>

class QTextDocument;

/// The text of a message box. Text behind tabs stands in columns, whatever the font: a run of tabs
/// leads to the next column. Long words break anywhere. A text too high for the screen is shown
/// without its middle, so that the end of a question always shows; text() is complete, and so is
/// what screen readers read.
class MessageText : public QLabel
{
    Q_OBJECT
public:
    MessageText(const QString &text, QWidget *parent);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }
    int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QTextDocument *m_shown;
};
