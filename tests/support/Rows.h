#pragma once

#include <QTest>

#include <initializer_list>
#include <tuple>
#include <utility>

/// The rows of a test function, told and taken as a whole:
///
///     void adding_data() { rows<QString, int>({{"the first", u"a"_qs, 1}, {"the last", ...}}); }
///     void adding()
///     {
///         const auto [name, position] = row<QString, int>();
namespace Rows {

constexpr const char *names[] = {"1", "2", "3", "4", "5", "6", "7", "8", "9"};

/// For tables whose rows are computed.
template <typename... Types>
void columns()
{
    int column = 0;
    (QTest::addColumn<Types>(names[column++]), ...);
}

template <typename... Types>
void rows(std::initializer_list<std::tuple<const char *, Types...>> table)
{
    columns<Types...>();
    for (const auto &entry : table) {
        std::apply([](const char *name,
                       const Types &...values) { (QTest::newRow(name) << ... << values); },
            entry);
    }
}

template <typename... Types>
std::tuple<Types...> row()
{
    return [&]<size_t... Column>(std::index_sequence<Column...>)
    {
        return std::tuple<Types...> {*static_cast<Types *>(
            QTest::qData(names[Column], QMetaType::fromType<Types>().id()))...};
    }
    (std::index_sequence_for<Types...>());
}

} // namespace Rows

using Rows::columns;
using Rows::row;
using Rows::rows;
