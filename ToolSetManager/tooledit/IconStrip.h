#pragma once

#include <QListView>

/// A row of icons to choose from, scrolled sideways; it says so when there are none.
class IconStrip : public QListView
{
    Q_OBJECT
public:
    explicit IconStrip(QWidget *parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
};
