#pragma once

#include "ui/MidiPorts.h"
#include "ui/PendingCommands.h"

#include <QString>

#include <memory>

namespace tarvix {

class CMainFrame;
class CMmt8Memory;
class CSettings;
class CSettingsKey;

// The editor's process-wide objects, made and destroyed in order: the
// settings first, then the document, the ports and the window; at the end
// the window stores its state and the settings are saved.
class CApplication {
public:
    // Ports and pending commands default to the stand-ins that do nothing.
    CApplication(const CSettingsKey& key, std::unique_ptr<IMidiPorts> ports = nullptr,
                 std::unique_ptr<CPendingCommands> pending = nullptr);
    ~CApplication();
    CApplication(const CApplication&) = delete;
    CApplication& operator=(const CApplication&) = delete;

    // Shows the window, then opens what the command line or the settings say.
    void Start(const QString& commandLine);

    CMainFrame& Frame() { return *m_frame; }
    CMmt8Memory& Document() { return *m_memory; }
    CSettings& Settings() { return *m_settings; }

private:
    std::unique_ptr<CSettings> m_settings;
    std::unique_ptr<CMmt8Memory> m_memory;
    std::unique_ptr<IMidiPorts> m_ports;
    std::unique_ptr<CPendingCommands> m_pending;
    std::unique_ptr<CMainFrame> m_frame;
};

} // namespace tarvix
