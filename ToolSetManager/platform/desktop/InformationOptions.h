#pragma once

#include <QFile>

#include <cstdio>

/// The options --help and --version of the program and of the opener. They are answered before
/// anything else is done, so they need no display and do not matter to a window that is open.
namespace InformationOptions {

/// Prints what the option asks for. False when the command line is not one of the two options
/// alone, or is the name of a file, which then is meant.
inline bool answered(int argc, const char *const *argv, const char *usage)
{
    const QByteArray option = argc == 2 ? argv[1] : "";
    const bool help = option == "--help";
    if ((!help && option != "--version") || QFile::exists(QFile::decodeName(option)))
        return false;
    std::puts(help ? usage : "VB Quillon Tool Set Manager " TSM_VERSION);
    return true;
}

} // namespace InformationOptions
