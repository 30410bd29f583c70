#pragma once

#include <QListView>

class PageDocument;

/// The pages of a document as small pictures, of which the shown one is marked. A page is drawn
/// when it is first seen.
class PageThumbnails : public QListView
{
    Q_OBJECT
public:
    /// The document is borrowed.
    explicit PageThumbnails(const PageDocument &document, QWidget *parent = nullptr);

    /// The document is another one now.
    void refresh();
    void setCurrentPage(int page); ///< Counted from 1; what is not there is ignored.

    QSize sizeHint() const override;

Q_SIGNALS:
    void pageWanted(int page); ///< The user has gone to that page.

protected:
    void initViewItemOption(QStyleOptionViewItem *option) const override;

private:
    class Pages;

    Pages *m_pages;
    bool m_following = false; ///< The current page is set by the program.
};
