#pragma once

#include <QAbstractListModel>
#include <QCache>
#include <QImage>

#include <memory>
#include <vector>

class ProgramIcons;

/// The icons of a program file as a list. An icon is read when it is asked for, so that a file of
/// a thousand shows as fast as one of ten.
class IconStripModel : public QAbstractListModel
{
    Q_OBJECT
public:
    explicit IconStripModel(QObject *parent = nullptr);
    ~IconStripModel() override;

    /// Shows the first \a count icons; null for none.
    void setIcons(std::unique_ptr<ProgramIcons> icons, int count);
    /// The icon in Windows' usual size; null when it cannot be read. Rows count from 0.
    QImage icon(int row) const;
    /// The icon in the size of its own that serves best for \a size pixels.
    QImage icon(int row, int size) const;
    std::vector<int> sizes(int row) const; ///< That the icon has; smallest first.

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

private:
    std::unique_ptr<ProgramIcons> m_icons;
    int m_count = 0;
    mutable QCache<int, QImage> m_read {32 << 10}; ///< KiB; an icon mostly takes four.
};
