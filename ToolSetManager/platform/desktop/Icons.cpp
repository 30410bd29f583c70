#include "platform/desktop/Icons.h"

#include <QApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>

namespace {

/// Styles grey an icon towards a light window, which on a dark one hardly shows; fainter is plain
/// on both. On the highlight the theme's icons take the colour of the text beside them.
class DimmingEngine : public QIconEngine
{
public:
    explicit DimmingEngine(const QIcon &icon)
        : m_icon(icon)
    {
    }

    QIconEngine *clone() const override { return new DimmingEngine(m_icon); }
    QString key() const override { return QStringLiteral("DimmingEngine"); }
    QString iconName() override { return m_icon.name(); }
    bool isNull() override { return m_icon.isNull(); }

    QList<QSize> availableSizes(QIcon::Mode mode, QIcon::State state) override
    {
        return m_icon.availableSizes(mode, state);
    }

    QSize actualSize(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        return m_icon.actualSize(size, mode, state);
    }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override
    {
        // Themes have small icons of another make than large ones. Drawn directly, a small one
        // would be a large one on a screen of two pixels for one.
        const qreal scale = painter->device()->devicePixelRatioF();
        QPixmap image = scaledPixmap(rect.size() * scale, mode, state, scale);
        image.setDevicePixelRatio(scale);
        QRect place({}, image.deviceIndependentSize().toSize());
        place.moveCenter(rect.center());
        painter->drawPixmap(place, image);
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        return scaledPixmap(size, mode, state, 1);
    }

    QPixmap scaledPixmap(
        const QSize &size, QIcon::Mode mode, QIcon::State state, qreal scale) override
    {
        QPixmap full = m_icon.pixmap(size / scale, scale, drawn(mode), state);
        full.setDevicePixelRatio(1);
        if (mode == QIcon::Selected && !m_icon.name().isEmpty() && !full.isNull()) {
            QPainter painter(&full);
            painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
            painter.fillRect(full.rect(), QGuiApplication::palette().highlightedText());
        }
        if (mode != QIcon::Disabled || full.isNull())
            return full;
        QPixmap faint(full.size());
        faint.fill(Qt::transparent);
        QPainter painter(&faint);
        painter.setOpacity(share);
        painter.drawPixmap(0, 0, full);
        return faint;
    }

private:
    static constexpr double share = 0.35;

    static QIcon::Mode drawn(QIcon::Mode mode)
    {
        return mode == QIcon::Disabled ? QIcon::Normal : mode;
    }

    QIcon m_icon;
};

} // namespace

namespace Icons {

void followPalette()
{
    const QPalette palette = QGuiApplication::palette();
    const bool dark = palette.color(QPalette::Window).lightness()
        < palette.color(QPalette::WindowText).lightness();
    QIcon::setThemeName(dark ? QStringLiteral("breeze-dark") : QStringLiteral("breeze"));
}

QIcon emblem(const QString &name, QStyle::StandardPixmap fallback)
{
    const QIcon icon = QIcon::fromTheme(name);
    return icon.isNull() ? QApplication::style()->standardIcon(fallback) : icon;
}

QIcon named(const QString &name, QStyle::StandardPixmap fallback)
{
    return dimming(emblem(name, fallback));
}

QIcon dimming(const QIcon &icon)
{
    return QIcon(new DimmingEngine(icon));
}

} // namespace Icons
