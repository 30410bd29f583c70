#include "support/SampleSet.h"

#include "model/CVBATools.h"
#include "platform/picture/PictureBox.h"

#include <QFileInfo>

namespace {

QImage picture(int number)
{
    QImage image(18, 18, QImage::Format_RGB32);
    for (int y = 0; y < 18; ++y) {
        for (int x = 0; x < 18; ++x)
            image.setPixel(x, y, qRgb(x * 14, y * 14, number % 256));
    }
    return image;
}

QString help(const QString &name)
{
    QString rtf = QStringLiteral("{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0\\fswiss Arial;}}\r\n"
                                 "\\pard\\plain\\f0\\fs24\\b ")
        + name + QStringLiteral("\\par\r\n\\plain\\f0\\fs20 ");
    while (rtf.size() < 2000)
        rtf += QStringLiteral("It reads its settings whenever you press {\\b Refresh}. ");
    return rtf.left(2044) + QStringLiteral("\\par\r\n}\r\n");
}

} // namespace

SampleSet::SampleSet()
    : m_storage(1252, path(QStringLiteral("scratch")), path(QStringLiteral("data")))
{
}

QList<ToolPtr> SampleSet::tools(int count)
{
    QList<ToolPtr> all;
    for (int i = 0; i < count; ++i) {
        auto tool = std::make_shared<CVBATool>();
        // A step without a common factor visits each number once, in no order that sorts.
        const auto number = qint64(i) * 7919 % count;
        tool->Description = QStringLiteral("Tool number %1").arg(number, 6, 10, QChar(u'0'));
        tool->setLocation(QStringLiteral("C:\\Tools\\Folder %1\\TOOL%2.EXE")
                              .arg(number % 97, 2, 10, QChar(u'0'))
                              .arg(number));
        tool->ToolType = static_cast<qint16>(i % 6);
        tool->AccessOptions = static_cast<qint16>(i % 32);
        tool->CommandLine = QStringLiteral("/project /quiet");
        tool->HelpString = help(tool->Description);
        tool->Picture = picture(i);
        all.append(tool);
    }
    return all;
}

QString SampleSet::file(int count)
{
    const QString path = this->path(QStringLiteral("%1.bmt").arg(count));
    if (QFileInfo::exists(path))
        return path;
    CVBATools set(m_storage);
    set.setDescription(QStringLiteral("A set of %L1 tools").arg(count));
    QStringList names;
    for (const ToolPtr &tool : tools(count)) {
        set.Add(tool);
        names.append(tool->Description);
    }
    PictureBox box(Twips {275}, Twips {275});
    return set.Save(path, names, box) ? path : QString();
}
