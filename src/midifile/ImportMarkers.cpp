#include "midifile/ImportMarkers.h"

#include "midifile/ImportClock.h"
#include "midifile/MidiEvent.h"
#include "midifile/MidiFile.h"

#include <algorithm>
#include <cstdio>

namespace tarvix {

namespace {

bool IsWhiteSpace(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f';
}

std::string MarkerName(const CMidiMetaEvent& marker, std::uint32_t number)
{
    const auto data = marker.GetData();
    std::string text(data.begin(), data.end());
    const auto first = std::find_if_not(text.begin(), text.end(), IsWhiteSpace);
    const auto last = std::find_if_not(text.rbegin(), text.rend(), IsWhiteSpace).base();
    if (first < last)
        return std::string(first, last);
    char fallback[24];
    std::snprintf(fallback, sizeof fallback, "Marker %u", number);
    return fallback;
}

} // namespace

std::vector<ImportMarker> CollectMarkers(const CMidiFile& file)
{
    std::vector<ImportMarker> markers;
    for (const auto& track : file.tracks) {
        if (!track)
            continue;
        CImportClock running(file.header.division);
        for (const auto& event : track->events) {
            if (!event)
                continue;
            const std::uint64_t clock = running.Advance(event->GetDeltaTime());
            if (clock > kLastImportClock)
                break;
            if (event->GetKind() != CMidiEvent::kMeta)
                continue;
            const auto& meta = static_cast<const CMidiMetaEvent&>(*event);
            if (meta.GetType() != CMidiMetaEvent::kTypeMarker || meta.GetData().empty())
                continue;
            const auto number = static_cast<std::uint32_t>(markers.size() + 1);
            markers.push_back({static_cast<std::uint32_t>(clock), MarkerName(meta, number)});
        }
    }
    std::stable_sort(
        markers.begin(), markers.end(),
        [](const ImportMarker& a, const ImportMarker& b) { return a.clock < b.clock; });
    return markers;
}

void ShiftMarkers(std::vector<ImportMarker>& markers, std::int32_t shift)
{
    for (ImportMarker& marker : markers) {
        const std::int64_t moved = std::int64_t{marker.clock} + shift;
        marker.clock = static_cast<std::uint32_t>(
            std::clamp<std::int64_t>(moved, 0, std::int64_t{kLastImportClock}));
    }
}

} // namespace tarvix
