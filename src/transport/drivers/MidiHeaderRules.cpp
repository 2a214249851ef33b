#include "transport/drivers/MidiHeaderRules.h"

namespace tarvix {

MidiResult PrepareMidiHeader(MidiHeader& header)
{
    if (header.data == nullptr || header.bufferLength == 0) {
        return kMidiInvalidParameter;
    }
    if ((header.flags & kMidiHeaderInQueue) != 0) {
        return kMidiStillPlaying;
    }
    header.flags |= kMidiHeaderPrepared;
    return kMidiNoError;
}

MidiResult UnprepareMidiHeader(MidiHeader& header)
{
    if ((header.flags & kMidiHeaderInQueue) != 0) {
        return kMidiStillPlaying;
    }
    header.flags &= ~kMidiHeaderPrepared;
    return kMidiNoError;
}

MidiResult CheckHeaderToQueue(const MidiHeader& header)
{
    if ((header.flags & kMidiHeaderPrepared) == 0) {
        return kMidiUnprepared;
    }
    if ((header.flags & kMidiHeaderInQueue) != 0) {
        return kMidiStillPlaying;
    }
    if (header.data == nullptr || header.bufferLength == 0) {
        return kMidiInvalidParameter;
    }
    return kMidiNoError;
}

void MarkHeaderQueued(MidiHeader& header)
{
    header.flags = (header.flags & ~kMidiHeaderDone) | kMidiHeaderInQueue;
}

void MarkHeaderDone(MidiHeader& header)
{
    header.flags = (header.flags & ~kMidiHeaderInQueue) | kMidiHeaderDone;
}

} // namespace tarvix
