#pragma once

#include <QDialog>

#include <vector>

class DirListBox;
class DriveListBox;
class FileListBox;
class IconSteps;
class IconStrip;
class IconStripModel;
class PictureControl;
class PictureEntry;
class PictureTiles;
class PreviewFrame;
class QComboBox;
class QLabel;
class QPushButton;
class SettingsStore;

/// The picker of a button picture: from a picture file or from an icon inside a program file, all
/// of it or a part that is marked in the preview. What is shown in the picture areas is
/// photographed from the screen into a scratch bitmap, which the caller reads after OK.
///
/// Every snapshot also goes to the clipboard, whose former content is lost.
class frmFileButton : public QDialog
{
    Q_OBJECT
public:
    /// CountIcons() counts no further.
    static constexpr int mostIcons = 1000;

    /// The settings keep the last folder; they are borrowed.
    explicit frmFileButton(SettingsStore &settings, QWidget *parent = nullptr);

    // --- Properties ---
    /// Path of the scratch bitmap. To be set before the dialog is shown.
    void setFileName(const QString &path) { m_fileName = path; }
    /// True only when the dialog was closed by cmdOK; otherwise the scratch file means nothing.
    bool OK() const { return m_ok; }
    /// True once the preview has shown a picture. Before that the button keeps the tool's picture,
    /// and OK means that it stays.
    bool hasPreview() const { return m_hasPreview; }
    QString Folder() const;
    void setFolder(const QString &path);

    /// What picButton shows until something is chosen: the picture that the tool has.
    void setButtonPicture(const QImage &picture);

    // --- Operations ---
    /// Photographs a rectangle of \a window, in its own coordinates, into the scratch file and
    /// picButton. The corners may come in any order; nothing happens when two of them fall on one
    /// line. An error is shown; false then.
    bool ButtonSnapShot(QWidget *window, int x1, int y1, int x2, int y2);
    template <class T>
    static void Swap(T &a, T &b)
    {
        T former = std::move(a);
        a = std::move(b);
        b = std::move(former);
    }
    /// Shows the file selected in FileList. One that holds no picture leaves the preview as it was,
    /// and lblNoPicture says so.
    void GetFilePicture();
    /// The number of icons before the first that is missing.
    static int CountIcons(const QString &fileName);
    /// Draws the tags of the controls above them.
    void PrintCaptions();

    void done(int result) override;

protected:
    void paintEvent(QPaintEvent *event) override;

private Q_SLOTS:
    // --- lists ---
    void DriveList_Change();
    void DirList_Change();
    void cboFilter_Click();
    void FileList_KeyUp();
    void FileList_MouseUp();
    void FileList_DblClick();
    // --- pictures ---
    void picFile_Change();
    void picImage_Taken(const QRect &part); ///< Empty: all of it.
    // --- icons ---
    void cmdIcon_Click(int Index);
    void cboSize_Click();
    void lvIcons_Click(const QModelIndex &index);
    // --- buttons ---
    void cmdOK_Click();
    void cmdCancel_Click();
    void cmdHelp_Click();

private:
    void makeControls();
    void makeIconControls();
    void makeButtons();
    void connectControls();
    void layOut();
    QLayout *pictureColumn(int captionHeight);
    void Form_Load();
    void Form_QueryUnload();
    /// Shows a file of the open folder; false when it holds no picture.
    bool showFile(const QString &name);
    /// Goes to a file or folder; a relative path counts from the open folder.
    void openPath(const QString &path);
    void showPicture(const QImage &picture); ///< That comes from no file.
    void showChosen(const QString &name); ///< As showFile(), and says what became of it.
    void sayNoPicture(const QString &text); ///< Empty: nothing is to be said.
    /// Offers the sizes that the shown icon has; it is shown in the one of \a shown pixels.
    void offerSizes(const std::vector<int> &sizes, int shown);
    /// Shows one icon of a program file, counted from 1; false when it cannot be read.
    bool ShowIcon(const QString &fileName, int number);
    void hideIcons();
    void snapshotOfPreview(); ///< Nothing happens while there is no preview.

    SettingsStore &m_settings;
    QString m_fileName;
    bool m_ok = false;
    bool m_hasPreview = false;
    QString m_iconFile; ///< The program file whose icons are shown, or the icon file.
    int m_iconSize; ///< That the user wants, in pixels.
    qint32 m_icon = 0; ///< Counts from 1.
    qint32 m_iconCount = 0;

    DriveListBox *DriveList;
    DirListBox *DirList;
    FileListBox *FileList;
    QComboBox *cboFilter;
    PictureControl *picFile;
    PictureControl *picImage;
    PreviewFrame *m_previewFrame;
    PictureControl *picFileIcon;
    PictureControl *picButton;
    PictureControl *imgConvert;
    IconSteps *picIcoCtrl;
    QComboBox *cboSize;
    QLabel *lblNoPicture;
    IconStrip *lvIcons;
    IconStripModel *m_strip;
    PictureTiles *m_tiles;
    PictureEntry *m_entry;
    QPushButton *cmdOK;
    QPushButton *cmdCancel;
    QPushButton *cmdHelp;
};
