#include "tooledit/IconStripModel.h"

#include "platform/picture/ProgramIcons.h"

#include <QPixmap>

namespace {

constexpr int side = ProgramIcons::usualSize;

} // namespace

IconStripModel::IconStripModel(QObject *parent)
    : QAbstractListModel(parent)
{
}

IconStripModel::~IconStripModel() = default;

void IconStripModel::setIcons(std::unique_ptr<ProgramIcons> icons, int count)
{
    beginResetModel();
    m_icons = std::move(icons);
    m_count = m_icons ? count : 0;
    m_read.clear();
    endResetModel();
}

QImage IconStripModel::icon(int row) const
{
    if (row < 0 || row >= m_count)
        return {};
    if (const QImage *read = m_read.object(row))
        return *read;
    QImage image = m_icons->icon(row);
    m_read.insert(row, new QImage(image), 1 + image.sizeInBytes() / 1024);
    return image;
}

QImage IconStripModel::icon(int row, int size) const
{
    if (size == side)
        return icon(row);
    return row < 0 || row >= m_count ? QImage() : m_icons->icon(row, size);
}

std::vector<int> IconStripModel::sizes(int row) const
{
    return row < 0 || row >= m_count ? std::vector<int>() : m_icons->sizes(row);
}

int IconStripModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_count;
}

QVariant IconStripModel::data(const QModelIndex &index, int role) const
{
    switch (role) {
    case Qt::DecorationRole: {
        QImage image = icon(index.row());
        if (image.width() > side || image.height() > side)
            image = image.scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        return QPixmap::fromImage(image);
    }
    case Qt::SizeHintRole:
        return QSize(side + 8, side + 8);
    case Qt::ToolTipRole:
    case Qt::AccessibleTextRole:
        return QStringLiteral("Icon %1 of %2").arg(index.row() + 1).arg(m_count);
    default:
        return {};
    }
}
