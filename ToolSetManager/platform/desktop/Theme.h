#pragma once

#include <QPalette>
#include <QString>

/// The colours of the program's windows: those of the desktop, or light or dark ones that need
/// neither a theme package nor a desktop that has a setting for it.
class Theme
{
public:
    enum Choice { AsDesktop, Light, Dark };

    /// To be made once, before the first window; the desktop's style is what runs then.
    Theme();

    Choice choice() const { return m_choice; }
    /// Windows that are open change at once.
    void choose(Choice choice);

    /// The word that stands for a choice in the settings; an unknown one means AsDesktop.
    static QString word(Choice choice);
    static Choice fromWord(const QString &word);

    static QPalette palette(bool dark);

private:
    QString m_desktopStyle;
    Choice m_choice = AsDesktop;
};
