#pragma once

#include <QObject>
#include <QVariant>

/// Where in the manual a window or one of its parts is described: the name of a heading, as links
/// have it ("tool-properties"). F1 leads there.
namespace HelpTopic {

inline void set(QObject &window, const char *topic)
{
    window.setProperty("HelpTopic", QLatin1StringView(topic));
}

/// That of the object or else of the nearest one around it; empty where none has one.
inline QString of(const QObject *object)
{
    for (; object; object = object->parent()) {
        const QString topic = object->property("HelpTopic").toString();
        if (!topic.isEmpty())
            return topic;
    }
    return {};
}

} // namespace HelpTopic
