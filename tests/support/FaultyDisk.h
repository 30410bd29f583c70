#pragma once

#include <QByteArray>

/// A disk that fails. The program's own calls of the system for files and folders pass here,
/// because the test program defines them. Disarmed when it goes.
class FaultyDisk
{
public:
    static constexpr int killed = -1;

    /// Counting from 1, the \a nth call that changes a file, flushes or closes one ends the process
    /// (\a error is "killed", a write is half done then), or fails with \a error, and so do all
    /// later ones of its kind for that file.
    FaultyDisk(int nth, int error);
    ~FaultyDisk();
    FaultyDisk(const FaultyDisk &) = delete;
    FaultyDisk &operator=(const FaultyDisk &) = delete;

    /// What failed: the call's name, a blank and the path; empty when there were fewer calls.
    static QByteArray hit();
};
