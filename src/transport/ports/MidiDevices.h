#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace tarvix {

class CMidiIn;
class CMidiOut;
class IStatusReporter;

// What the ports take from the settings; the program fills it from its
// stored settings, the defaults are those of a first run.
struct PortSettings {
    std::string inDevice;
    std::uint32_t inBufferSize = 256;
    std::uint32_t inBufferCount = 64;
    std::string outDevice;
    std::uint32_t outBufferSize = 256;
    std::uint32_t outBufferCount = 64;
    std::uint32_t outSysexDelay = 100;
    std::uint32_t outBufferDelay = 10;
};

// Shows a failure to the user: a message box in the editor, stderr in a
// terminal. Empty reports nowhere.
using MessageSink = std::function<void(const std::string& text)>;

// Closes both ports and opens those named in the settings, each with its
// buffer settings. An empty name leaves that port closed and is no failure.
// Each port that fails to open is reported on its own; true only if none did.
bool OpenMidiDevices(CMidiIn& input, CMidiOut& output, const PortSettings& settings,
                     IStatusReporter* status, const MessageSink& reportMessage);
void CloseMidiDevices(CMidiIn& input, CMidiOut& output);

} // namespace tarvix
