#include "compare/frmCompareWith.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

constexpr int choiceRole = Qt::UserRole;
constexpr int indexRole = Qt::UserRole + 1;

} // namespace

frmCompareWith::frmCompareWith(
    const QString &title, const QStringList &openSets, const QStringList &versions, QWidget *parent)
    : QDialog(parent)
    , tvSets(new QTreeWidget(this))
    , cmdFile(new QPushButton(QStringLiteral("&File..."), this))
    , cmdOK(new QPushButton(QStringLiteral("OK"), this))
    , cmdCancel(new QPushButton(QStringLiteral("Cancel"), this))
{
    setObjectName(QStringLiteral("frmCompareWith"));
    setWindowTitle(title);
    tvSets->setObjectName(QStringLiteral("tvSets"));
    tvSets->setHeaderHidden(true);
    tvSets->setTextElideMode(Qt::ElideMiddle);
    cmdFile->setObjectName(QStringLiteral("cmdFile"));
    cmdFile->setToolTip(QStringLiteral("Choose a file that is not open"));
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    auto *label = new QLabel(QStringLiteral("&Tool sets:"), this);
    label->setBuddy(tvSets);
    addGroup(QStringLiteral("Open tool sets"), openSets, OpenSet);
    addGroup(QStringLiteral("Earlier versions"), versions, Version);
    cmdOK->setDefault(true);
    connect(tvSets, &QTreeWidget::currentItemChanged, this, &frmCompareWith::tvSets_Change);
    connect(tvSets, &QTreeWidget::itemDoubleClicked, cmdOK, &QPushButton::click);
    connect(cmdOK, &QPushButton::clicked, this, &frmCompareWith::cmdOK_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(cmdFile, &QPushButton::clicked, this, [this] {
        m_choice = File;
        accept();
    });

    auto *commands = new QHBoxLayout;
    commands->addWidget(cmdFile);
    commands->addStretch(1);
    commands->addWidget(cmdOK);
    commands->addWidget(cmdCancel);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(label);
    layout->addWidget(tvSets, 1);
    layout->addLayout(commands);
    resize(fontMetrics().averageCharWidth() * 80, 320);
    tvSets_Change();
}

void frmCompareWith::addGroup(const QString &caption, const QStringList &titles, Choice choice)
{
    if (titles.isEmpty())
        return;
    auto *group = new QTreeWidgetItem(tvSets, {caption});
    group->setFlags(Qt::ItemIsEnabled);
    for (int i = 0; i < titles.size(); ++i) {
        auto *item = new QTreeWidgetItem(group, {titles[i]});
        item->setToolTip(0, titles[i]);
        item->setData(0, choiceRole, choice);
        item->setData(0, indexRole, i);
    }
    group->setExpanded(true);
    if (!tvSets->currentItem())
        tvSets->setCurrentItem(group->child(0));
}

void frmCompareWith::tvSets_Change()
{
    const QTreeWidgetItem *item = tvSets->currentItem();
    cmdOK->setEnabled(item && item->parent());
}

void frmCompareWith::cmdOK_Click()
{
    const QTreeWidgetItem *item = tvSets->currentItem();
    if (!item || !item->parent())
        return;
    m_choice = static_cast<Choice>(item->data(0, choiceRole).toInt());
    m_index = item->data(0, indexRole).toInt();
    accept();
}
