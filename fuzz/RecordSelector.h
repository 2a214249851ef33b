#pragma once

#include "model/Mmt8Limits.h"
#include "model/Mmt8Song.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace tarvix::fuzzing {

// How a record input starts: a selector byte, then for a step the step
// index, then the record's stream bytes. The fuzzer and the seed maker both
// go through here so their inputs cannot drift apart.
enum class RecordKind : std::uint8_t { Track = 0, Part = 1, Song = 2, Step = 3 };

// Steps land in a song of one of these lengths, so that both overwriting,
// appending and a full song are reached.
inline constexpr std::array<std::size_t, 4> kStepSongLengths = {0, 1, 16, kMaxSteps};

inline RecordKind KindOfSelector(std::uint8_t selector)
{
    return static_cast<RecordKind>(selector & 3u);
}

inline std::size_t HeaderSize(RecordKind kind)
{
    return kind == RecordKind::Step ? 2 : 1;
}

// lengthChoice indexes kStepSongLengths; other kinds ignore it.
inline std::uint8_t MakeSelector(RecordKind kind, std::size_t lengthChoice = 0)
{
    return static_cast<std::uint8_t>(static_cast<unsigned>(kind) | (lengthChoice & 3u) << 2);
}

// The song a step input reads into.
inline CMmt8Song MakeStepSong(std::uint8_t selector)
{
    CMmt8Song song;
    song.tempo = static_cast<std::uint8_t>(kDefaultTempo);
    const std::size_t length = kStepSongLengths[(selector >> 2) & 3u];
    for (std::size_t i = 0; i < length; ++i)
        song.steps.push_back(Mmt8Step{static_cast<std::uint8_t>(i % kPartCount), kAllTracksMask});
    return song;
}

} // namespace tarvix::fuzzing
