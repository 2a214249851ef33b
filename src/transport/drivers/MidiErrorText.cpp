#include "transport/drivers/MidiErrorText.h"

namespace tarvix {

std::string GetMidiErrorText(MidiResult result)
{
    switch (result) {
    case kMidiNoError: return "The operation completed successfully.";
    case kMidiError: return "An unspecified error occurred in the MIDI service.";
    case kMidiBadDeviceId: return "The MIDI port does not exist.";
    case kMidiAllocated: return "The MIDI port is already in use.";
    case kMidiInvalidHandle: return "The MIDI port handle is not valid.";
    case kMidiNoDriver: return "The MIDI system is not available.";
    case kMidiNoMemory: return "Not enough memory for the MIDI service.";
    case kMidiInvalidParameter: return "An invalid parameter was passed to the MIDI service.";
    case kMidiUnprepared: return "The MIDI buffer has not been prepared.";
    case kMidiStillPlaying: return "The MIDI buffer is still in use by the driver.";
    case kMidiNotReady: return "The MIDI port is not ready.";
    default: return "Unknown MIDI error " + std::to_string(result) + ".";
    }
}

} // namespace tarvix
