#include "cli/midi/CliMidiPorts.h"

#include "settings/Settings.h"
#include "transport/drivers/SystemMidiService.h"
#include "transport/ports/MidiDevices.h"

namespace tarvix::cli {

namespace {
PortSettings StoredPortSettings()
{
    const CSettings settings(CSettingsKey::ForProgram());
    const SettingValues& values = settings.Values();
    PortSettings ports;
    ports.inBufferSize = values.midiInBufSize;
    ports.inBufferCount = values.midiInBufNumber;
    ports.outBufferSize = values.midiOutBufSize;
    ports.outBufferCount = values.midiOutBufNumber;
    ports.outSysexDelay = values.midiOutSyxDelay;
    ports.outBufferDelay = values.midiOutBufDelay;
    return ports;
}
} // namespace

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
    PortSettings settings = StoredPortSettings();
    (direction == MidiDirection::Input ? settings.inDevice : settings.outDevice) = name;
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
