#pragma once

#include "model/Mmt8Limits.h"
#include "model/Mmt8Part.h"
#include "model/Mmt8Song.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace tarvix {

// The document: the whole memory of one MMT-8. The program owns one; tests
// make as many as they like.
//
// Every operation given a part, song, track or step out of range does nothing
// and returns false. None sets `modified`: the command that changed the
// document does, so that the model can be used for scratch work too.
class CMmt8Memory {
public:
    using GlobalBlock = std::array<std::uint8_t, kGlobalBlockSize>;

    CMmt8Memory();

    // Empty parts and songs, the blank global block, not modified.
    void InitMemory();

    // Part or song number, or -1 for all of them.
    bool ClearPart(int part);
    bool ClearTrack(int part, int track);
    bool ClearSong(int song);

    // Step -1 removes all steps.
    bool DeleteStep(int song, int step);
    // Makes room at index by copying the step there one place up, so the new
    // step starts as a copy of its neighbour; at the end it is (part 0, all).
    bool InsertStep(int song, int index);
    bool ChangeStepPart(int song, int step, int delta);
    bool AppendStep(int song, std::uint8_t part, std::uint8_t trackMask);

    // Cuts every track at the new length.
    bool SetPartBeats(int part, std::uint32_t beats);
    // The length that holds the latest event: its beat plus one.
    bool RecomputePartBeats(int part);
    // A channel above 16 stores 0 (events keep their own channels).
    bool SetTrackChannel(int part, int track, std::uint32_t channel);
    // A tempo outside 20..255 stores 120.
    bool SetSongTempo(int song, std::uint32_t tempo);
    bool SetPartName(int part, std::string_view name);
    bool SetSongName(int song, std::string_view name);

    // Copies the tracks in mask from source to target, keeping events in
    // [start, end) shifted to start at 0; the target takes the source's name
    // and a length that holds the copied events. True if any event arrived.
    bool CopyTracksInWindow(int target, int source, std::uint8_t trackMask, std::uint32_t start,
                            std::uint32_t end);

    // Device bytes in use, the figure measured against kMmt8MemoryCapacity.
    std::uint32_t GetMemorySize() const;
    std::uint32_t GetPartSize(int part) const;
    std::uint32_t GetTrackSize(int part, int track) const;
    std::uint32_t GetSongSize(int song) const;
    // "None", "All", or the 1-based numbers of the playing tracks ("1 3 ").
    std::string GetStepTracksText(int song, int step) const;

    static bool IsPart(int part) { return part >= 0 && part < kPartCount; }
    static bool IsSong(int song) { return song >= 0 && song < kSongCount; }
    static bool IsTrack(int track) { return track >= 0 && track < kTracksPerPart; }

    CMmt8Part& Part(int part) { return m_parts.at(static_cast<std::size_t>(part)); }
    const CMmt8Part& Part(int part) const { return m_parts.at(static_cast<std::size_t>(part)); }
    CMmt8Song& Song(int song) { return m_songs.at(static_cast<std::size_t>(song)); }
    const CMmt8Song& Song(int song) const { return m_songs.at(static_cast<std::size_t>(song)); }

    // The device's own settings and display text; carried through unread.
    GlobalBlock globalBlock{};
    std::uint8_t modified = 0;

private:
    std::array<CMmt8Part, kPartCount> m_parts;
    std::array<CMmt8Song, kSongCount> m_songs;
};

// "Memory available: N%" or the over-capacity text, for a size in bytes.
std::string GetMemoryText(std::uint32_t size);
bool ExceedsCapacity(std::uint32_t size);

} // namespace tarvix
