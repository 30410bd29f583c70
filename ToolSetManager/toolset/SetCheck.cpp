#include "toolset/SetCheck.h"

#include "model/ToolSetDocument.h"
#include "shell/ToolPlaces.h"
#include "shell/frmDrives.h"
#include "toolset/CheckPanel.h"
#include "toolset/FindingsModel.h"
#include "toolset/ToolListModel.h"

#include <QElapsedTimer>

#include <algorithm>

namespace {

constexpr int shortestPause = 50; ///< Milliseconds between two refreshes of the panel.
constexpr int longestPause = 2000;

/// What could not be looked up is no fault of the tool.
bool isMarked(ToolFinding::Severity severity)
{
    return severity > ToolFinding::Severity::Note;
}

} // namespace

SetCheck::SetCheck(QWidget *form, const CodePage &codePage, const Settings &settings,
    SettingsStore &store, ToolSetDocument &document, ToolListModel &list, ReportCommands &report)
    : QObject(form)
    , m_form(form)
    , m_codePage(codePage)
    , m_settings(settings)
    , m_store(store)
    , m_document(document)
    , m_list(list)
    , m_report(report)
    , m_check(document, ToolCheck::Rules())
{
    m_refresh.setSingleShot(true);
    m_refresh.setInterval(shortestPause);
    connect(&m_refresh, &QTimer::timeout, this, &SetCheck::refresh);
    connect(&m_check, &ToolCheck::changed, this, [this] {
        if (!m_refresh.isActive())
            m_refresh.start();
    });
}

void SetCheck::makePanel()
{
    m_panel = new CheckPanel(m_form);
    connect(m_panel, &CheckPanel::chosen, this, &SetCheck::fieldChosen);
    connect(m_panel, &CheckPanel::heightChanged, this, &SetCheck::layoutChanged);
    connect(m_panel, &CheckPanel::iconsChanged, &m_list, &ToolListModel::badgesChanged);
    connect(m_panel, &CheckPanel::drivesRequested, this, &SetCheck::chooseDrives);
    connect(m_panel, &CheckPanel::printRequested, this,
        [this] { m_report.print(m_check.allFindings(), m_document.FileName()); });
    connect(m_panel, &CheckPanel::previewRequested, this,
        [this] { m_report.preview(m_check.allFindings(), m_document.FileName()); });
    connect(m_panel, &CheckPanel::closeRequested, this, [this] {
        close();
        Q_EMIT closed();
    });
}

ToolCheck::Rules SetCheck::rules()
{
    ToolPlaces places = ToolPlaces::read(m_settings, m_store);
    return {m_codePage, places.macroFolder, places.drives, &m_files};
}

void SetCheck::run()
{
    if (!m_panel)
        makePanel();
    m_check.start(rules());
    if (!isOpen()) {
        m_panel->show();
        m_list.setBadges({[this](int position) { return mark(position); },
            [this](int position) { return markText(position); }});
        Q_EMIT layoutChanged();
    }
    m_panel->setFocus();
}

void SetCheck::close()
{
    if (!isOpen())
        return;
    m_check.stop();
    m_files.forget();
    m_refresh.stop();
    m_list.setBadges({});
    m_panel->setFindings({}, {});
    m_panel->hide();
    Q_EMIT layoutChanged();
}

bool SetCheck::isOpen() const
{
    return m_panel && !m_panel->isHidden();
}

QRect SetCheck::layOut(const QRect &room)
{
    if (!isOpen())
        return room;
    const int height = m_panel->heightIn(room.height());
    m_panel->setGeometry(room.left(), room.bottom() + 1 - height, room.width(), height);
    return room.adjusted(0, 0, 0, -height);
}

// --- Findings ---

void SetCheck::refresh()
{
    QElapsedTimer timer;
    timer.start();
    const auto findings = m_check.allFindings();
    m_panel->setFindings(findings, summary(findings));
    m_list.badgesChanged();
    // Most of the time is for the check and for the user, however many findings there are.
    constexpr int share = 5;
    m_refresh.setInterval(
        qBound(shortestPause, static_cast<int>(timer.elapsed()) * share, longestPause));
}

QString SetCheck::summary(const QList<ToolCheck::Row> &findings) const
{
    const QString found = QStringLiteral("Check: ") + ToolCheck::summary(findings);
    return m_check.isComplete()
        ? found
        : found + QStringLiteral("; checking, %L1 left").arg(m_check.left());
}

QIcon SetCheck::mark(int position) const
{
    const auto severity = m_check.severity(position);
    return severity && isMarked(*severity) ? m_panel->model().icon(*severity) : QIcon();
}

QString SetCheck::markText(int position) const
{
    QStringList lines;
    const auto findings = m_check.findings(position);
    for (const ToolFinding &finding : findings) {
        if (isMarked(finding.severity)) {
            lines.append(
                QStringLiteral("%1: %2 %3")
                    .arg(ToolCheck::caption(finding.severity), finding.what, finding.advice));
        }
    }
    return lines.join(u'\n');
}

void SetCheck::chooseDrives()
{
    if (frmDrives(m_store, m_form).exec() == QDialog::Accepted)
        m_check.start(rules());
}
