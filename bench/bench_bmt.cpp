// Load and save of a tool set beside what the file system and the bitmaps alone cost.

#include "model/BmtReader.h"
#include "model/CVBATools.h"
#include "platform/picture/PictureBox.h"
#include "support/Ratios.h"
#include "support/SampleSet.h"

#include <QBuffer>
#include <QFile>
#include <QGuiApplication>

namespace {

SampleSet *samples = nullptr;

int countOf(const benchmark::State &state)
{
    return static_cast<int>(state.range(0));
}

QByteArray readAll(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly | QIODevice::Unbuffered) ? file.readAll() : QByteArray();
}

void load(benchmark::State &state)
{
    const QString path = samples->file(countOf(state));
    for (auto _ : state) {
        auto set = std::make_unique<CVBATools>(samples->storage());
        set->setAllowDupes(true);
        if (!set->Load(path) || set->Count() != countOf(state))
            state.SkipWithError("not loaded");
        state.PauseTiming();
        set.reset();
        state.ResumeTiming();
    }
}

/// Where the bitmaps stand in the file, found beforehand.
std::vector<std::pair<qsizetype, qsizetype>> bitmapsIn(const QByteArray &bytes)
{
    std::vector<std::pair<qsizetype, qsizetype>> all;
    BmtReader reader(bytes);
    BmtFormat::Header header;
    BmtFormat::Record record;
    reader.readHeader(header, samples->storage().codePage);
    while (reader.readRecord(record) == BmtReader::Found::Record)
        all.emplace_back(record.picture.data() - bytes.data(), record.picture.size());
    return all;
}

void loadFloor(benchmark::State &state)
{
    const QString path = samples->file(countOf(state));
    const auto places = bitmapsIn(readAll(path));
    QFile scratch(samples->path(QStringLiteral("scratch.bmp")));
    if (!scratch.open(QIODevice::ReadWrite | QIODevice::Unbuffered))
        state.SkipWithError("no scratch file");
    for (auto _ : state) {
        const QByteArray bytes = readAll(path);
        std::vector<QImage> images;
        images.reserve(places.size());
        for (const auto &[offset, size] : places) {
            scratch.seek(0);
            scratch.write(bytes.constData() + offset, size);
            images.push_back(
                QImage::fromData(reinterpret_cast<const uchar *>(bytes.constData()) + offset,
                    static_cast<int>(size), "BMP"));
        }
        benchmark::DoNotOptimize(images.data());
        state.PauseTiming();
        images.clear();
        state.ResumeTiming();
    }
}

void save(benchmark::State &state)
{
    CVBATools set(samples->storage());
    set.Load(samples->file(countOf(state)));
    const QString path = samples->path(QStringLiteral("saved.bmt"));
    QFile::remove(path);
    QStringList names;
    for (const ToolPtr &tool : set)
        names.append(tool->Description);
    PictureBox box(Twips {275}, Twips {275});
    set.Save(path, names, box); // so that there is something to back up
    for (auto _ : state) {
        if (!set.Save(path, names, box))
            state.SkipWithError("not saved");
    }
}

/// What a save cannot do without: the bitmaps made and passed through the scratch file, the former
/// content copied, the bytes written.
template <bool WithBitmaps>
void saveFloor(benchmark::State &state)
{
    const QByteArray bytes = readAll(samples->file(countOf(state)));
    std::vector<QImage> images;
    for (const auto &[offset, size] : bitmapsIn(bytes))
        images.push_back(QImage::fromData(bytes.sliced(offset, size), "BMP"));
    const QString path = samples->path(QStringLiteral("plain.bmt"));
    QFile(path).remove();
    QFile::copy(samples->file(countOf(state)), path);
    QFile scratch(samples->path(QStringLiteral("scratch.bmp")));
    if (!scratch.open(QIODevice::ReadWrite | QIODevice::Unbuffered))
        state.SkipWithError("no scratch file");
    int number = 0;
    for (auto _ : state) {
        if constexpr (WithBitmaps) {
            for (const QImage &image : images) {
                QByteArray bitmap;
                QBuffer buffer(&bitmap);
                buffer.open(QIODevice::WriteOnly);
                image.save(&buffer, "BMP");
                scratch.seek(0);
                scratch.write(bitmap);
            }
        }
        const QString copy = path + QString::number(++number);
        bool ok = QFile::copy(path, copy);
        QFile file(path);
        ok = ok && file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)
            && file.write(bytes) == bytes.size();
        file.close();
        if (!ok)
            state.SkipWithError("not written");
        if (number > 9) // as many copies as the program keeps
            QFile::remove(path + QString::number(number - 9));
    }
    while (number > 0)
        QFile::remove(path + QString::number(number--));
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    SampleSet set;
    samples = &set;
    Ratios ratios({1000, 10000});
    ratios.compare({"load", load}, {"plain read + bitmaps + scratch file", loadFloor}, 1.5);
    ratios.compare(
        {"save", save}, {"bitmaps + scratch file + copy + plain write", saveFloor<true>});
    ratios.compare({"save", save}, {"copy + plain write", saveFloor<false>});
    return ratios.run(argc, argv);
}
