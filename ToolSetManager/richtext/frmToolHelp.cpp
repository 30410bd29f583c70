#include "richtext/frmToolHelp.h"

#include "platform/desktop/Accessible.h"
#include "platform/desktop/Captions.h"
#include "platform/desktop/HelpTopic.h"
#include "platform/rtf/RichTextBox.h"
#include "platform/text/Twips.h"

#include <QKeyEvent>
#include <QToolTip>

namespace {

constexpr Twips border {120};
constexpr int marginInset = 60;

} // namespace

frmToolHelp::frmToolHelp(QWidget *parent)
    : QWidget(parent, Qt::Window)
    , rtf(new RichTextBox(QStringLiteral("MS Sans Serif"), 8.5, this))
{
    Accessible::makeDocument(*rtf);
    setObjectName(QStringLiteral("frmToolHelp"));
    HelpTopic::set(*this, "the-help-text");
    setAttribute(Qt::WA_DeleteOnClose);
    rtf->setObjectName(QStringLiteral("rtf"));
    rtf->setAccessibleName(QStringLiteral("Help text"));
    rtf->setReadOnly(true);
    rtf->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setFocusProxy(rtf);
    resize(400, 300);
    Form_Load();
}

void frmToolHelp::Form_Load()
{
    const QPalette tip = QToolTip::palette();
    QPalette own = palette();
    own.setColor(QPalette::Base, tip.color(QPalette::ToolTipBase));
    own.setColor(QPalette::Text, tip.color(QPalette::ToolTipText));
    rtf->setPalette(own);
}

void frmToolHelp::ShowHelp(const QString &HelpText, float Left, float Top, const QString &ToolName)
{
    const auto pixels = [](float twips) { return Twips {qRound(twips)}.toPixels(); };
    move(pixels(Left), pixels(Top));
    Form_Resize();
    rtf->setTextRTF(HelpText);
    setWindowTitle(QStringLiteral("Help For ") + Captions::forTitle(ToolName));
    show();
}

void frmToolHelp::Form_Resize()
{
    const int inset = border.toPixels();
    const QSize inner = size() - QSize(2 * inset, 2 * inset);
    if (inner.width() < 0 || inner.height() < 0)
        return; // smaller than its borders: the text stays where it was
    rtf->setGeometry(QRect(QPoint(inset, inset), inner));
    rtf->setRightMargin(rtf->widthInTwips() - marginInset);
}

void frmToolHelp::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    Form_Resize();
}

void frmToolHelp::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        Form_Load();
}

void frmToolHelp::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        close();
    else
        QWidget::keyPressEvent(event);
}
