#include "platform/desktop/MWindowPosition.h"

#include "platform/VbError.h"
#include "platform/desktop/SettingsStore.h"
#include "platform/text/Twips.h"
#include "platform/text/VbConvert.h"

#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QTimer>
#include <QWidget>
#include <QWindow>

#include <functional>

namespace {

using MWindowPosition::Stored;

const QScreen *screen()
{
    return QGuiApplication::primaryScreen();
}

double dpi()
{
    return screen() ? screen()->logicalDotsPerInch() : Twips::classicDpi;
}

int toTwips(int pixels)
{
    return Twips::fromPixels(pixels, dpi()).value;
}

QSize toTwips(const QSize &pixels)
{
    return {toTwips(pixels.width()), toTwips(pixels.height())};
}

int toPixels(int twips)
{
    return Twips {twips}.toPixels(dpi());
}

bool isNormal(const QWidget &window)
{
    return !window.isMaximized() && !window.isMinimized() && !window.isFullScreen();
}

/// The frame's; those of the window that a dialog belongs to while it has none of its own.
QMargins marginsOf(const QWidget &window)
{
    for (const QWidget *each : {&window, static_cast<const QWidget *>(window.parentWidget())}) {
        const QWindow *handle = each ? each->window()->windowHandle() : nullptr;
        if (handle && !handle->frameMargins().isNull())
            return handle->frameMargins();
    }
    return {};
}

/// Returns where the window is then, in pixels and with its frame.
QRect place(QWidget &window, const Stored &stored)
{
    const QRect area = screen()->geometry();
    const QMargins frame = marginsOf(window);
    const QSize least = window.minimumSize().expandedTo(window.minimumSizeHint());
    const QRect place = MWindowPosition::restored(stored, toTwips(window.size().grownBy(frame)),
        toTwips(least.grownBy(frame)), toTwips(area.size()));
    const QRect pixels(area.topLeft() + QPoint(toPixels(place.x()), toPixels(place.y())),
        QSize(toPixels(place.width()), toPixels(place.height())));
    window.resize(pixels.size().shrunkBy(frame));
    window.move(pixels.topLeft());
    return pixels;
}

/// Knows what the window itself cannot say: its frame's place while it is maximised or minimised,
/// for a frame may have other edges then.
class Watcher : public QObject
{
public:
    static Watcher *of(const QWidget &window)
    {
        return dynamic_cast<Watcher *>(
            window.findChild<QObject *>(objectNameOfAll, Qt::FindDirectChildrenOnly));
    }
    static Watcher &on(QWidget &window)
    {
        Watcher *watcher = of(window);
        return watcher ? *watcher : *new Watcher(window);
    }

    QRect normalFrame() const
    {
        if (isNormal(m_window) || m_frame.isNull())
            return m_window.frameGeometry();
        return m_frame;
    }
    void placeWhenFramed(const Stored &stored) { m_stored = stored; }
    std::function<void()> changed; ///< Called when the window has come to rest.

protected:
    bool eventFilter(QObject * /*watched*/, QEvent *event) override
    {
        switch (event->type()) {
        case QEvent::Move:
        case QEvent::Resize:
        case QEvent::Show:
            if (m_window.isVisible() && isNormal(m_window)) {
                if (m_stored && !m_window.windowHandle()->frameMargins().isNull()) {
                    remember(place(m_window, *std::exchange(m_stored, std::nullopt)));
                }
                m_rest.start();
            }
            break;
        case QEvent::WindowStateChange:
            // Too early for the timer: the user was faster.
            if (m_rest.isActive() && !m_frame.isNull())
                m_frame = m_window.normalGeometry().marginsAdded(m_margins);
            break;
        default:
            break;
        }
        return false;
    }

private:
    explicit Watcher(QWidget &window)
        : QObject(&window)
        , m_window(window)
    {
        setObjectName(objectNameOfAll);
        m_rest.setInterval(restMs);
        m_rest.setSingleShot(true);
        connect(&m_rest, &QTimer::timeout, this, &Watcher::rest);
        window.installEventFilter(this);
    }

    void remember(const QRect &frame)
    {
        m_margins = m_window.windowHandle()->frameMargins();
        m_frame = frame;
    }

