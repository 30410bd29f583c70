#include "platform/rtf/RtfReader.h"
#include "platform/rtf/RtfStyle.h"
#include "platform/rtf/RtfWriter.h"

#include <QFile>
#include <QFont>
#include <QGuiApplication>
#include <QRandomGenerator>
#include <QTextBlock>
#include <QTextDocument>

#include <cstdio>

namespace {

QByteArray bytesOf(const char *path)
{
    QFile file(QString::fromLocal8Bit(path));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void read(const QByteArray &rtf, QTextDocument &document)
{
    document.setDefaultFont(QFont(QStringLiteral("Times New Roman"), 12));
    RtfReader().read(rtf, document);
}

/// One line for each run: its flags, size in half points, font, colour, and its text.
QByteArray formatsOf(const QTextDocument &document)
{
    QString lines;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            const auto style = RtfCharStyle::fromFormat(fragment.charFormat(), QFont());
            QString text = fragment.text();
            text.replace(QChar(QChar::LineSeparator), u' ').replace(u'\t', u' ');
            QString flags;
            for (const auto &[flag, letter] : {std::pair(RtfCharStyle::Bold, 'b'),
                     {RtfCharStyle::Italic, 'i'}, {RtfCharStyle::Underline, 'u'},
                     {RtfCharStyle::Strike, 's'}, {RtfCharStyle::Hidden, 'v'}}) {
                if (style.has(flag))
                    flags += QLatin1Char(letter);
            }
            lines += QStringLiteral("%1\t%2\t%3\t%4\t%5\n")
                         .arg(flags)
                         .arg(style.halfPoints)
                         .arg(style.family)
                         .arg(style.colour ? *style.colour & 0xFFFFFF : 0, 6, 16, QLatin1Char('0'))
                         .arg(text);
        }
        lines += QStringLiteral("\n");
    }
    return lines.toUtf8();
}

/// The whole promise of the writer: what it wrote reads back as the same text and formats, and is
/// written alike once more.
bool isKept(const QByteArray &rtf)
{
    QTextDocument first;
    read(rtf, first);
    const QByteArray written = RtfWriter::write(first);
    QTextDocument second;
    read(written, second);
    return first.toRawText() == second.toRawText() && formatsOf(first) == formatsOf(second)
        && RtfWriter::write(second) == written;
}

QByteArray mutant(QByteArray rtf, QRandomGenerator &random)
{
    static constexpr const char *words[] = {"{", "}", "\\", "\\'", "\\b", "\\par", "\\cell",
        "\\row", "\\intbl", "\\u8364", "\\f1", "\\fs48", "\\v", "{\\*\\x", "\\dbch", "\\plain",
        "\\pard", "\\trowd", "\\bin9 ", "\\uc2", "\\page", "\x81", "\\tab"};
    for (int changes = random.bounded(1, 6); changes > 0 && rtf.size() > 10; --changes) {
        const qsizetype at = random.bounded(5, int(rtf.size()));
        switch (random.bounded(4)) {
        case 0:
            rtf[at] = static_cast<char>(random.bounded(256));
            break;
        case 1:
            rtf.remove(at, random.bounded(1, 40));
            break;
        case 2:
            rtf.insert(at, words[random.bounded(int(std::size(words)))]);
            break;
        default:
            rtf.insert(at, rtf.mid(random.bounded(int(rtf.size())), random.bounded(1, 60)));
            break;
        }
    }
    return rtf;
}

int mutants(int count, const QList<QByteArray> &files)
{
    QRandomGenerator random(1);
    int changed = 0;
    for (int i = 0; i < count; ++i) {
        const QByteArray rtf = mutant(files.at(random.bounded(int(files.size()))), random);
        if (isKept(rtf))
            continue;
        ++changed;
        QFile file(QStringLiteral("changed-%1.rtf").arg(i));
        if (file.open(QIODevice::WriteOnly))
            file.write(rtf);
    }
    std::printf("%d mutants, %d changed by writing\n", count, changed);
    return changed == 0 ? 0 : 1;
}

} // namespace

/// What `bench/corpus` asks of the program's reader and writer:
///
///     rtf_corpus formats FILE          its runs with their formats
///     rtf_corpus write FILE TO         what the program writes of it
///     rtf_corpus mutants COUNT FILE... changed at random, written, read and compared
int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_LOGGING_RULES", "*=false");
    const QGuiApplication application(argc, argv);
    const QByteArray command = argc > 1 ? argv[1] : "";
    if (command == "formats" && argc == 3) {
        QTextDocument document;
        read(bytesOf(argv[2]), document);
        std::fputs(formatsOf(document).constData(), stdout);
        return 0;
    }
    if (command == "write" && argc == 4) {
        QTextDocument document;
        read(bytesOf(argv[2]), document);
        QFile file(QString::fromLocal8Bit(argv[3]));
        return file.open(QIODevice::WriteOnly) && file.write(RtfWriter::write(document)) > 0 ? 0
                                                                                             : 1;
    }
    if (command == "mutants" && argc > 3) {
        constexpr qsizetype largest = 20'000; // so that there are many
        QList<QByteArray> files;
        for (int i = 3; i < argc; ++i) {
            const QByteArray rtf = bytesOf(argv[i]);
            if (RtfReader::isRtf(rtf) && rtf.size() <= largest)
                files.append(rtf);
        }
        return files.isEmpty() ? 2 : mutants(QByteArray(argv[2]).toInt(), files);
    }
    std::fprintf(
        stderr, "usage: rtf_corpus formats FILE | write FILE TO | mutants COUNT FILE...\n");
    return 2;
}
