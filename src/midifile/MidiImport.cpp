#include "midifile/MidiImport.h"

#include "midifile/ImportClock.h"
#include "midifile/ImportMarkers.h"
#include "midifile/ImportTrackConverter.h"
#include "model/Mmt8Memory.h"
#include "model/Mmt8Names.h"
#include "model/TextBuilder.h"

#include <algorithm>
#include <optional>

namespace tarvix {

namespace {

constexpr int kStagingSlot = 0;
constexpr int kTargetSlot = 1;

// The document copies windows between two of its own parts, and the staging
// part is none of them: the staging part and each destination in turn meet
// in a scratch document, so the copy is the document's own.
class CImportWorkspace {
public:
    explicit CImportWorkspace(CMmt8Part staging)
    {
        m_scratch.Part(kStagingSlot) = std::move(staging);
    }

    CMmt8Part& Staging() { return m_scratch.Part(kStagingSlot); }

    // The length that holds the latest event, but never more beats than a
    // part may have: the clocks of the last beat and a bit (65472-65535)
    // would make it 683, which the beat dialog and the device refuse, so
    // what lies there is cut off as beyond the part's end.
    void RecomputeStagingBeats()
    {
        m_scratch.RecomputePartBeats(kStagingSlot);
        if (Staging().beats > kMaxBeats)
            m_scratch.SetPartBeats(kStagingSlot, kMaxBeats);
    }

    // The window [start, end) of the staging part's masked tracks into a
    // document part, which takes the staging part's name.
    void CopyWindow(CMmt8Memory& memory, int destination, std::uint8_t trackMask,
                    std::uint32_t start, std::uint32_t end)
    {
        if (!CMmt8Memory::IsPart(destination))
            return;
        m_scratch.Part(kTargetSlot) = std::move(memory.Part(destination));
        m_scratch.CopyTracksInWindow(kTargetSlot, kStagingSlot, trackMask, start, end);
        memory.Part(destination) = std::move(m_scratch.Part(kTargetSlot));
    }

private:
    CMmt8Memory m_scratch;
};

// The first track's name, or else the file's name with its extension.
std::string StagingName(const CMidiImport& request)
{
    std::string name;
    const auto first = std::find_if(request.file.tracks.begin(), request.file.tracks.end(),
                                    [](const auto& track) { return track != nullptr; });
    if (first != request.file.tracks.end() &&
        GetMetaText(**first, CMidiMetaEvent::kTypeTrackName, 0, name))
        name = NormalizeName(name);
    if (!name.empty())
        return name;
    const std::size_t slash = request.sourcePath.find_last_of("/\\");
    return NormalizeName(slash == std::string::npos ? request.sourcePath
                                                    : request.sourcePath.substr(slash + 1));
}

void ConvertAssignedTracks(CMidiImport& request)
{
    for (const auto& track : request.file.tracks) {
        if (track && track->spare >= 1 && track->spare <= kTracksPerPart)
            ConvertMidiTrack(*track, request.file.header.division, request.options,
                             request.staging.tracks[track->spare - 1]);
    }
}

// Moves every track so that the earliest event of all falls at clock 0.
void ShiftToZero(CMidiImport& request)
{
    std::optional<std::uint16_t> earliest;
    for (const auto& track : request.staging.tracks)
        if (!track.events.empty())
            earliest = std::min(earliest.value_or(0xFFFF), track.events.front()->time);
    if (!earliest || *earliest == 0 || *earliest == kLastImportClock)
        return;
    request.startShift = -std::int32_t{*earliest};
    for (auto& track : request.staging.tracks)
        ShiftTrackTimes(track, request.startShift);
}

// One marker's window per destination part, skipping empty windows; false
// when the file has no markers.
bool DistributeByMarkers(const CMidiImport& request, CImportWorkspace& workspace,
                         CMmt8Memory& memory)
{
    std::vector<ImportMarker> markers = CollectMarkers(request.file);
    if (markers.empty())
        return false;
    if (request.startShift != 0)
        ShiftMarkers(markers, request.startShift);
    const auto windowEnd = [&markers](std::size_t i) {
        return i + 1 < markers.size() ? markers[i + 1].clock : kLastImportClock;
    };
    std::size_t next = 0;
    for (const int destination : request.destinationParts) {
        while (next < markers.size() && windowEnd(next) <= markers[next].clock)
            ++next;
        if (next == markers.size())
            break;
        workspace.CopyWindow(memory, destination, request.trackMask, markers[next].clock,
                             windowEnd(next));
        memory.SetPartName(destination, markers[next].name);
        ++next;
    }
    return true;
}

} // namespace

bool RunImport(CMidiImport& request, CMmt8Memory& memory)
{
    if (request.destinationParts.empty())
        return false;

    request.staging.Clear();
    request.staging.name = StagingName(request);
    request.startShift = 0;
    ConvertAssignedTracks(request);
    if (request.options.startAtZero != 0)
        ShiftToZero(request);

    CImportWorkspace workspace(std::move(request.staging));
    workspace.RecomputeStagingBeats();

    if (request.targetSong < kSongCount) {
        memory.SetSongName(request.targetSong, workspace.Staging().name);
        memory.SetSongTempo(request.targetSong, FindTempoBpm(request.file));
    }

    const bool byMarkers = request.options.markersAsParts != 0 &&
                           request.destinationParts.size() > 1 &&
                           DistributeByMarkers(request, workspace, memory);
    if (!byMarkers)
        workspace.CopyWindow(memory, request.destinationParts.front(), request.trackMask, 0,
                             kLastImportClock);

    request.staging = std::move(workspace.Staging());
    return true;
}

bool PreviewImport(CMidiImport& request, const CMmt8Memory& memory, CImportPreview& preview)
{
    preview.result = memory;
    preview.warning.clear();
    if (!RunImport(request, preview.result))
        return false;
    preview.memorySize = preview.result.GetMemorySize();
    // Within the device's capacity every record starts where a pointer
    // reaches it and no part can outgrow its length field, so an image of
    // this size is one Save writes.
    if (ExceedsCapacity(preview.memorySize))
        preview.warning = FormatText(
            "After this import the memory would use %u bytes, %u more than the Alesis MMT8 "
            "can hold (%u); it could not be sent to the device.\n",
            preview.memorySize, preview.memorySize - kMmt8MemoryCapacity, kMmt8MemoryCapacity);
    return true;
}

} // namespace tarvix
