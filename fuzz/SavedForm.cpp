#include "SavedForm.h"

#include "model/DeviceImage.h"
#include "model/Mmt8Memory.h"

namespace tarvix::fuzzing {

void MaskEventChannels(CMmt8Memory& memory)
{
    for (int part = 0; part < kPartCount; ++part)
        for (CMmt8Track& track : memory.Part(part).tracks)
            for (auto& event : track.events)
                if (event->GetTypeCode() != kSysexEventType)
                    event->channel &= 0x0F;
}

void ToSavedForm(CMmt8Memory& memory)
{
    MaskEventChannels(memory);
    for (int part = 0; part < kPartCount; ++part)
        if (memory.Part(part).IsEmpty())
            memory.ClearPart(part);
    for (int song = 0; song < kSongCount - 1; ++song)
        if (memory.Song(song).steps.empty())
            memory.ClearSong(song);
    if (IsWrittenAsEmptySong(memory.Song(kSongCount - 1)))
        memory.ClearSong(kSongCount - 1);
}

} // namespace tarvix::fuzzing
