#include "tooledit/frmFileButton.h"

#include "model/CVBATool.h"
#include "platform/VbError.h"
#include "platform/desktop/Accessible.h"
#include "platform/desktop/ButtonIcons.h"
#include "platform/desktop/DirListBox.h"
#include "platform/desktop/DriveListBox.h"
#include "platform/desktop/FileListBox.h"
#include "platform/desktop/HelpTopic.h"
#include "platform/desktop/Hourglass.h"
#include "platform/desktop/MsgBox.h"
#include "platform/desktop/SettingsStore.h"
#include "platform/desktop/Tag.h"
#include "platform/desktop/mFileUtil.h"
#include "platform/picture/Picture.h"
#include "platform/picture/PictureControl.h"
#include "platform/picture/ProgramIcons.h"
#include "shell/Frame.h"
#include "shell/Settings.h"
#include "shell/frmHelp.h"
#include "tooledit/IconSteps.h"
#include "tooledit/IconStrip.h"
#include "tooledit/IconStripModel.h"
#include "tooledit/PictureEntry.h"
#include "tooledit/PictureTiles.h"
#include "tooledit/PreviewFrame.h"
#include "tooledit/capture.h"

#include <QAccessible>
#include <QComboBox>
#include <QDir>
#include <QGridLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QScreen>

namespace {

constexpr char16_t section[] = u"FileButton";
constexpr char16_t key[] = u"Path";

QString application()
{
    return QString::fromUtf16(Settings::application);
}

bool hasExtension(const QString &name, const char *extension)
{
    return name.endsWith(QLatin1StringView(extension), Qt::CaseInsensitive);
}

/// A frame around the button's picture that bears its tag.
QFrame *framed(PictureControl *picture, QWidget *parent)
{
    auto *frame = new QFrame(parent);
    frame->setFrameShape(QFrame::Box);
    auto *layout = new QVBoxLayout(frame);
    layout->setContentsMargins(1, 1, 1, 1);
    layout->addWidget(picture);
    picture->setFixedSize(CVBATool::pictureSide, CVBATool::pictureSide);
    Tag::set(*frame, Tag::of(*picture));
    Tag::set(*picture, {});
    frame->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    return frame;
}

} // namespace

frmFileButton::frmFileButton(SettingsStore &settings, QWidget *parent)
    : QDialog(parent)
    , m_settings(settings)
    , m_iconSize(ProgramIcons::usualSize)
{
    setObjectName(QStringLiteral("frmFileButton"));
    setWindowTitle(QStringLiteral("VB Quillon - Get Button Image From File"));
    HelpTopic::set(*this, "the-button-picture");
    makeControls();
    makeIconControls();
    makeButtons();
    connectControls();
    layOut();
    Form_Load();
}

void frmFileButton::makeControls()
{
    const auto tagged = [this](QWidget *control, const QString &name, const QString &tag) {
        control->setObjectName(name);
        Tag::set(*control, tag);
        Accessible::setName(*control, QString(tag).remove(u':')); // the captions are painted
    };
    const auto hidden = [this](const QString &name) {
        auto *picture = new PictureControl(this);
        picture->setObjectName(name);
        picture->hide();
        return picture;
    };

    DirList = new DirListBox(this);
    tagged(DirList, QStringLiteral("DirList"), QStringLiteral("Folders:"));
    FileList = new FileListBox(this);
    tagged(FileList, QStringLiteral("FileList"), QStringLiteral("Files:"));
    DriveList = new DriveListBox(this);
    tagged(DriveList, QStringLiteral("DriveList"), QStringLiteral("Drives:"));
    cboFilter = new QComboBox(this);
    tagged(cboFilter, QStringLiteral("cboFilter"), QStringLiteral("List Files of Type:"));
    // Kept: the blank behind "*.exe".
    cboFilter->addItems({QStringLiteral("*.*"), QStringLiteral("*.bmp"), QStringLiteral("*.dll"),
        QStringLiteral("*.exe "), QStringLiteral("*.ico"), QStringLiteral("*.wmf")});

    picFile = hidden(QStringLiteral("picFile"));
    picFileIcon = hidden(QStringLiteral("picFileIcon"));
    imgConvert = hidden(QStringLiteral("imgConvert"));
    imgConvert->resize(CVBATool::pictureSide, CVBATool::pictureSide);
    picImage = new PictureControl(this);
    tagged(picImage, QStringLiteral("picImage"), QStringLiteral("Preview:"));
    picImage->setFocusPolicy(Qt::StrongFocus);
    picImage->setCursor(Qt::CrossCursor);
    const QString marking = QStringLiteral(
        "Mark a part with the mouse, or with the keys: arrows move (with Ctrl by one pixel), Space "
        "begins and ends the part. A click takes the whole preview.");
    picImage->setToolTip(marking);
    picImage->setAccessibleDescription(marking);
    m_previewFrame = new PreviewFrame(picImage, this);
    m_previewFrame->setObjectName(QStringLiteral("previewFrame"));
    picButton = new PictureControl(this);
    tagged(picButton, QStringLiteral("picButton"), QStringLiteral("Button:"));
    m_tiles = new PictureTiles(this);
    tagged(m_tiles, QStringLiteral("tiles"), QStringLiteral("Before and after:"));
    m_tiles->setToolTip(
        QStringLiteral("The tool's picture as it is and as it will be, on light and on dark"));
    m_entry = new PictureEntry(this);
    lblNoPicture = new QLabel(QStringLiteral("This file holds no picture."), this);
    lblNoPicture->setObjectName(QStringLiteral("lblNoPicture"));
    lblNoPicture->setWordWrap(true);
}

