#pragma once

#include "ui/MidiPorts.h"
#include "ui/PendingCommands.h"

#include <QStringList>

#include <memory>

namespace tarvix {

class CEditorCommands;
class CMainFrame;
class CMmt8Memory;
class CSettings;
class CSettingsKey;
class IMidiDriver;

// The editor's process-wide objects, made and destroyed in order: the
// settings first, then the document, the ports and the window; at the end
// the window stores its state and the settings are saved.
class CApplication {
public:
    // Without ports, the transport's ports over the system's MIDI service;
    // without pending commands, the editor's own.
    CApplication(const CSettingsKey& key, std::unique_ptr<IMidiPorts> ports = nullptr,
                 std::unique_ptr<IPendingCommands> pending = nullptr);
    // The transport's ports over this driver (the Loopback driver in tests)
    // and the editor's own commands.
    CApplication(const CSettingsKey& key, std::unique_ptr<IMidiDriver> driver);
    ~CApplication();
    CApplication(const CApplication&) = delete;
    CApplication& operator=(const CApplication&) = delete;

    // Shows the window, then opens what the command line or the settings say.
    void Start(const QStringList& arguments);

    CMainFrame& Frame() { return *m_frame; }
    CMmt8Memory& Document() { return *m_memory; }
    CSettings& Settings() { return *m_settings; }
    IMidiPorts& Ports() { return *m_ports; }

private:
    void BuildWindow(std::unique_ptr<IPendingCommands> pending);

    std::unique_ptr<CSettings> m_settings;
    std::unique_ptr<CMmt8Memory> m_memory;
    std::unique_ptr<IMidiPorts> m_ports;
    std::unique_ptr<IPendingCommands> m_pending;
    CEditorCommands* m_editorCommands = nullptr; // m_pending, when it is the editor's own
    std::unique_ptr<CMainFrame> m_frame;
};

} // namespace tarvix
