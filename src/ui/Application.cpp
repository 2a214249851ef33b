#include "ui/Application.h"

#include "model/Mmt8Memory.h"
#include "settings/Settings.h"
#include "transport/drivers/SystemMidiService.h"
#include "ui/EditorCommands.h"
#include "ui/MainFrame.h"
#include "ui/MidiPorts.h"
#include "ui/PendingCommands.h"
#include "ui/ports/DriverMidiPorts.h"

#include <QtGlobal>

// The icons live in this static library; naming them keeps the linker from
// dropping them.
static void InitResources()
{
    Q_INIT_RESOURCE(tarvix);
}

namespace tarvix {

CApplication::CApplication(const CSettingsKey& key, std::unique_ptr<IMidiPorts> ports,
                           std::unique_ptr<IPendingCommands> pending)
    : m_settings(std::make_unique<CSettings>(key)), m_memory(std::make_unique<CMmt8Memory>()),
      m_ports(ports ? std::move(ports)
                    : std::make_unique<CDriverMidiPorts>(CreateSystemMidiService(), *m_settings))
{
    BuildWindow(std::move(pending));
}

CApplication::CApplication(const CSettingsKey& key, std::unique_ptr<IMidiDriver> driver)
    : m_settings(std::make_unique<CSettings>(key)), m_memory(std::make_unique<CMmt8Memory>()),
      m_ports(std::make_unique<CDriverMidiPorts>(std::move(driver), *m_settings))
{
    BuildWindow(nullptr);
}

void CApplication::BuildWindow(std::unique_ptr<IPendingCommands> pending)
{
    InitResources();
    if (pending) {
        m_pending = std::move(pending);
    } else {
        auto commands = std::make_unique<CEditorCommands>(*m_memory, *m_settings, *m_ports);
        m_editorCommands = commands.get();
        m_pending = std::move(commands);
    }
    m_frame = std::make_unique<CMainFrame>(*m_memory, *m_settings, *m_ports, *m_pending);
    if (m_editorCommands != nullptr)
        m_editorCommands->SetFrame(m_frame.get());
}

CApplication::~CApplication()
{
    if (m_editorCommands != nullptr)
        m_editorCommands->SetFrame(nullptr);
    m_frame.reset();
    m_settings->Save();
}

void CApplication::Start(const QStringList& arguments)
{
    m_frame->show();
    m_frame->ProcessStartup(arguments);
}

} // namespace tarvix
