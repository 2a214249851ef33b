#include "ui/EditorCommands.h"

#include "ui/MainFrame.h"
#include "ui/MidiFileDumpCommand.h"
#include "ui/clipboard/ClipboardCommands.h"
#include "ui/dragdrop/FileDropHandler.h"
#include "ui/edit/EditCommands.h"
#include "ui/export/ExportCommand.h"
#include "ui/import/ImportCommand.h"
#include "ui/options/OptionsSheet.h"
#include "ui/transfer/TransferCommands.h"
#include "ui/undo/UndoSteps.h"

namespace tarvix {

CEditorCommands::CEditorCommands(CMmt8Memory& memory, CSettings& settings, IMidiPorts& ports)
    : m_memory(memory), m_settings(settings), m_ports(ports), m_trackDump(settings)
{
}

void CEditorCommands::SetFrame(CMainFrame* frame)
{
    m_frame = frame;
    // Owned by the window, so it goes with it.
    if (frame != nullptr)
        new CFileDropHandler(
            *frame, [this](const PaneCommandContext& context, const QString& file) {
                m_frame->ChangeDocument(*UndoStepFor(kCmdImport), [&] { Import(context, file); });
            });
}

void CEditorCommands::Receive()
{
    if (RunReceiveCommand(m_frame, m_ports, m_memory) && m_frame != nullptr)
        m_frame->RefreshViews();
}

void CEditorCommands::Send()
{
    RunSendCommand(m_frame, m_ports, m_memory);
}

void CEditorCommands::ShowOptions(int page, int focusControl)
{
    COptionsSheet::Show(m_frame, m_settings, m_ports, page, focusControl);
}

void CEditorCommands::MidiFileDump()
{
    CMidiFileDumpCommand::Run(m_frame, m_trackDump);
}

void CEditorCommands::PaneCommand(CommandId id, const PaneCommandContext& context)
{
    if (m_frame != nullptr && CEditCommands::Handles(id))
        CEditCommands(m_memory, *m_frame).Execute(id, context);
    else if (m_frame != nullptr && CClipboardCommands::Handles(id))
        CClipboardCommands(m_memory, *m_frame).Execute(id, context);
    else if (id == kCmdImport)
        Import(context);
    else if (id == kCmdExport)
        CExportCommand::Run(m_frame, m_memory, context);
}

bool CEditorCommands::ClipboardHasRecords(Pane pane, NodeKind kind) const
{
    return CClipboardCommands::HasRecords(pane, kind);
}

void CEditorCommands::Import(const PaneCommandContext& context, const QString& file)
{
    if (CImportCommand::Run(m_frame, m_memory, m_settings, m_trackDump, context, file) &&
        m_frame != nullptr)
        m_frame->RefreshViews();
}

void CEditorCommands::ShowTrackDump(int part, int track)
{
    m_trackDump.ShowTrack(m_frame, m_memory, part, track);
}

bool CEditorCommands::EditSongStep(int song, int step)
{
    return m_frame != nullptr && CEditCommands(m_memory, *m_frame).EditSongStep(song, step);
}

} // namespace tarvix
