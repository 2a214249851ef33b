#include "midifile/DeviceTrackMark.h"

#include "midifile/MidiTrack.h"

#include <algorithm>

namespace tarvix {

bool HasDeviceTrackMark(const CMidiTrack& track)
{
    return std::any_of(track.events.begin(), track.events.end(), [](const auto& event) {
        if (!event || event->GetKind() != CMidiEvent::kMeta)
            return false;
        const auto& meta = static_cast<const CMidiMetaEvent&>(*event);
        const auto data = meta.GetData();
        return meta.GetType() == kTypeSequencerSpecific &&
               std::equal(data.begin(), data.end(), std::begin(kDeviceTrackMark),
                          std::end(kDeviceTrackMark));
    });
}

} // namespace tarvix
