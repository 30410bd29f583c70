#pragma once

#include "platform/print/PageDocument.h"

#include <QPageLayout>
#include <QPageSize>
#include <QStringList>

#include <functional>
#include <optional>

/// The printers of this system, and the one chosen for the rest of the run with its paper: at
/// first the default queue, or the printer "PDF File", which is always there, where no queue is
/// the default.
class Printers
{
public:
    /// Names the printers, the one to use first in front.
    using List = std::function<QStringList()>;

    Printers(); ///< The queues of the system and "PDF File".
    explicit Printers(List list);

    /// The name of the printer that writes a file and asks for its path.
    static QString pdfFile();

    /// Asks the system each time, because queues come and go; that may take some tenths of a
    /// second.
    QStringList names() const;

    // --- The chosen printer ---
    QString name() const; ///< Empty when there is none.
    QPageSize pageSize() const;
    QPageLayout::Orientation orientation() const { return m_orientation; }
    void choose(
        const QString &name, const QPageSize &pageSize, QPageLayout::Orientation orientation);
    /// Its sheet; nothing when the printer is gone.
    std::optional<Paper> paper() const;

    // --- Any printer ---
    static QList<QPageSize> pageSizes(const QString &name);
    /// That of the queue; for the paper file, and a queue that tells none, the country's.
    static QPageSize defaultPageSize(const QString &name);
    static QString description(const QString &name); ///< For people; often a make and a place.

private:
    List m_list;
    QString m_name; ///< Empty until one is chosen.
    mutable QString m_standard; ///< To use until then; as the system said when last asked.
    QPageSize m_pageSize;
    QPageLayout::Orientation m_orientation = QPageLayout::Portrait;
};
