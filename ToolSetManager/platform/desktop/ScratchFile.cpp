#include "platform/desktop/ScratchFile.h"

#include "platform/desktop/SafeFiles.h"

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
    m_failed = m_file.fileName().isEmpty()
        || !SafeFiles::makeFolder(QFileInfo(m_file.fileName()).absolutePath())
        || !SafeFiles::openOwnFile(m_file);
    if (m_failed)
        return false;
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
