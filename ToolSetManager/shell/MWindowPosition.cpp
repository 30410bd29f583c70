#include "shell/MWindowPosition.h"

#include "platform/desktop/SettingsStore.h"
#include "platform/text/Twips.h"
#include "platform/text/VbConvert.h"
#include "shell/Settings.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

namespace {

const QScreen *screen()
{
    return QGuiApplication::primaryScreen();
}

double dpi()
{
    return screen() ? screen()->logicalDotsPerInch() : Twips::classicDpi;
}

Twips toTwips(int pixels)
{
    return Twips::fromPixels(pixels, dpi());
}

} // namespace

namespace MWindowPosition {

void SaveWindowPosition(SettingsStore &store, const QString &name, const QWidget &window)
{
    const bool resized = window.isMaximized() || window.isMinimized() || window.isFullScreen();
    const QRect normal = window.normalGeometry();
    const bool hasNormal = resized && normal.isValid();
    const QPoint place = hasNormal ? normal.topLeft() : window.pos();
    const QSize size = hasNormal ? normal.size() : window.size();
    const std::pair<QLatin1StringView, int> values[] = {
        {QLatin1StringView("Left"), place.x()},
        {QLatin1StringView("Top"), place.y()},
        {QLatin1StringView("Height"), size.height()},
        {QLatin1StringView("Width"), size.width()},
    };
    for (const auto &[key, pixels] : values) {
        store.SaveSetting(QString::fromUtf16(Settings::application), name, key,
            VbConvert::fromSingle(static_cast<float>(toTwips(pixels).value)));
    }
}

void RestoreWindowPosition(const SettingsStore &store, const QString &name, QWidget &window)
{
    if (!screen())
        return;
    const QRect area = screen()->geometry();
    const QSize screenSize(toTwips(area.width()).value, toTwips(area.height()).value);
    int width = toTwips(window.width()).value;
    int height = toTwips(window.height()).value;
    int left = (screenSize.width() - width) / 2;
    int top = (screenSize.height() - height) / 2;
    const auto pairs = store.GetAllSettings(QString::fromUtf16(Settings::application), name);
    for (const auto &[key, text] : pairs) {
        const auto number = VbConvert::toInt32(text);
        // A value that no screen has is as good as none, and would overflow below.
        if (!number || qAbs(qint64(*number)) > 1000000)
            continue;
        if (key == QLatin1StringView("Left"))
            left = *number;
        else if (key == QLatin1StringView("Top"))
            top = *number;
        else if (key == QLatin1StringView("Height") && *number > 0)
            height = *number;
        else if (key == QLatin1StringView("Width") && *number > 0)
            width = *number;
    }
    const QRect kept = keptOnScreen(QRect(left, top, width, height), screenSize);
    const auto pixels = [](int twips) { return Twips {twips}.toPixels(dpi()); };
    window.resize(pixels(kept.width()), pixels(kept.height()));
    window.move(area.topLeft() + QPoint(pixels(kept.x()), pixels(kept.y())));
}

QRect keptOnScreen(QRect window, const QSize &screen)
{
    window.setSize(window.size().boundedTo(screen));
    const auto kept = [](int start, int length, int limit) {
        return qMax(0, qMin(start, limit - length));
    };
    window.moveTo(kept(window.x(), window.width(), screen.width()),
        kept(window.y(), window.height(), screen.height()));
    return window;
}

} // namespace MWindowPosition
