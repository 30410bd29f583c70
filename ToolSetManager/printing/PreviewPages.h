#pragma once

#include <QString>

#include <algorithm>

/// Which page of a preview is shown, and where one can go from there. Without a window, so that
/// the rule can be tested as a table.
class PreviewPages
{
public:
    /// Shows page 1 of \a count pages; none when there are none.
    explicit PreviewPages(int count = 0)
        : m_count(count)
        , m_shown(count > 0 ? 1 : 0)
    {
    }

    int shown() const { return m_shown; } ///< Counted from 1; 0 for none.
    int count() const { return m_count; }

    /// Runs the toolbar button of that key ("First", "Previous", "Next" or "Last"). A button that
    /// isEnabled() denies changes nothing.
    void go(const QString &key)
    {
        if (!isEnabled(key))
            return;
        if (key == QLatin1StringView("First"))
            m_shown = 1;
        else if (key == QLatin1StringView("Previous"))
            --m_shown;
        else if (key == QLatin1StringView("Next"))
            ++m_shown;
        else if (key == QLatin1StringView("Last"))
            m_shown = m_count;
    }

    void goTo(int page) { m_shown = std::clamp(page, std::min(1, m_count), m_count); }

    bool isEnabled(const QString &key) const
    {
        if (key == QLatin1StringView("First") || key == QLatin1StringView("Previous"))
            return m_shown > 1;
        if (key == QLatin1StringView("Next") || key == QLatin1StringView("Last"))
            return m_shown < m_count;
        return m_count > 0; // "Print"
    }

    QString panelText() const { return QStringLiteral("Page %1 of %2").arg(m_shown).arg(m_count); }

private:
    int m_count;
    int m_shown;
};
