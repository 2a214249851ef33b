#include "cli/midi/CliMidiPorts.h"

#include "settings/MidiPortSettings.h"
#include "settings/Settings.h"
#include "transport/drivers/SystemMidiService.h"
#include "transport/ports/MidiDevices.h"

namespace tarvix::cli {

CCliMidiPorts::CCliMidiPorts()
    : m_driver(CreateSystemMidiService()), m_input(*m_driver), m_output(*m_driver)
{
}

CCliMidiPorts::~CCliMidiPorts()
{
    CloseMidiDevices(m_input, m_output);
}

bool CCliMidiPorts::Open(MidiDirection direction, const std::string& name, std::FILE* err)
{
    // The stored buffer settings, but only the one port asked for: the
    // stored port names are the window's.
    PortSettings settings = PortSettingsFor(CSettings(CSettingsKey::ForProgram()).Values());
    settings.inDevice = direction == MidiDirection::Input ? name : std::string();
    settings.outDevice = direction == MidiDirection::Output ? name : std::string();
    const bool opened =
        OpenMidiDevices(m_input, m_output, settings, nullptr,
                        [err](const std::string& text) { std::fputs(text.c_str(), err); });
    if (!opened) {
        const std::string reasons = m_driver->GetUnavailableReason();
        if (!reasons.empty())
            std::fprintf(err, "%s\n", reasons.c_str());
    }
    return opened;
}

bool CCliMidiPorts::IsListed(MidiDirection direction, const std::string& name)
{
    const std::uint32_t count = m_driver->GetNumDevs(direction);
    for (std::uint32_t index = 0; index < count; ++index) {
        std::string listed;
        if (m_driver->GetDevName(direction, index, listed) == kMidiNoError && listed == name)
            return true;
    }
    return false;
}

} // namespace tarvix::cli
