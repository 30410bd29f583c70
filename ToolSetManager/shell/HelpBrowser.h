#pragma once

#include <QHash>
#include <QImage>
#include <QTextBrowser>

/// Shows pages of the manual, which are Markdown. Links to headings work as they do on the web:
/// "page.md#the-heading". Pictures that are wider than the window are scaled to fit.
class HelpBrowser : public QTextBrowser
{
    Q_OBJECT
public:
    struct Heading
    {
        QString text;
        int level = 1;
        int position = 0; ///< Of its block in the document.
        QString anchor;
    };

    explicit HelpBrowser(QWidget *parent);

    /// In the order of the page.
    const QList<Heading> &headings() const { return m_headings; }
    /// Index of the heading above or at the top of what is shown; -1 before the first one.
    int currentHeading() const;

    // --- Find ---
    /// Marks every place where the text stands, in whatever letter case, and shows the first one
    /// from the present place on. An empty text takes the marks away.
    void find(const QString &text);
    /// Goes on to the next or the previous place, round the ends of the page.
    void findNext(bool backward = false);
    int matchCount() const { return static_cast<int>(m_matches.size()); }
    int currentMatch() const { return m_match; } ///< Counts from 0; -1 for none.

    QVariant loadResource(int type, const QUrl &name) override;

Q_SIGNALS:
    void pageLoaded();

protected:
    void doSetSource(const QUrl &url, QTextDocument::ResourceType type) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void readHeadings();
    void dressTables();
    void scrollTo(const QString &anchor);
    QImage fitted(const QImage &picture) const;
    void fitPictures();
    void searchPage();
    void showMatches();
    void showPlace(int position);

    QUrl m_page; ///< What is loaded.
    QList<Heading> m_headings;
    QHash<QUrl, QImage> m_pictures; ///< In their own size.
    int m_fittedWidth = 0; ///< That the pictures are scaled for.
    QString m_wanted;
    QList<QTextCursor> m_matches;
    int m_match = -1;
    int m_from = 0; ///< Where the search started.
};
