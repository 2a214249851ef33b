// Standard MIDI Files from outside, imported into a document: no part gets
// more than 682 beats, and whatever the import makes is either written as a
// dump that loads back as the same document, or refused cleanly after the
// import's preview warned about it.
#include "FuzzFailure.h"
#include "SavedForm.h"

#include "midifile/ImportTrackList.h"
#include "midifile/MidiFileStream.h"
#include "midifile/MidiImport.h"
#include "model/Mmt8Memory.h"
#include "model/SysexDump.h"
#include "support/RandomDocument.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace {
using namespace tarvix;

std::uint32_t Flag(bool on)
{
    return on ? 1 : 0;
}

// The last byte picks the options and the destinations. The seed files end
// in an End of track (0x00), which turns everything on.
void Configure(CMidiImport& request, std::uint8_t control)
{
    request.options.importAftertouch = Flag((control & 0x01) == 0);
    request.options.importSysex = Flag((control & 0x02) == 0);
    request.options.markersAsParts = Flag((control & 0x04) == 0);
    request.options.startAtZero = Flag((control & 0x08) == 0);
    request.options.ignoreChannel = Flag((control & 0x10) != 0);
    request.options.explodeType0 = Flag((control & 0x20) == 0);
    if ((control & 0x40) == 0) {
        request.destinationParts = {5, 6, 5, 7};
        request.trackMask = 0xFF;
    } else {
        request.destinationParts = {9};
        request.trackMask = 0x5A;
    }
    request.targetSong = (control & 0x80) == 0 ? 3 : kNoTargetSong;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static CMmt8Memory empty;
    static CImportPreview preview;
    static CMmt8Memory reloaded;

    CMidiImport request;
    request.sourcePath = "fuzz.mid";
    Configure(request, size > 0 ? data[size - 1] : 0);
    CMidiFileStream stream(std::span<const std::uint8_t>(data, size));
    LoadImportFile(request, stream);
    AssignDeviceTracks(request.file, GetInitialTicks(request.file), request.trackMask);
    if (!PreviewImport(request, empty, preview))
        fuzzing::FailFuzzCheck("the import refused destinations it was given");
    CMmt8Memory& imported = preview.result;
    for (int part = 0; part < kPartCount; ++part)
        if (imported.Part(part).beats > kMaxBeats)
            fuzzing::FailFuzzCheck("part " + std::to_string(part) + " was imported with " +
                                   std::to_string(imported.Part(part).beats) + " beats");

    std::vector<std::uint8_t> dump;
    std::string error;
    if (!BuildDump(imported, dump, error)) {
        // Refusing to write what the device cannot hold is fine, once the
        // user was told before the import.
        if (preview.warning.empty())
            fuzzing::FailFuzzCheck("Save refuses an import that gave no warning: " + error);
        return 0;
    }
    if (!LoadSysexData(reloaded, dump, error))
        fuzzing::FailFuzzCheck("the dump of the import does not load: " + error);
    fuzzing::ToSavedForm(imported);
    const std::string difference = testing::DescribeDifference(imported, reloaded);
    if (!difference.empty())
        fuzzing::FailFuzzCheck("the import loads back differently: " + difference);
    return 0;
}