    void rest()
    {
        m_stored.reset(); // no frame is to come
        if (!isNormal(m_window))
            return;
        const QRect former = m_frame;
        remember(m_window.frameGeometry());
        if (changed && !former.isNull() && former != m_frame)
            changed();
    }

    static constexpr int restMs = 300; // a window that is dragged moves with every step
    static inline const QString objectNameOfAll = QStringLiteral("windowPosition");

    QWidget &m_window;
    QTimer m_rest;
    QRect m_frame; ///< In the normal state, when last at rest.
    QMargins m_margins; ///< From then.
    std::optional<Stored> m_stored; ///< Set until the frame is known.
};

} // namespace

namespace MWindowPosition {

void SaveWindowPosition(SettingsStore &store, const QString &name, const QWidget &window)
{
    const Watcher *watcher = Watcher::of(window);
    QRect frame = watcher ? watcher->normalFrame() : window.frameGeometry();
    if (screen())
        frame.translate(-screen()->geometry().topLeft());
    const std::pair<QString, int> values[] = {
        {QStringLiteral("Left"), frame.x()},
        {QStringLiteral("Top"), frame.y()},
        {QStringLiteral("Height"), frame.height()},
        {QStringLiteral("Width"), frame.width()},
    };
    QList<QPair<QString, QString>> pairs;
    for (const auto &[key, pixels] : values)
        pairs.append({key, VbConvert::fromSingle(static_cast<float>(toTwips(pixels)))});
    store.SaveSettings(QString::fromUtf16(SettingsStore::addIn), name, pairs);
}

void RestoreWindowPosition(const SettingsStore &store, const QString &name, QWidget &window)
{
    if (!screen())
        return;
    constexpr int most = 1000000; // far beyond every screen, and safe to add to
    Stored stored;
    const auto pairs = store.GetAllSettings(QString::fromUtf16(SettingsStore::addIn), name);
    for (const auto &[key, text] : pairs) {
        const auto number = VbConvert::toInt32(text);
        if (!number)
            continue;
        const int value = qBound(-most, *number, most);
        if (key == QLatin1StringView("Left"))
            stored.left = value;
        else if (key == QLatin1StringView("Top"))
            stored.top = value;
        else if (key == QLatin1StringView("Height") && value > 0)
            stored.height = value;
        else if (key == QLatin1StringView("Width") && value > 0)
            stored.width = value;
    }
    place(window, stored);
    Watcher::on(window).placeWhenFramed(stored);
}

void Center(QWidget &window)
{
    if (!screen())
        return;
    window.showNormal();
    const QRect area = screen()->availableGeometry();
    window.resize(area.size() * 2 / 3);
    window.move(area.center() - window.frameGeometry().center() + window.pos());
}

void ForgetWindowPosition(SettingsStore &store, const QString &name)
{
    QList<QPair<QString, QString>> pairs; // a value that is no number counts as missing
    for (const char16_t *key : {u"Left", u"Top", u"Height", u"Width"})
        pairs.append({QString::fromUtf16(key), QString()});
    store.SaveSettings(QString::fromUtf16(SettingsStore::addIn), name, pairs);
}

void WriteWhenChanged(SettingsStore &store, const QString &name, QWidget &window)
{
    Watcher::on(window).changed = [&store, name, &window] {
        try {
            SaveWindowPosition(store, name, window);
        } catch (const VbError &) {
            // The place stays as it was stored before.
        }
    };
}

QRect restored(
    const Stored &stored, const QSize &present, const QSize &smallest, const QSize &screen)
{
    // The centre is that of the present size, also where another one is stored.
    const int left = stored.left.value_or((screen.width() - present.width()) / 2);
    const int top = stored.top.value_or((screen.height() - present.height()) / 2);
    const QSize wanted(
        stored.width.value_or(present.width()), stored.height.value_or(present.height()));
    const QSize size = wanted.boundedTo(screen).expandedTo(smallest);
    const auto kept = [](int start, int length, int limit) {
        return qMax(0, qMin(start, limit - length));
    };
    return {
        QPoint(kept(left, size.width(), screen.width()), kept(top, size.height(), screen.height())),
        size};
}

} // namespace MWindowPosition
