#pragma once

#include <QMdiArea>

/// The room of the document windows. While there is none it shows a page of its own.
class MdiArea : public QMdiArea
{
    Q_OBJECT
public:
    explicit MdiArea(QWidget *parent = nullptr);

    /// What is shown in the middle while there is no window; null for nothing. The area owns it.
    void setEmptyPage(QWidget *page);
    QWidget *emptyPage() const { return m_emptyPage; }

protected:
    void resizeEvent(QResizeEvent *event) override;
    bool viewportEvent(QEvent *event) override;

private:
    void showEmptiness(); ///< Also to screen readers.
    void placeEmptyPage();

    QWidget *m_emptyPage = nullptr;
};
