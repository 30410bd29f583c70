#include "platform/desktop/ScratchFile.h"

#include "platform/desktop/SafeFiles.h"

#include <QDir>
#include <QFileInfo>

ScratchFile::ScratchFile(const QString &path)
    : m_file(path)
{
}

bool ScratchFile::open()
{
    if (m_file.isOpen())
        return true;
    if (m_failed)
        return false;
    QDir().mkpath(QFileInfo(m_file.fileName()).absolutePath());
    m_failed =
        !m_file.open(QIODevice::ReadWrite | QIODevice::Unbuffered, SafeFiles::filePermissions);
    if (m_failed)
        return false;
    m_file.setPermissions(SafeFiles::filePermissions); // where it was there already
    m_size = m_file.size();
    return true;
}

bool ScratchFile::write(QByteArrayView bytes)
{
    if (!open() || !m_file.seek(0) || m_file.write(bytes.data(), bytes.size()) != bytes.size())
        return false;
    if (bytes.size() < m_size && !m_file.resize(bytes.size()))
        return false;
    m_size = bytes.size();
    return true;
}
