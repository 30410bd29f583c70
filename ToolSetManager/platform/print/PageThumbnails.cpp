#include "platform/print/PageThumbnails.h"

#include "platform/print/PageDocument.h"

#include <QAbstractListModel>
#include <QCache>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>

namespace {

constexpr int side = 112; ///< Pixels; the longer edge of a page.
constexpr int mostDrawn = 200; ///< Pages that are kept.
constexpr int around = 8;

} // namespace

/// One row for each page.
class PageThumbnails::Pages : public QAbstractListModel
{
public:
    Pages(const PageDocument &document, PageThumbnails *view)
        : QAbstractListModel(view)
        , m_document(document)
        , m_view(view)
    {
    }

    void refresh()
    {
        beginResetModel();
        m_drawn.clear();
        endResetModel();
    }

    QSize pageSize() const
    {
        return QSize(m_document.PageWidth(), m_document.PageHeight())
            .scaled(side, side, Qt::KeepAspectRatio);
    }

    int rowCount(const QModelIndex &parent) const override
    {
        return parent.isValid() ? 0 : m_document.PageCount();
    }

    QVariant data(const QModelIndex &index, int role) const override
    {
        switch (role) {
        case Qt::DisplayRole:
            return QString::number(index.row() + 1);
        case Qt::AccessibleTextRole:
        case Qt::ToolTipRole:
            return QStringLiteral("Page %1").arg(index.row() + 1);
        case Qt::DecorationRole:
            return thumbnail(index.row() + 1);
        default:
            return {};
        }
    }

private:
    QIcon thumbnail(int page) const
    {
        if (const QIcon *drawn = m_drawn.object(page))
            return *drawn;
        const double ratio = m_view->devicePixelRatioF();
        QPixmap picture(pageSize() * ratio);
        picture.fill(Qt::white);
        {
            QPainter painter(&picture);
            painter.setRenderHint(QPainter::Antialiasing);
            painter.save();
            painter.scale(double(picture.width()) / m_document.PageWidth(),
                double(picture.height()) / m_document.PageHeight());
            m_document.draw(painter, page);
            painter.restore();
            painter.setPen(QColor(150, 150, 150));
            painter.drawRect(picture.rect().adjusted(0, 0, -1, -1));
        }
        picture.setDevicePixelRatio(ratio);
        auto *icon = new QIcon(picture);
        icon->addPixmap(picture, QIcon::Selected); // not tinted: paper stays white
        m_drawn.insert(page, icon);
        return *icon;
    }

    const PageDocument &m_document;
    const PageThumbnails *m_view;
    mutable QCache<int, QIcon> m_drawn {mostDrawn};
};

PageThumbnails::PageThumbnails(const PageDocument &document, QWidget *parent)
    : QListView(parent)
    , m_pages(new Pages(document, this))
{
    setModel(m_pages);
    setUniformItemSizes(true);
    setSpacing(2);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFrameShape(QFrame::NoFrame);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    setAccessibleName(QStringLiteral("Pages"));
    connect(selectionModel(), &QItemSelectionModel::currentChanged, this,
        [this](const QModelIndex &current) {
            if (current.isValid() && !m_following)
                Q_EMIT pageWanted(current.row() + 1);
        });
}

void PageThumbnails::refresh()
{
    m_pages->refresh();
    setIconSize(m_pages->pageSize());
    updateGeometry();
}

void PageThumbnails::setCurrentPage(int page)
{
    const QScopedValueRollback following(m_following, true);
    const QModelIndex index = m_pages->index(page - 1, 0);
    setCurrentIndex(index);
    scrollTo(index);
}

QSize PageThumbnails::sizeHint() const
{
    return QSize(iconSize().width() + 2 * around + verticalScrollBar()->sizeHint().width(), side);
}

void PageThumbnails::initViewItemOption(QStyleOptionViewItem *option) const
{
    QListView::initViewItemOption(option);
    option->decorationPosition = QStyleOptionViewItem::Top;
    option->decorationAlignment = Qt::AlignCenter;
    option->displayAlignment = Qt::AlignCenter;
}
