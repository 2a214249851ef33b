#include "ExportTestSupport.h"

#include "midifile/ImportRequest.h"
#include "midifile/ImportTrackList.h"
#include "midifile/MidiExport.h"
#include "midifile/MidiFileStream.h"
#include "midifile/MidiImport.h"
#include "model/Mmt8Memory.h"

#include <gtest/gtest.h>

#include <cstdio>

namespace tarvix::testing {

MidiSelection Select(MidiSelectionKind kind, int index, std::vector<int> items)
{
    return MidiSelection{kind, index, std::move(items)};
}

CMidiFile Exported(const CMmt8Memory& memory, const MidiSelection& selection)
{
    CMidiFile file;
    std::string error;
    EXPECT_TRUE(BuildExportFile(memory, selection, file, error)) << error;
    return file;
}

Bytes ExportedBytes(const CMmt8Memory& memory, const MidiSelection& selection)
{
    CMidiFile file = Exported(memory, selection);
    return WriteMidi(file);
}

std::vector<std::string> Timeline(const CMidiTrack& track)
{
    std::vector<std::string> lines;
    std::uint64_t tick = 0;
    for (const auto& event : track.events) {
        tick += event->GetDeltaTime();
        std::string line = std::to_string(tick);
        const auto hex = [&line](std::uint8_t byte) {
            char text[4];
            std::snprintf(text, sizeof text, " %02x", byte);
            line += text;
        };
        if (event->GetKind() == CMidiEvent::kChannel) {
            const auto& message = static_cast<const CMidiChannelEvent&>(*event);
            hex(message.GetStatus());
            hex(message.GetData1());
            if (message.GetDataCount() == 2)
                hex(message.GetData2());
        } else if (event->GetKind() == CMidiEvent::kSysex) {
            hex(event->GetStatus());
            for (const std::uint8_t byte : static_cast<const CMidiSysexEvent&>(*event).GetData())
                hex(byte);
        } else {
            const auto& meta = static_cast<const CMidiMetaEvent&>(*event);
            const auto data = meta.GetData();
            line += " meta";
            hex(meta.GetType());
            if (meta.GetType() >= 0x01 && meta.GetType() <= 0x07)
                line += " \"" + std::string(data.begin(), data.end()) + "\"";
            else
                for (const std::uint8_t byte : data)
                    hex(byte);
        }
        lines.push_back(line);
    }
    return lines;
}

void ImportBack(CMmt8Memory& memory, const MidiSelection& selection, const Bytes& bytes)
{
    CMidiImport request;
    request.sourcePath = "/tmp/export.mid";
    std::string error;
    ASSERT_TRUE(BuildImportRequest(memory, selection, request, error)) << error;
    request.options.importAftertouch = 1;
    request.options.importSysex = 1;
    CMidiFileStream stream(bytes);
    LoadImportFile(request, stream);
    AssignDeviceTracks(request.file, GetInitialTicks(request.file), request.trackMask);
    ASSERT_TRUE(RunImport(request, memory));
}

} // namespace tarvix::testing
