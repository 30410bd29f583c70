#pragma once

#include <QString>
#include <QtGlobal>

#include <array>

/// The events of the Visual Basic environment to which a tool can subscribe. An event's index in
/// the table is its identity everywhere: event i is the bit of value 2^i in a tool's mask
/// (CVBATool::VBEvents).
namespace VbEvents {

constexpr int eventCount = 26;
constexpr int groupCount = 6;

struct Event
{
    const char16_t *caption; ///< On the page of events; the same in several groups.
    const char16_t *name; ///< In the report; unique.
};

/// Events that stand together: from first to last, both included. The groups follow each other
/// without a gap.
struct Group
{
    const char16_t *caption;
    const char16_t *reportHeading;
    int first;
    int last;
};

extern const std::array<Event, eventCount> events;
extern const std::array<Group, groupCount> groups;

constexpr qint32 bit(int event)
{
    return qint32(1) << event;
}

/// True when the mask has the event; the bits above the last one mean nothing.
constexpr bool contains(qint32 mask, int event)
{
    return (mask & bit(event)) != 0;
}

/// The mask with the event set or cleared and all other bits as they were.
constexpr qint32 with(qint32 mask, int event, bool on)
{
    return on ? mask | bit(event) : mask & ~bit(event);
}

inline QString text(const char16_t *entry)
{
    return QString::fromUtf16(entry);
}

} // namespace VbEvents
