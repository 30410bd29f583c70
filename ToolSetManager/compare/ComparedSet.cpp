#include "compare/ComparedSet.h"

#include "model/BmtFormat.h"
#include "model/ToolFields.h"
#include "model/ToolSetDocument.h"
#include "model/ToolSetUpdate.h"
#include "platform/picture/PictureBox.h"
#include "shell/DocumentWindow.h"

#include <QWidget>

namespace {

constexpr Twips pictureBoxSize {275}; // as a window saves

/// Only blanks are trimmed, as on loading.
void trimBlanks(QString &text)
{
    while (text.startsWith(u' '))
        text.remove(0, 1);
    while (text.endsWith(u' '))
        text.chop(1);
}

} // namespace

ComparedSet::ComparedSet(DocumentWindow &window)
    : m_kind(Window)
    , m_widget(window.widget())
    , m_window(&window)
    , m_document(window.toolSet())
{
    connect(m_document, &ToolSetDocument::changed, this, &ComparedSet::changed);
    connect(m_document, &ToolSetDocument::reset, this, &ComparedSet::changed);
    connect(m_document, &ToolSetDocument::stateChanged, this, &ComparedSet::titleChanged);
    connect(m_widget, &QWidget::windowTitleChanged, this, &ComparedSet::titleChanged);
    // Later, because the window may go with its frame, of which nothing can be asked then.
    connect(m_widget, &QObject::destroyed, this, &ComparedSet::titleChanged, Qt::QueuedConnection);
    refresh();
}

ComparedSet::ComparedSet(
    Kind kind, const QString &title, const QString &path, std::unique_ptr<CVBATools> tools)
    : m_kind(kind)
    , m_title(title)
    , m_path(path)
{
    m_originals = ToolSetUpdate::stateOf(*tools);
    refresh();
}

QString ComparedSet::title() const
{
    return m_widget ? m_window->Caption() : m_title;
}

QString ComparedSet::note() const
{
    if (m_document)
        return QStringLiteral("open; changes go into its window");
    if (m_kind == Version)
        return QStringLiteral("earlier version; stays as it is");
    if (!fileToOpen().isEmpty())
        return QStringLiteral("file; opens in a window when something is copied into it");
    return QStringLiteral("closed; stays as it was");
}

QString ComparedSet::fileToOpen() const
{
    return m_document || m_kind == Version ? QString() : m_path;
}

void ComparedSet::refresh()
{
    if (m_document) {
        // Kept for the time when the window is closed.
        m_title = m_window->Caption();
        m_path = m_document->FileName();
        m_originals = ToolSetUpdate::stateOf(*m_document);
    }
    QHash<qint64, QImage> pictures;
    m_state.properties = m_originals.properties;
    m_state.tools.clear();
    m_state.tools.reserve(m_originals.tools.size());
    for (const ToolPtr &tool : m_originals.tools)
        m_state.tools.push_back(std::make_shared<CVBATool>(storedForm(*tool, pictures)));
    m_pictures.swap(pictures);
}

CVBATool ComparedSet::storedForm(const CVBATool &tool, QHash<qint64, QImage> &pictures) const
{
    CVBATool stored = tool;
    ToolFields::forEachStored(
        [&stored](const ToolFields::Text &field) {
            if (field.trimmed)
                trimBlanks(stored.*(field.field));
        },
        [](const ToolFields::Number & /*as it is*/) {});
    stored.VBEvents &= BmtFormat::storedEvents;
    stored.FLAGS = 0; // nothing but what the loader makes of the events
    const bool asLoaded = tool.Picture.size() == QSize(CVBATool::pictureSide, CVBATool::pictureSide)
        && tool.Picture.format() == QImage::Format_RGB32;
    if (!asLoaded) {
        const qint64 key = tool.Picture.cacheKey();
        QImage &rendered = pictures[key];
        rendered = m_pictures.value(key);
        if (rendered.isNull()) {
            PictureBox box(pictureBoxSize, pictureBoxSize);
            box.setPicture(tool.Picture);
            rendered = box.Image();
        }
        stored.Picture = rendered;
    }
    return stored;
}
