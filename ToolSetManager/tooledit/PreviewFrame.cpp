#include "tooledit/PreviewFrame.h"

#include "platform/desktop/Tag.h"
#include "platform/picture/PictureControl.h"

#include <QKeyEvent>
#include <QPainter>

#include <algorithm>

namespace {

/// Multiples of what buttons measure; the first one also of what icons do: 16, 32, 48.
constexpr int sides[] = {288, 216, 144, 108};
constexpr int margin = 7; ///< Pixels between the picture and the edges of the frame.
constexpr int mark = 3; ///< Width of the marks.

} // namespace

PreviewFrame::PreviewFrame(PictureControl *picture, QWidget *parent)
    : QFrame(parent)
    , picImage(picture)
{
    picture->setParent(this);
    picture->setGeometry(margin, margin, sides[0], sides[0]);
    Tag::set(*this, Tag::of(*picture));
    Tag::set(*picture, {});
    setMaximumSize(sizeHint());
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    picture->installEventFilter(this);
    connect(picture, &PictureControl::MouseDown, this, &PreviewFrame::picImage_MouseDown);
    connect(picture, &PictureControl::MouseMove, this, &PreviewFrame::picImage_MouseMove);
    connect(picture, &PictureControl::MouseUp, this, &PreviewFrame::picImage_MouseUp);
}

void PreviewFrame::setMarked(const QRect &part)
{
    m_marked = part;
    update();
}

QSize PreviewFrame::sizeHint() const
{
    return QSize(sides[0] + 2 * margin, sides[0] + 2 * margin);
}

QSize PreviewFrame::minimumSizeHint() const
{
    constexpr int least = sides[std::size(sides) - 1] + 2 * margin;
    return QSize(least, least);
}

void PreviewFrame::resizeEvent(QResizeEvent *event)
{
    QFrame::resizeEvent(event);
    const int room = std::min(width(), height()) - 2 * margin;
    const int *fitting = std::find_if(
        std::begin(sides), std::end(sides) - 1, [&](int side) { return side <= room; });
    if (picImage->width() == *fitting)
        return;
    const double scale = double(*fitting) / picImage->width();
    m_marked = QRect(m_marked.topLeft() * scale, m_marked.size() * scale);
    picImage->setGeometry(margin, margin, *fitting, *fitting);
}

void PreviewFrame::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    const QRect picture = picImage->geometry();
    const bool focused = picImage->hasFocus();
    painter.setPen(palette().color(focused ? QPalette::Highlight : QPalette::WindowText));
    painter.drawRect(picture.adjusted(-1, -1, 0, 0));
    if (m_marked.isEmpty())
        return;
    const QColor colour = palette().color(QPalette::Active, QPalette::Highlight);
    const QRect part = m_marked.translated(picture.topLeft());
    constexpr int gap = 2;
    for (const int y : {picture.top() - gap - mark, picture.bottom() + 1 + gap})
        painter.fillRect(part.left(), y, part.width(), mark, colour);
    for (const int x : {picture.left() - gap - mark, picture.right() + 1 + gap})
        painter.fillRect(x, part.top(), mark, part.height(), colour);
}

// --- Marking ---

void PreviewFrame::picImage_MouseDown(const QPoint &position)
{
    m_band.begin(position);
    picImage->setBand({});
}

void PreviewFrame::picImage_MouseMove(const QPoint &position)
{
    m_band.moveTo(position);
    picImage->setBand(m_band.shown());
}

void PreviewFrame::picImage_MouseUp(const QPoint &position)
{
    m_band.moveTo(position);
    picImage->setBand({}); // it must not be in the picture
    Q_EMIT taken(m_band.hasArea() ? m_band.part() : QRect());
}

bool PreviewFrame::imageKeyPressed(int pressed, Qt::KeyboardModifiers modifiers)
{
    switch (m_band.pressed(pressed, modifiers, picImage->size())) {
    case RubberBand::Effect::None:
        return false; // Escape closes the dialog
    case RubberBand::Effect::Moved:
        picImage->setBand(m_band.shown());
        break;
    case RubberBand::Effect::Ended:
        picImage_MouseUp(m_band.end());
        break;
    case RubberBand::Effect::GivenUp:
        picImage->setBand({});
        break;
    }
    return true;
}

bool PreviewFrame::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::ShortcutOverride:
        if (m_band.isMarking() && static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape) {
            event->accept();
            return true;
        }
        break;
    case QEvent::KeyPress: {
        const auto *keys = static_cast<QKeyEvent *>(event);
        if (imageKeyPressed(keys->key(), keys->modifiers()))
            return true;
        break;
    }
    case QEvent::FocusIn:
        update();
        break;
    case QEvent::FocusOut:
        m_band.giveUp();
        picImage->setBand({});
        update();
        break;
    default:
        break;
    }
    return QFrame::eventFilter(watched, event);
}
