#pragma once

#include "transport/drivers/MidiDriver.h"
#include "transport/ports/MidiIn.h"
#include "transport/ports/MidiOut.h"

#include <cstdio>
#include <memory>
#include <string>

namespace tarvix::cli {

// For the commands' help: how to name a port, and where the buffer and
// pacing settings come from.
#ifdef _WIN32
inline constexpr const char* kPortNameHelp =
    "NAME is a port's full name as 'tarvix-cli ports' prints it, e.g.\n"
    "\"WinMM: USB MIDI Interface\".";
#define TARVIX_CLI_SETTINGS_STORE "the registry\n(HKEY_CURRENT_USER\\Software\\Quillon\\Tarvix):\n"
#else
inline constexpr const char* kPortNameHelp =
    "NAME is a port's full name as 'tarvix-cli ports' prints it, e.g.\n"
    "\"JACK: tarvix-device:out\" (a device's output, to receive from) or\n"
    "\"JACK: tarvix-device:in\" (its input, to send to).";
#define TARVIX_CLI_SETTINGS_STORE                                                                  \
    "the user's\n"                                                                                 \
    "settings store (~/.config/Quillon/Tarvix.conf, or under $XDG_CONFIG_HOME):\n"
#endif
inline constexpr const char* kPortSettingsHelp =
    "Buffer sizes and pacing are the editor's MIDI settings, read from " TARVIX_CLI_SETTINGS_STORE
    "MidiOutBufDelay, ms after each buffer sent (default 10), MidiOutSyxDelay, ms\n"
    "after each message (default 100), MidiOutBufSize and MidiOutBufNumber (256 and\n"
    "64), MidiInBufSize and MidiInBufNumber (256 and 64).";
#undef TARVIX_CLI_SETTINGS_STORE

// The program's two MIDI ports over the system's MIDI service, as the
// editor has them, but on the port named on the command line.
class CCliMidiPorts {
public:
    CCliMidiPorts();
    ~CCliMidiPorts();
    CCliMidiPorts(const CCliMidiPorts&) = delete;
    CCliMidiPorts& operator=(const CCliMidiPorts&) = delete;

    // Opens the port of that direction, with the user's stored buffer and
    // pacing settings; the other port stays closed. On failure prints the
    // program's message, and why a MIDI system lists no ports, on err.
    bool Open(MidiDirection direction, const std::string& name, std::FILE* err);
    // The port is still in the MIDI system's list.
    bool IsListed(MidiDirection direction, const std::string& name);

    CMidiIn& Input() { return m_input; }
    CMidiOut& Output() { return m_output; }

private:
    std::unique_ptr<IMidiDriver> m_driver;
    CMidiIn m_input;
    CMidiOut m_output;
};

} // namespace tarvix::cli
