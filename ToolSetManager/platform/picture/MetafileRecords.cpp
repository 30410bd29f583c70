#include "platform/picture/MetafileRecords.h"

#include "platform/picture/LittleEndian.h"

using LittleEndian::at;

namespace MetafileRecords {

bool read(QByteArrayView bytes, std::vector<Record> &records)
{
    for (qsizetype position = 0; position + recordSize <= bytes.size();) {
        const qint64 size = qint64(at<quint32>(bytes, position)) * 2;
        if (size < recordSize || size > bytes.size() - position)
            return false;
        const QByteArrayView all = bytes.sliced(position, size);
        const auto function = at<quint16>(all, 4);
        if (function == EndOfFile)
            return true;
        records.push_back({function, all.sliced(recordSize), all});
        position += size;
    }
    return false;
}

QByteArrayView bitmap(const Record &record)
{
    qsizetype offset = 0;
    switch (record.function) {
    case DibBitBlt:
        offset = 16;
        break;
    case SetDibToDevice:
        offset = 18;
        break;
    case DibStretchBlt:
        offset = 20;
        break;
    case StretchDib:
        offset = 22;
        break;
    default:
        return {};
    }
    return record.parameters.size() > offset ? record.parameters.sliced(offset) : QByteArrayView();
}

void append(
    QByteArray &bytes, quint16 function, std::initializer_list<int> words, QByteArrayView data)
{
    const auto size = recordSize / 2 + qsizetype(words.size()) + data.size() / 2;
    LittleEndian::append(bytes, static_cast<quint32>(size));
    LittleEndian::append(bytes, function);
    for (const int word : words)
        LittleEndian::append(bytes, static_cast<quint16>(word));
    bytes.append(data);
}

} // namespace MetafileRecords
