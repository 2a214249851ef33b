#pragma once

#include "ui/PendingCommands.h"
#include "ui/TrackDumpView.h"

#include <QString>

namespace tarvix {

class CMainFrame;
class CMmt8Memory;
class CSettings;
class IMidiPorts;

// The window's commands, handed on to the subsystem that runs each.
class CEditorCommands : public IPendingCommands {
public:
    CEditorCommands(CMmt8Memory& memory, CSettings& settings, IMidiPorts& ports);

    // The window the commands act in and their dialogs open over; null
    // before it exists and once it is gone. Files dropped on a new window
    // are opened or imported.
    void SetFrame(CMainFrame* frame);

    void Receive() override;
    void Send() override;
    void ShowOptions(int page, int focusControl) override;
    void MidiFileDump() override;
    void PaneCommand(CommandId id, const PaneCommandContext& context) override;
    bool ClipboardHasRecords(Pane pane, NodeKind kind) const override;
    void ShowTrackDump(int part, int track) override;
    bool EditSongStep(int song, int step) override;

private:
    void Import(const PaneCommandContext& context, const QString& file = {});

    CMmt8Memory& m_memory;
    CSettings& m_settings;
    IMidiPorts& m_ports;
    CMainFrame* m_frame = nullptr;
    CTrackDumpView m_trackDump;
};

} // namespace tarvix
