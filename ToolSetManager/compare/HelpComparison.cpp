#include "compare/HelpComparison.h"

#include "compare/DifferenceTexts.h"
#include "compare/Tint.h"
#include "platform/desktop/Accessible.h"
#include "platform/text/WordDiff.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QTextEdit>
#include <QVBoxLayout>

namespace {

QTextEdit *makeText(const QString &name, QWidget *parent)
{
    auto *text = new QTextEdit(parent);
    text->setObjectName(name);
    text->setReadOnly(true);
    text->setUndoRedoEnabled(false);
    text->setTabChangesFocus(true);
    text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    Accessible::makeDocument(*text);
    return text;
}

void mark(QTextEdit &text, const QList<WordDiff::Range> &ranges, const QTextCharFormat &format)
{
    QTextCursor cursor(text.document());
    cursor.beginEditBlock();
    for (const WordDiff::Range &range : ranges) {
        cursor.setPosition(int(range.start));
        cursor.setPosition(int(range.start + range.length), QTextCursor::KeepAnchor);
        cursor.mergeCharFormat(format);
    }
    cursor.endEditBlock();
}

} // namespace

HelpComparison::HelpComparison(int codePage, QWidget *parent)
    : QWidget(parent)
    , m_codePage(codePage)
    , lblHelp(new QLabel(this))
    , txtLeft(makeText(QStringLiteral("txtLeft"), this))
    , txtRight(makeText(QStringLiteral("txtRight"), this))
{
    setObjectName(QStringLiteral("helpComparison"));
    lblHelp->setObjectName(QStringLiteral("lblHelp"));
    lblHelp->setContentsMargins(6, 2, 6, 2);
    auto *texts = new QHBoxLayout;
    texts->setSpacing(4);
    texts->addWidget(txtLeft, 1);
    texts->addWidget(txtRight, 1);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    layout->addWidget(lblHelp);
    layout->addLayout(texts, 1);
}

void HelpComparison::setTexts(const QString &what, const QString &left, const QString &right)
{
    m_what = what;
    m_leftRtf = left;
    m_rightRtf = right;
    show();
}

void HelpComparison::show()
{
    const QString left = DifferenceTexts::plainText(m_leftRtf, m_codePage);
    const QString right = DifferenceTexts::plainText(m_rightRtf, m_codePage);
    txtLeft->setPlainText(left);
    txtRight->setPlainText(right);
    txtLeft->setAccessibleName(m_what + QStringLiteral(", left"));
    txtRight->setAccessibleName(m_what + QStringLiteral(", right"));
    QString says = left.isEmpty() ? QStringLiteral("none") : QStringLiteral("the same");
    if (left.isEmpty() != right.isEmpty()) {
        says = right.isEmpty() ? QStringLiteral("only left") : QStringLiteral("only right");
    } else if (left != right) {
        const WordDiff::Ranges ranges = WordDiff::between(left, right);
        QTextCharFormat onlyLeft;
        onlyLeft.setFontStrikeOut(true);
        onlyLeft.setBackground(Tint::of(Tint::OnlyLeft));
        QTextCharFormat onlyRight;
        onlyRight.setFontUnderline(true);
        onlyRight.setFontWeight(QFont::Bold);
        onlyRight.setBackground(Tint::of(Tint::OnlyRight));
        mark(*txtLeft, ranges.left, onlyLeft);
        mark(*txtRight, ranges.right, onlyRight);
        says = QStringLiteral("struck through: only left; bold and underlined: only right");
    } else if (m_leftRtf != m_rightRtf) {
        says = QStringLiteral("the same words; formatting, pictures or bullets differ");
    }
    lblHelp->setText(m_what + QStringLiteral(" \u2013 ") + says);
}

void HelpComparison::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && isVisible())
        show(); // the marks have the colours of before
}
