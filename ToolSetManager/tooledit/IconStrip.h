#pragma once

#include <QListView>

/// Icons to choose from; it says so when there are none. They wrap into a grid where there is room
/// for two rows; a single row is scrolled sideways.
class IconStrip : public QListView
{
    Q_OBJECT
public:
    explicit IconStrip(QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
};
