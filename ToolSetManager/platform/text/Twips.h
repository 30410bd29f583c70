#pragma once

#include <cmath>

/// A length in twips (1440 to the inch), the unit of stored window positions and of print layout.
/// A type of its own, so that a length in pixels cannot be taken for one.
struct Twips
{
    static constexpr int perInch = 1440;
    static constexpr int perPoint = 20;
    static constexpr double classicDpi = 96; ///< What rich text and button pictures keep to.
    static constexpr int perPixel = 15; ///< At that resolution.

    int value = 0;

    /// \a dpi is the logical resolution of the screen (QScreen::logicalDotsPerInch).
    static Twips fromPixels(double pixels, double dpi = classicDpi)
    {
        return Twips {static_cast<int>(std::lround(pixels * perInch / dpi))};
    }
    int toPixels(double dpi = classicDpi) const
    {
        return static_cast<int>(std::lround(value * dpi / perInch));
    }

    friend bool operator==(Twips, Twips) = default;
    friend auto operator<=>(Twips, Twips) = default; // NOLINT(modernize-use-nullptr): compares to 0
    friend Twips operator+(Twips a, Twips b) { return Twips {a.value + b.value}; }
    friend Twips operator-(Twips a, Twips b) { return Twips {a.value - b.value}; }
};
