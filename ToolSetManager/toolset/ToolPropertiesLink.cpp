#include "toolset/ToolPropertiesLink.h"

#include "model/ToolSetDocument.h"
#include "platform/desktop/ListView.h"
#include "shell/Frame.h"
#include "tooledit/frmToolProps.h"
#include "toolset/ToolListModel.h"

ToolPropertiesLink::ToolPropertiesLink(QWidget *form, Frame &frame, const Settings &settings,
    SettingsStore &store, Printers &printers, ToolSetDocument &document, ListView &list,
    ToolListModel &model)
    : QObject(form)
    , m_form(form)
    , m_frame(frame)
    , m_settings(settings)
    , m_store(store)
    , m_printers(printers)
    , m_document(document)
    , m_list(list)
    , m_model(model)
{
}

void ToolPropertiesLink::ShowToolProperties(const QString &field)
{
    const int row = m_list.SelectedItem();
    if (row < 0 || ToolProperties)
        return;
    const QPointer<ToolPropertiesLink> alive(this);
    ToolProperties = new frmToolProps(m_document, m_settings, m_store, m_form);
    ToolProperties->setPrinters(m_printers);
    const QPointer<frmToolProps> dialog = ToolProperties;
    connect(dialog, &frmToolProps::Change, this, &ToolPropertiesLink::ToolProperties_Change);
    connect(dialog, &frmToolProps::DraftChange, this, &ToolPropertiesLink::draftChanged);
    connect(
        dialog, &frmToolProps::NameChange, this, &ToolPropertiesLink::ToolProperties_NameChange);
    connect(dialog, &frmToolProps::RequestNextTool, this,
        &ToolPropertiesLink::ToolProperties_RequestNextTool);
    connect(dialog, &frmToolProps::RequestPriorTool, this,
        &ToolPropertiesLink::ToolProperties_RequestPriorTool);
    // Of several selected tools it is the one with the focus, and the status bar names it.
    m_list.setFocusedItem(row);
    m_list.EnsureVisible();
    showToolIn(row);
    if (!field.isEmpty())
        dialog->showField(field);
    const qsizetype selected = m_list.selectedRows().size();
    if (selected > 1) {
        m_frame.setPanelText(Frame::namesPanel,
            QStringLiteral("Properties of \"%1\" only, one of %2 selected tools")
                .arg(m_model.toolAt(row)->Description, QString::number(selected)));
    }
    dialog->exec();
    delete dialog;
    if (!alive)
        return;
    Q_EMIT draftChanged();
    m_model.RefreshIcons();
    m_frame.setPanelText(Frame::toolPanel, QString());
    m_frame.setPanelText(Frame::namesPanel, QString());
}

void ToolPropertiesLink::showToolIn(int row)
{
    m_tool = m_model.toolAt(row);
    ToolProperties->setTool(m_tool);
    m_frame.setPanelText(Frame::toolPanel, ToolProperties->CaptionText());
    Q_EMIT draftChanged();
}

const CVBATool *ToolPropertiesLink::editedTool() const
{
    return ToolProperties && ToolProperties->Dirty() ? ToolProperties->Tool().get() : nullptr;
}

CVBATool ToolPropertiesLink::draft() const
{
    return ToolProperties->Draft();
}

void ToolPropertiesLink::ToolProperties_Change()
{
    m_document.setDirty(); // also where nothing differs
}

void ToolPropertiesLink::ToolProperties_NameChange()
{
    m_frame.setPanelText(Frame::toolPanel, ToolProperties->CaptionText());
}

void ToolPropertiesLink::ToolProperties_RequestNextTool()
{
    go(true);
}

void ToolPropertiesLink::ToolProperties_RequestPriorTool()
{
    go(false);
}

void ToolPropertiesLink::go(bool forward)
{
    const int position = m_document.positionOf(m_tool.get());
    const int next = m_model.nextShown(position, forward);
    if (next == 0)
        return;
    const int row = m_model.rowOf(next);
    m_list.moveSelection(m_model.rowOf(position), row);
    m_frame.setPanelText(Frame::namesPanel, QString());
    showToolIn(row);
}
