#pragma once

#include <QImage>
#include <QWidget>

/// A button picture before and after a change, side by side on light and on dark.
class PictureTiles : public QWidget
{
    Q_OBJECT
public:
    explicit PictureTiles(QWidget *parent = nullptr);

    QImage present() const { return m_present; }
    void setPresent(const QImage &picture); ///< Before the change; the new one, too, at first.
    void setChosen(const QImage &picture);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QImage m_present;
    QImage m_chosen;
};
