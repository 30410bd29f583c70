#pragma once

#include <QMdiArea>

/// The room of the document windows. While there is none it tells how to get one.
class MdiArea : public QMdiArea
{
    Q_OBJECT
public:
    explicit MdiArea(QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;
    bool viewportEvent(QEvent *event) override;

private:
    void describe(); ///< To screen readers.
};
