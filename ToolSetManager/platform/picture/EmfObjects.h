#pragma once

#include "platform/picture/EmfState.h"

#include <variant>
#include <vector>

/// The pens, brushes and fonts that an enhanced metafile makes and selects by number.
class EmfObjects
{
public:
    /// \a count is what the header promises; numbers beyond it are ignored.
    explicit EmfObjects(int count);

    /// Takes a record that makes an object; \a state gives monochrome patterns their colours.
    void create(const EmfRecord &record, const EmfState &state);
    void remove(quint32 number);
    /// Makes it the pen, brush or font of \a state; stock objects have numbers of their own.
    void select(quint32 number, EmfState &state) const;
    /// The brush of that number; one that draws nothing when there is none.
    EmfBrush brush(quint32 number) const;

private:
    using Object = std::variant<std::monostate, EmfPen, EmfBrush, EmfFont>;

    Object object(quint32 number) const;

    std::vector<Object> m_objects;
    qint64 m_memory;
};
