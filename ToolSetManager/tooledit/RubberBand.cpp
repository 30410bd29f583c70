#include "tooledit/RubberBand.h"

#include <algorithm>

void RubberBand::begin(QPoint at)
{
    m_start = at;
    m_end = at;
    m_marking = false;
    m_byKeys = false;
}

RubberBand::Effect RubberBand::pressed(int key, Qt::KeyboardModifiers modifiers, QSize preview)
{
    const int step = modifiers.testFlag(Qt::ControlModifier) ? 1 : 8;
    QPoint by;
    switch (key) {
    case Qt::Key_Left:
        by = {-step, 0};
        break;
    case Qt::Key_Right:
        by = {step, 0};
        break;
    case Qt::Key_Up:
        by = {0, -step};
        break;
    case Qt::Key_Down:
        by = {0, step};
        break;
    case Qt::Key_Space:
        if (std::exchange(m_marking, !m_marking))
            return Effect::Ended;
        m_start = m_end;
        m_byKeys = true;
        return Effect::Moved;
    case Qt::Key_Escape:
        return std::exchange(m_marking, false) ? Effect::GivenUp : Effect::None;
    default:
        return Effect::None;
    }
    m_byKeys = true;
    m_end = {std::clamp(m_end.x() + by.x(), 0, preview.width()),
        std::clamp(m_end.y() + by.y(), 0, preview.height())};
    return Effect::Moved;
}

QRect RubberBand::rectangle() const
{
    const QPoint topLeft(std::min(m_start.x(), m_end.x()), std::min(m_start.y(), m_end.y()));
    return {topLeft,
        QSize(std::abs(m_start.x() - m_end.x()) + 1, std::abs(m_start.y() - m_end.y()) + 1)};
}

QRect RubberBand::shown() const
{
    return m_byKeys && !m_marking ? QRect(m_end - QPoint(2, 2), QSize(5, 5)) : rectangle();
}
