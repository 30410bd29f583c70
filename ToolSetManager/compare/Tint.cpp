#include "compare/Tint.h"

#include <QGuiApplication>
#include <QPalette>

QColor Tint::of(Kind kind)
{
    const auto colour = [kind]() -> QColor {
        switch (kind) {
        case Changed:
            return {230, 180, 0};
        case OnlyLeft:
            return {220, 60, 60};
        case OnlyRight:
            return {40, 160, 70};
        default:
            return {170, 60, 210};
        }
    }();
    // A little of it in the colour of lists, so that their text stays as plain as it was.
    const QColor base = QGuiApplication::palette().color(QPalette::Base);
    constexpr int share = 22; // per cent
    const auto mix = [](int a, int b) { return (a * share + b * (100 - share)) / 100; };
    return {mix(colour.red(), base.red()), mix(colour.green(), base.green()),
        mix(colour.blue(), base.blue())};
}
