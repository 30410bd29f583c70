#include "toolset/ToolDrag.h"

#include "model/ToolSetDocument.h"
#include "platform/desktop/ListView.h"
#include "platform/picture/ButtonPicture.h"
#include "shell/DocumentWindow.h"
#include "shell/Frame.h"
#include "shell/mTSM.h"
#include "toolset/EditCommands.h"
#include "toolset/ToolListModel.h"

#include <QAbstractItemView>
#include <QDropEvent>
#include <QMimeData>
#include <QPainter>
#include <QPointer>
#include <QScopedValueRollback>

namespace {

const QString copyText = QStringLiteral("Copy");
const QString moveText = QStringLiteral("Move");

} // namespace

ToolDrag::ToolDrag(DocumentWindow &document, Frame &frame, mTSM &state, ListView &list,
    ToolListModel &model, EditCommands &edit, QObject *parent)
    : QObject(parent)
    , m_document(document)
    , m_frame(frame)
    , m_state(state)
    , m_list(list)
    , m_model(model)
    , m_edit(edit)
{
    connect(&list, &ListView::OLEStartDrag, this, &ToolDrag::lvTools_OLEStartDrag);
    connect(&list, &ListView::OLEGiveFeedback, this, &ToolDrag::lvTools_OLEGiveFeedback);
    connect(&list, &ListView::OLEDragOver, this, &ToolDrag::lvTools_OLEDragOver);
    connect(&list, &ListView::OLEDragDrop, this, &ToolDrag::lvTools_OLEDragDrop);
    connect(&list, &ListView::OLEDragLeave, this, [this] { m_list.setDropHighlight(-1); });
    connect(&list, &ListView::MouseUp, this, &ToolDrag::lvTools_MouseUp);
}

void ToolDrag::lvTools_OLEStartDrag()
{
    const QList<int> rows = m_list.selectedRows();
    if (!m_state.DragGate()) {
        m_frame.setPanelText(Frame::namesPanel,
            QStringLiteral("No drag yet: drags begin a second after a tool set was opened or saved "
                           "under a name."));
        return;
    }
    if (rows.isEmpty())
        return;
    // A cut that was never pasted ends here, also where its source has closed: no window must lose
    // tools by this drop.
    if (m_state.ClipboardMode == mTSM::CutPending) {
        m_edit.ClearDragTools();
        m_state.ClipboardMode = mTSM::NothingPending;
    }
    m_edit.fillClipboard(true);
    QStringList names;
    names.reserve(rows.size());
    for (const int row : rows)
        names.append(m_model.toolAt(row)->Description);
    const QString text = names.join(QStringLiteral(", "));
    m_frame.setPanelText(Frame::namesPanel, text);

    auto *data = new QMimeData;
    data->setText(text);
    const QPointer<ToolDrag> alive(this);
    {
        const QScopedValueRollback dragging(m_state.DraggingTools, true);
        m_list.OLEDrag(data, dragPicture(rows));
    }
    if (alive)
        lvTools_OLECompleteDrag();
}

