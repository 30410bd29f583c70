#include "platform/desktop/Theme.h"

#include <QApplication>
#include <QStyle>
#include <QToolTip>

Theme::Theme()
    : m_desktopStyle(QApplication::style()->name())
{
}

void Theme::choose(Choice choice)
{
    if (choice == m_choice)
        return;
    m_choice = choice;
    if (choice == AsDesktop) {
        QApplication::setStyle(m_desktopStyle);
        QApplication::setPalette(QPalette());
        QToolTip::setPalette(QPalette());
        return;
    }
    // The one style that takes all its colours from the palette.
    QApplication::setStyle(QStringLiteral("fusion"));
    const QPalette colours = palette(choice == Dark);
    QApplication::setPalette(colours);
    QToolTip::setPalette(colours);
}

QString Theme::word(Choice choice)
{
    switch (choice) {
    case Light:
        return QStringLiteral("light");
    case Dark:
        return QStringLiteral("dark");
    case AsDesktop:
        break;
    }
    return QStringLiteral("desktop");
}

Theme::Choice Theme::fromWord(const QString &word)
{
    for (const Choice choice : {Light, Dark}) {
        if (word.compare(Theme::word(choice), Qt::CaseInsensitive) == 0)
            return choice;
    }
    return AsDesktop;
}

QPalette Theme::palette(bool dark)
{
    const QColor window = dark ? QColor(0x2d, 0x2f, 0x33) : QColor(0xef, 0xf0, 0xf1);
    const QColor base = dark ? QColor(0x1e, 0x20, 0x23) : QColor(Qt::white);
    const QColor text = dark ? QColor(0xf0, 0xf0, 0xf0) : QColor(0x1b, 0x1e, 0x20);
    const QColor faint = dark ? QColor(0x84, 0x88, 0x8c) : QColor(0x8a, 0x8e, 0x91);
    const QColor accent(0x30, 0x8c, 0xc6);
    QPalette colours(window); // with the shades of frames
    for (const QPalette::ColorRole role :
        {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText})
        colours.setColor(role, text);
    colours.setColor(QPalette::Window, window);
    colours.setColor(QPalette::Button, window);
    colours.setColor(QPalette::Base, base);
    colours.setColor(QPalette::AlternateBase, dark ? QColor(0x26, 0x28, 0x2c) : window);
    colours.setColor(QPalette::ToolTipBase, dark ? QColor(0x3a, 0x3d, 0x41) : QColor(Qt::white));
    colours.setColor(QPalette::BrightText, Qt::white);
    colours.setColor(QPalette::PlaceholderText, faint);
    colours.setColor(QPalette::Highlight, accent);
    colours.setColor(QPalette::HighlightedText, Qt::white);
    colours.setColor(QPalette::Link, dark ? QColor(0x5c, 0xb8, 0xee) : QColor(0x1d, 0x6f, 0xa5));
    colours.setColor(QPalette::LinkVisited, faint);
    for (const QPalette::ColorRole role :
        {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        colours.setColor(QPalette::Disabled, role, faint);
    colours.setColor(QPalette::Disabled, QPalette::Highlight, faint);
    return colours;
}
