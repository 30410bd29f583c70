#pragma once

#include "model/CVBATool.h"
#include "platform/desktop/BackgroundFiles.h"
#include "shell/ToolPlaces.h"

#include <QHash>
#include <QTimer>

/// Button pictures from the program files at the locations of tools. Each file is looked up on
/// another thread and then read from the event loop, and its picture is kept.
class ToolPictures : public QObject
{
    Q_OBJECT
public:
    explicit ToolPictures(const ToolPlaces &places, QObject *parent = nullptr);

    /// Null where there is none, and also while the file has not been read; completed() follows.
    QImage picture(const CVBATool &tool);
    int left() const { return static_cast<int>(m_open.size()); } ///< Files not read yet.

Q_SIGNALS:
    void completed(); ///< All pictures that were asked for are there.

private:
    void work();
    QString pathOf(QString location) const;
    QImage read(const QString &path) const;

    ToolPlaces m_places;
    BackgroundFiles m_files;
    QHash<QString, QImage> m_pictures; ///< By location.
    QHash<QString, QString> m_open; ///< The path by the location.
    QTimer m_timer;
};