void frmFileButton::makeIconControls()
{
    picIcoCtrl = new IconSteps(this);
    cboSize = new QComboBox(this);
    cboSize->setObjectName(QStringLiteral("cboSize"));
    Accessible::setName(*cboSize, QStringLiteral("Size"));
    cboSize->setToolTip(QStringLiteral("The icon's pictures of other sizes"));

    m_strip = new IconStripModel(this);
    lvIcons = new IconStrip(this);
    lvIcons->setObjectName(QStringLiteral("lvIcons"));
    lvIcons->setAccessibleName(QStringLiteral("Icons of the file"));
    lvIcons->setModel(m_strip);
}

void frmFileButton::makeButtons()
{
    cmdOK = new QPushButton(QStringLiteral("OK"), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setDefault(true);
    cmdCancel = new QPushButton(QStringLiteral("Cancel"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    cmdHelp = new QPushButton(QStringLiteral("&Help"), this);
    cmdHelp->setObjectName(QStringLiteral("cmdHelp"));
    ButtonIcons::giveOK(*cmdOK);
    ButtonIcons::giveCancel(*cmdCancel);
    ButtonIcons::giveHelp(*cmdHelp);
}

void frmFileButton::connectControls()
{
    connect(DriveList, &DriveListBox::Change, this, &frmFileButton::DriveList_Change);
    connect(DirList, &DirListBox::Change, this, &frmFileButton::DirList_Change);
    connect(cboFilter, &QComboBox::currentIndexChanged, this, &frmFileButton::cboFilter_Click);
    connect(FileList, &FileListBox::KeyUp, this, &frmFileButton::FileList_KeyUp);
    connect(FileList, &FileListBox::MouseUp, this, &frmFileButton::FileList_MouseUp);
    connect(FileList, &FileListBox::DblClick, this, &frmFileButton::FileList_DblClick);
    connect(m_previewFrame, &PreviewFrame::taken, this, &frmFileButton::picImage_Taken);
    connect(lvIcons->selectionModel(), &QItemSelectionModel::currentChanged, this,
        &frmFileButton::lvIcons_Click);
    connect(picIcoCtrl, &IconSteps::Click, this, &frmFileButton::cmdIcon_Click);
    connect(cboSize, &QComboBox::activated, this, &frmFileButton::cboSize_Click);
    connect(m_entry, &PictureEntry::pathEntered, this, &frmFileButton::openPath);
    connect(m_entry, &PictureEntry::pictureEntered, this, &frmFileButton::showPicture);
    connect(m_entry, &PictureEntry::nothingEntered, this,
        [this] { sayNoPicture(QStringLiteral("The clipboard holds no picture.")); });
    connect(cmdOK, &QPushButton::clicked, this, &frmFileButton::cmdOK_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &frmFileButton::cmdCancel_Click);
    connect(cmdHelp, &QPushButton::clicked, this, &frmFileButton::cmdHelp_Click);
}

QLayout *frmFileButton::pictureColumn(int captionHeight)
{
    auto *below = new QHBoxLayout;
    below->addWidget(picIcoCtrl, 1);
    below->addWidget(cboSize);
    auto *button = new QHBoxLayout;
    button->addWidget(framed(picButton, this), 0, Qt::AlignTop);
    button->addSpacing(fontMetrics().horizontalAdvance(QStringLiteral("Button:  ")) - 20);
    button->addWidget(m_tiles);
    button->addStretch(1);

    auto *column = new QVBoxLayout;
    column->setSpacing(3);
    column->addSpacing(captionHeight);
    column->addWidget(m_previewFrame);
    column->addLayout(below);
    column->addWidget(lblNoPicture);
    column->addStretch(1);
    column->addSpacing(captionHeight);
    column->addLayout(button);
    for (QWidget *of : QList<QWidget *> {picIcoCtrl, cboSize, lblNoPicture}) {
        QSizePolicy policy = of->sizePolicy();
        policy.setRetainSizeWhenHidden(true); // nothing jumps from file to file
        of->setSizePolicy(policy);
        of->hide();
    }
    return column;
}

void frmFileButton::layOut()
{
    // Room above each tagged control, for PrintCaptions().
    const int caption = fontMetrics().height() + 4;
    auto *lists = new QGridLayout;
    lists->setHorizontalSpacing(14);
    lists->setVerticalSpacing(3);
    lists->setRowMinimumHeight(0, caption);
    lists->addWidget(DirList, 1, 0);
    lists->addWidget(FileList, 1, 1);
    lists->setRowStretch(1, 1);
    lists->setRowMinimumHeight(2, caption + 4);
    lists->addWidget(DriveList, 3, 0);
    lists->addWidget(cboFilter, 3, 1);
    lists->setRowMinimumHeight(4, 4);
    lists->addWidget(m_entry, 5, 0, 1, 2);
    for (const int column : {0, 1})
        lists->setColumnStretch(column, 1);
    // A screen of 1024 by 768 pixels, two for one, has room for no more.
    for (QWidget *list : {static_cast<QWidget *>(DirList), static_cast<QWidget *>(FileList)})
        list->setMinimumSize(110, 60);
    auto *top = new QHBoxLayout;
    top->setSpacing(14);
    top->addLayout(lists, 1);
    top->addLayout(pictureColumn(caption));

    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    for (QPushButton *each : {cmdOK, cmdCancel, cmdHelp})
        buttons->addWidget(each);
    auto *all = new QVBoxLayout(this);
    all->setSpacing(8);
    all->addLayout(top, 2);
    all->addWidget(lvIcons, 1);
    all->addLayout(buttons);

    const QList<QWidget *> order = QList<QWidget *> {DirList, FileList, DriveList, cboFilter}
        + m_entry->fields() + QList<QWidget *> {picImage} + picIcoCtrl->fields()
        + QList<QWidget *> {cboSize, lvIcons, cmdOK, cmdCancel, cmdHelp};
    for (qsizetype i = 1; i < order.size(); ++i)
        setTabOrder(order[i - 1], order[i]);
    FileList->setFocus();
    resize(sizeHint().expandedTo({720, 0}).boundedTo(screen()->availableSize() * 0.95));
}

void frmFileButton::Form_Load()
{
    setFolder(m_settings.GetSetting(application(), QString::fromUtf16(section),
        QString::fromUtf16(key), QDir::toNativeSeparators(QDir::currentPath())));
    if (DirList->Path().isEmpty()) // the folder of last time is gone
        setFolder(QDir::currentPath());
    cboFilter->setCurrentIndex(0);
    m_ok = false;
    unsetCursor();
}

void frmFileButton::Form_QueryUnload()
{
    try {
        m_settings.SaveSetting(
            application(), QString::fromUtf16(section), QString::fromUtf16(key), DirList->Path());
    } catch (const VbError &) {
        // The next time starts in the folder of the time before.
    }
}

void frmFileButton::done(int result)
{
    Form_QueryUnload();
    QDialog::done(result);
}

// --- Lists ---

QString frmFileButton::Folder() const
{
    return DirList->Path();
}

void frmFileButton::setFolder(const QString &path)
{
    DriveList->setDrive(path);
    DirList->setPath(path);
}

void frmFileButton::setButtonPicture(const QImage &picture)
{
    picButton->setPicture(picture);
    m_tiles->setPresent(picture);
}

void frmFileButton::DriveList_Change()
{
    DirList->setPath(DriveList->Drive());
}

void frmFileButton::DirList_Change()
{
    FileList->setPath(DirList->Path());
    m_entry->setPath(DirList->Path());
    // Going up may lead out of the drive.
    const QSignalBlocker guard(DriveList);
    DriveList->setDrive(DirList->Path());
}

void frmFileButton::cboFilter_Click()
{
    FileList->setPattern(cboFilter->currentText());
}

void frmFileButton::FileList_KeyUp()
{
    if (FileList->FileName().isEmpty())
        return;
    // Whoever chooses a file is through with the folders: OK must not open one.
    DirList->highlightOpenFolder();
    GetFilePicture();
    snapshotOfPreview();
}

void frmFileButton::FileList_MouseUp()
{
    FileList_KeyUp();
}

void frmFileButton::FileList_DblClick()
{
    cmdOK_Click();
}

void frmFileButton::GetFilePicture()
{
    const QString name = FileList->FileName();
    if (!name.isEmpty())
        showChosen(name);
}

void frmFileButton::showChosen(const QString &name)
{
    const bool shown = showFile(name);
    m_hasPreview = m_hasPreview || shown;
    m_entry->setPath(mFileUtil::AddSeparator(DirList->Path()) + name);
    sayNoPicture(shown ? QString() : QStringLiteral("This file holds no picture."));
}

void frmFileButton::sayNoPicture(const QString &text)
{
    lblNoPicture->setText(text);
    lblNoPicture->setVisible(!text.isEmpty());
    if (!text.isEmpty()) {
        QAccessibleEvent alert(lblNoPicture, QAccessible::Alert);
        QAccessible::updateAccessibility(&alert);
    }
}

void frmFileButton::openPath(const QString &path)
{
    const QFileInfo wanted(QDir(DirList->Path()), path);
    if (path.isEmpty() || !wanted.exists()) {
        sayNoPicture(QStringLiteral("There is no such file or folder."));
        return;
    }
    sayNoPicture({});
    if (wanted.isDir()) {
        setFolder(wanted.absoluteFilePath());
        return;
    }
    setFolder(wanted.absolutePath());
    if (!FileList->setFileName(wanted.fileName())) {
        cboFilter->setCurrentIndex(0);
        FileList->setFileName(wanted.fileName()); // a hidden file is shown, but not listed
    }
    showChosen(wanted.fileName());
    snapshotOfPreview();
}

void frmFileButton::showPicture(const QImage &picture)
{
    if (picture.isNull())
        return;
    FileList->clearSelection();
    hideIcons();
    sayNoPicture({});
    picFile->setPicture(picture);
    picFile_Change();
    m_hasPreview = true;
    snapshotOfPreview();
}

bool frmFileButton::showFile(const QString &name)
{
    if (hasExtension(name, ".dib"))
        return false;
    const QString path = mFileUtil::AddSeparator(DirList->Path()) + name;
    if (hasExtension(name, ".dll") || hasExtension(name, ".exe")) {
        m_iconCount = CountIcons(path);
        if (m_iconCount == 0) {
            hideIcons();
            return false;
        }
        m_iconFile = path;
        m_iconSize = ProgramIcons::usualSize;
        m_icon = 1;
        m_strip->setIcons(std::make_unique<ProgramIcons>(path), m_iconCount);
        picIcoCtrl->show();
        return ShowIcon(path, 1);
    }
    hideIcons();
    const Hourglass busy;
    const QImage picture = Picture::load(path);
    if (picture.isNull())
        return false;
    picFile->setPicture(picture);
    picFile_Change();
    if (hasExtension(name, ".ico") || hasExtension(name, ".cur")) {
        m_iconFile = path;
        offerSizes(ProgramIcons(path).sizes(0), std::max(picture.width(), picture.height()));
    }
    return true;
}

// --- Pictures ---

void frmFileButton::picFile_Change()
{
    picImage->setPicture(picFile->Picture());
}

void frmFileButton::snapshotOfPreview()
{
    if (!m_hasPreview)
        return;
    m_previewFrame->setMarked({});
    ButtonSnapShot(picImage, 0, 0, picImage->width(), picImage->height());
}

bool frmFileButton::ButtonSnapShot(QWidget *window, int x1, int y1, int x2, int y2)
{
    if (x1 == x2 || y1 == y2)
        return true;
    QString error;
    {
        const Hourglass busy;
        if (x2 < x1)
            Swap(x1, x2);
        if (y2 < y1)
            Swap(y1, y2);
        const QPoint topLeft = window->mapToGlobal(QPoint(x1, y1));
        const QPoint bottomRight = window->mapToGlobal(QPoint(x2, y2));
        // The capture does not tell whether it wrote the file: a former one must not pass for it.
        QFile::remove(m_fileName);
        // The preview keeps its picture, although the capture lands in picFile: so another part
        // can be marked.
        capture::CaptureScreenRectToFile(
            {topLeft.x(), topLeft.y(), bottomRight.x(), bottomRight.y()}, m_fileName, *picFile);
        const QImage picture = Picture::load(m_fileName);
        if (picture.isNull()) {
            error = QStringLiteral("The picture cannot be written to \"%1\".").arg(m_fileName);
        } else {
            imgConvert->setPicture(picture);
            picButton->setPicture(imgConvert->Image());
            m_tiles->setChosen(picButton->Picture());
        }
    }
    if (error.isEmpty())
        return true;
    MsgBox::show(this, error, MsgBox::Buttons::Ok, MsgBox::Icon::Exclamation);
    return false;
}

void frmFileButton::picImage_Taken(const QRect &part)
{
    if (!m_hasPreview || part.isEmpty()) {
        snapshotOfPreview();
        return;
    }
    ButtonSnapShot(picImage, part.x(), part.y(), part.x() + part.width(), part.y() + part.height());
    m_previewFrame->setMarked(part & picImage->rect());
}

// --- Icons ---

int frmFileButton::CountIcons(const QString &fileName)
{
    const ProgramIcons icons(fileName);
    const int most = std::min(icons.count(), mostIcons);
    int count = 0;
    while (count < most && icons.has(count))
        ++count;
    return count;
}

bool frmFileButton::ShowIcon(const QString &fileName, int number)
{
    Q_ASSERT(fileName == m_iconFile);
    const QImage icon = m_strip->icon(number - 1, m_iconSize);
    if (icon.isNull())
        return false;
    m_icon = number;
    picFileIcon->resize(icon.size());
    picFileIcon->setPicture(icon);
    picImage->setPicture(picFileIcon->Image());
    picIcoCtrl->showNumber(number, m_iconCount);
    picIcoCtrl->show();
    offerSizes(m_strip->sizes(number - 1), std::max(icon.width(), icon.height()));
    lvIcons->setCurrentIndex(m_strip->index(number - 1));
    return true;
}

void frmFileButton::hideIcons()
{
    picIcoCtrl->hide();
    cboSize->hide();
    m_iconCount = 0;
    m_strip->setIcons(nullptr, 0);
}

void frmFileButton::offerSizes(const std::vector<int> &sizes, int shown)
{
    cboSize->clear();
    for (const int size : sizes)
        cboSize->addItem(QStringLiteral("%1 x %1").arg(size), size);
    cboSize->setCurrentIndex(cboSize->findData(shown));
    cboSize->setVisible(sizes.size() > 1);
}

void frmFileButton::cboSize_Click()
{
    const int size = cboSize->currentData().toInt();
    if (m_iconCount > 0) {
        m_iconSize = size;
        ShowIcon(m_iconFile, m_icon);
    } else {
        picFile->setPicture(ProgramIcons(m_iconFile).icon(0, size));
        picFile_Change();
    }
    snapshotOfPreview();
}

void frmFileButton::cmdIcon_Click(int Index)
{
    if (m_iconCount < 2)
        return;
    const int step = Index == 1 ? 1 : m_iconCount - 1;
    m_icon = (m_icon - 1 + step) % m_iconCount + 1;
    ShowIcon(m_iconFile, m_icon);
    snapshotOfPreview();
}

void frmFileButton::lvIcons_Click(const QModelIndex &index)
{
    // ShowIcon() moves the current icon, too.
    if (!index.isValid() || index.row() + 1 == m_icon)
        return;
    ShowIcon(m_iconFile, index.row() + 1);
    snapshotOfPreview();
}

// --- Captions ---

void frmFileButton::PrintCaptions()
{
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::WindowText));
    const auto controls = findChildren<QWidget *>();
    for (const QWidget *control : controls) {
        const QString tag = Tag::of(*control);
        if (tag.isEmpty() || !control->isVisibleTo(this))
            continue;
        const QPoint corner = control->mapTo(this, QPoint(0, 0));
        painter.drawText(corner - QPoint(0, fontMetrics().descent() + 3), tag);
    }
}

void frmFileButton::paintEvent(QPaintEvent *event)
{
    QDialog::paintEvent(event);
    PrintCaptions();
}

// --- Buttons ---

void frmFileButton::cmdOK_Click()
{
    if (!DirList->isOpenFolderHighlighted()) {
        DirList->setPath(DirList->highlighted());
        return;
    }
    if (m_entry->enterTyped())
        return; // likewise: what was typed is to be seen first
    if (!ButtonSnapShot(picButton, 0, 0, picButton->width(), picButton->height()))
        return; // the caller would read nothing
    m_ok = true;
    accept();
}

void frmFileButton::cmdCancel_Click()
{
    reject();
}

void frmFileButton::cmdHelp_Click()
{
    frmHelp::of(this)->showHelp(QString::fromUtf16(Frame::programHelp), HelpTopic::of(this));
}
