// Writes the sample tool sets into the folder named on the command line.

#include "model/CVBATools.h"
#include "model/ToolSetStorage.h"
#include "platform/picture/PictureBox.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>
#include <QTemporaryDir>

#include <cstdio>

namespace {

constexpr int side = 18;

/// A small drawing of our own for each sample tool.
QImage picture(int shape, const QColor &colour)
{
    QImage image(side, side, QImage::Format_RGB32);
    image.fill(QColor(192, 192, 192));
    QPainter painter(&image);
    painter.setPen(QPen(colour.darker(160), 1));
    painter.setBrush(colour);
    switch (shape) {
    case 0: // a sheet of paper
        painter.setBrush(Qt::white);
        painter.drawRect(4, 2, 10, 13);
        for (int y = 5; y <= 12; y += 2)
            painter.fillRect(6, y, y % 4 == 1 ? 6 : 4, 1, colour);
        break;
    case 1: // a window
        painter.setBrush(Qt::white);
        painter.drawRect(2, 3, 13, 11);
        painter.fillRect(3, 4, 12, 3, colour);
        break;
    case 2: // a ball
        painter.setRenderHint(QPainter::Antialiasing);
        painter.drawEllipse(QRectF(3.5, 3.5, 11, 11));
        break;
    case 3: // an arrow
        painter.drawPolygon(QPolygon({{3, 7}, {9, 7}, {9, 3}, {15, 9}, {9, 15}, {9, 11}, {3, 11}}));
        break;
    case 4: // three bars
        painter.fillRect(3, 10, 3, 5, colour);
        painter.fillRect(7, 6, 3, 9, colour.lighter(130));
        painter.fillRect(11, 3, 3, 12, colour.darker(130));
        break;
    case 5: { // a question mark
        QFont font(QStringLiteral("Liberation Sans"));
        font.setPixelSize(15);
        font.setBold(true);
        painter.setFont(font);
        painter.setPen(colour);
        painter.drawText(image.rect(), Qt::AlignCenter, QStringLiteral("?"));
        break;
    }
    case 6: // a grid
        for (int y = 3; y < 15; y += 4) {
            for (int x = 3; x < 15; x += 4)
                painter.fillRect(x, y, 3, 3, (x + y) % 8 < 4 ? colour : colour.lighter(150));
        }
        break;
    default: // a key
        painter.drawEllipse(3, 3, 6, 6);
        painter.drawLine(9, 9, 15, 15);
        painter.drawLine(13, 15, 15, 13);
        break;
    }
    return image;
}

QString help(const QString &name, const QString &text)
{
    return QStringLiteral(
        "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0\\fswiss Arial;}}\r\n"
        "\\pard\\plain\\f0\\fs24\\b %1\\par\r\n\\plain\\f0\\fs20 %2\\par\r\n}\r\n")
        .arg(name, text);
}

struct Sample
{
    const char16_t *name;
    CVBATool::Kind kind;
    const char16_t *location;
    const char16_t *commandLine;
    int access;
    qint32 events;
    int shape;
    QColor colour;
    const char16_t *help;
};

bool write(const QString &path, const QString &description, const QList<Sample> &samples,
    ToolSetStorage &storage)
{
    CVBATools set(storage);
    set.setAllowDupes(true);
    set.setDescription(description);
    set.setLongDescription(help(description, QStringLiteral("A sample to look at and to change.")));
    QStringList names;
    for (const Sample &sample : samples) {
        auto tool = std::make_shared<CVBATool>();
        tool->Description = QString::fromUtf16(sample.name);
        tool->ToolType = sample.kind;
        tool->setLocation(QString::fromUtf16(sample.location));
        tool->CommandLine = QString::fromUtf16(sample.commandLine);
        tool->AccessOptions = static_cast<qint16>(sample.access);
        tool->VBEvents = sample.events;
        tool->Enabled = sample.access != 0;
        if (tool->UseHotKey())
            tool->Hotkey = QStringLiteral("Ctrl+Shift+") + tool->Description.left(1).toUpper();
        if (sample.shape >= 0)
            tool->Picture = picture(sample.shape, sample.colour);
        if (*sample.help)
            tool->HelpString = help(tool->Description, QString::fromUtf16(sample.help));
        set.Add(tool);
        names.append(tool->Description);
    }
    PictureBox box(Twips {275}, Twips {275});
    if (set.Save(path, names, box))
        return true;
    std::fprintf(stderr, "%s\n", qUtf8Printable(set.ErrorDescription));
    return false;
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: make_samples FOLDER\n");
        return 2;
    }
    const QString folder = QString::fromLocal8Bit(argv[1]);
    const QTemporaryDir scratch;
    ToolSetStorage storage(1252, scratch.path(), scratch.path());
    using Tool = CVBATool;
    const QList<Sample> everyday {
        {u"Notepad", Tool::StandardExecutable, u"C:\\WINDOWS\\NOTEPAD.EXE", u"", 7, 0, 0,
            QColor(40, 90, 170), u"Opens the small text editor with an empty sheet."},
        {u"Paint", Tool::StandardExecutable, u"C:\\Program Files\\Accessories\\MSPAINT.EXE", u"", 3,
            0, 6, QColor(200, 60, 50), u"Draws and changes bitmaps for forms and buttons."},
        {u"Calculator", Tool::StandardExecutable, u"C:\\WINDOWS\\CALC.EXE", u"", 7, 0, 4,
            QColor(40, 130, 90), u""},
        {u"Separator", Tool::Separator, u"", u"", 1, 0, -1, {}, u""},
        {u"Code Counter", Tool::AddInExecutable, u"C:\\Tools\\Counter\\COUNTER.EXE", u"/project /q",
            27, 0x03C00010, 4, QColor(120, 70, 160),
            u"Counts the lines of all modules whenever a project or file is written."},
        {u"Source Keeper", Tool::AddInExecutable, u"KeeperServer.Application", u"", 26, 0x000001FF,
            7, QColor(160, 110, 20), u"Keeps a copy of each file before it is written."},
        {u"Header Comment", Tool::Macro, u"HEADER.BMM", u"", 5, 0, 0, QColor(30, 120, 60),
            u"Puts the date and the author above the procedure at the caret."},
        {u"Sort Procedures", Tool::Macro, u"SORTPROC.BAS", u"", 3, 0, 3, QColor(30, 120, 60),
            u"Brings the procedures of the module into the order of their names."},
        {u"Align Controls", Tool::Macro, u"ALIGN.BMM", u"left", 3, 0x0000E000, 6,
            QColor(30, 120, 60), u""},
        {u"Separator(1)", Tool::Separator, u"", u"", 1, 0, -1, {}, u""},
        {u"API Guide", Tool::HelpFile, u"C:\\VB\\HELP\\WIN32API.HLP", u"", 6, 0, 5,
            QColor(180, 40, 40), u"The functions of the operating system, by name."},
        {u"Project Notes", Tool::TextFile, u"C:\\Projects\\NOTES.TXT", u"", 3, 0, 0,
            QColor(110, 110, 110), u""},
        {u"Release Steps", Tool::TextFile, u"C:\\Projects\\RELEASE.TXT", u"", 2, 0, 0,
            QColor(110, 110, 110), u"What is to be done before a version leaves the house."},
        {u"Old Profiler", Tool::StandardExecutable, u"C:\\Tools\\PROFILER.EXE", u"/log", 0, 0, 1,
            QColor(90, 90, 130), u""},
    };
    const bool ok = write(folder + QStringLiteral("/everyday.bmt"),
        QStringLiteral("Everyday tools for Visual Basic 5"), everyday, storage);
    return ok ? 0 : 1;
}
