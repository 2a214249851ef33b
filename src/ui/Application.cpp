#include "ui/Application.h"

#include "model/Mmt8Memory.h"
#include "transport/settings/Settings.h"
#include "ui/MainFrame.h"
#include "ui/MidiPorts.h"
#include "ui/PendingCommands.h"

#include <QtGlobal>

// The icons live in this static library; naming them keeps the linker from
// dropping them.
static void InitResources() { Q_INIT_RESOURCE(tarvix); }

namespace tarvix {

CApplication::CApplication(const CSettingsKey& key, std::unique_ptr<IMidiPorts> ports,
                           std::unique_ptr<CPendingCommands> pending)
    : m_settings(std::make_unique<CSettings>(key)),
      m_memory(std::make_unique<CMmt8Memory>()),
      m_ports(ports ? std::move(ports) : std::make_unique<CClosedMidiPorts>()),
      m_pending(pending ? std::move(pending) : std::make_unique<CPendingCommands>())
{
    InitResources();
    m_frame = std::make_unique<CMainFrame>(*m_memory, *m_settings, *m_ports, *m_pending);
}

CApplication::~CApplication()
{
    m_frame.reset();
    m_settings->Save();
}

void CApplication::Start(const QString& commandLine)
{
    m_frame->show();
    m_frame->ProcessStartup(commandLine);
}

} // namespace tarvix