QPixmap ToolDrag::dragPicture(const QList<int> &rows) const
{
    constexpr qsizetype shown = 5;
    constexpr int margin = 3;
    const QWidget *view = m_list.currentView();
    const QFontMetrics metrics = view->fontMetrics();
    QStringList texts;
    for (const int row : rows.mid(0, shown))
        texts.append(metrics.elidedText(m_model.toolAt(row)->Description, Qt::ElideRight, 240));
    if (rows.size() > shown)
        texts.append(QStringLiteral("… %1 tools").arg(rows.size()));
    int textWidth = 0;
    for (const QString &text : std::as_const(texts))
        textWidth = qMax(textWidth, metrics.horizontalAdvance(text));
    const QSize icon = m_list.currentView()->iconSize();
    const int lineHeight = qMax(icon.height(), metrics.height()) + 2;
    const QSize size(margin * 3 + icon.width() + textWidth,
        margin * 2 + lineHeight * static_cast<int>(texts.size()));

    const double ratio = view->devicePixelRatioF();
    QPixmap picture(size * ratio);
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor back = view->palette().color(QPalette::Base);
    back.setAlphaF(0.85F);
    painter.setBrush(back);
    painter.setPen(view->palette().color(QPalette::Mid));
    painter.drawRoundedRect(QRectF(QPointF(0.5, 0.5), QSizeF(size) - QSizeF(1, 1)), 3, 3);
    painter.setFont(view->font());
    painter.setPen(view->palette().color(QPalette::Text));
    for (qsizetype i = 0; i < texts.size(); ++i) {
        const int y = margin + static_cast<int>(i) * lineHeight;
        if (i < shown) {
            const QImage image =
                ButtonPicture::onBackground(m_model.toolAt(rows[i])->Picture, back);
            const QSize scaled =
                image.size().scaled(icon, Qt::KeepAspectRatio).boundedTo(image.size());
            painter.drawImage(
                QRect(QPoint(margin, y + (lineHeight - scaled.height()) / 2), scaled), image);
        }
        painter.drawText(QRect(margin * 2 + icon.width(), y, textWidth + margin, lineHeight),
            Qt::AlignVCenter | Qt::AlignLeft, texts[i]);
    }
    return picture;
}

int ToolDrag::targetRow(const QDropEvent &event) const
{
    const int row = m_list.HitTest(event.position().toPoint());
    return row >= 0 && !m_model.isGhosted(row) ? row : -1;
}

void ToolDrag::lvTools_OLEDragOver(QDragMoveEvent *event)
{
    // Text from another program, or from a help window of ours, is no tool.
    if (!m_state.DraggingTools || !m_state.ToolClipboard)
        return;
    const int row = targetRow(*event);
    // Kept: the keyboard is not asked. Within a window a drag moves, between windows it copies.
    const bool moves = m_edit.isSource();
    m_list.setDropHighlight(row,
        moves && row >= 0
            && ToolSetDocument::movesBelow(m_model.ghostedPositions(), m_model.positionAt(row)));
    event->setDropAction(moves ? Qt::MoveAction : Qt::CopyAction);
    event->accept();
    // At once, not when the toolkit gets round to it: the drop goes by what the status bar says.
    lvTools_OLEGiveFeedback(event->dropAction());
}

void ToolDrag::lvTools_OLEGiveFeedback(Qt::DropAction effect)
{
    QString text;
    if (effect == Qt::CopyAction)
        text = copyText;
    else if (effect == Qt::MoveAction)
        text = moveText;
    m_frame.setPanelText(Frame::effectPanel, text);
}

void ToolDrag::lvTools_OLEDragDrop(QDropEvent *event)
{
    if (!m_state.DraggingTools || !m_state.ToolClipboard)
        return;
    event->setDropAction(m_edit.isSource() ? Qt::MoveAction : Qt::CopyAction);
    event->accept();
    const int row = targetRow(*event);
    m_list.setDropHighlight(-1);
    // Kept: what the status bar says decides, not the event.
    const QString text = m_frame.panelText(Frame::effectPanel);
    int effect = EditCommands::NoEffect;
    if (text == moveText)
        effect = EditCommands::MoveEffect;
    else if (text == copyText)
        effect = EditCommands::CopyEffect;
    m_edit.drop(effect, row);
    clearPanels();
}

void ToolDrag::lvTools_OLECompleteDrag()
{
    m_edit.ClearDragTools();
    m_list.setDropHighlight(-1);
    clearPanels(); // a cancelled drag has had no drop that did it
}

void ToolDrag::lvTools_MouseUp()
{
    m_list.setDropHighlight(-1);
    if (!m_state.DragGate())
        clearPanels(); // of the hint
}

void ToolDrag::clearPanels()
{
    m_frame.setPanelText(Frame::effectPanel, QString());
    m_frame.setPanelText(Frame::namesPanel, QString());
}
