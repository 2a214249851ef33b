#include "NoteOffMidiFile.h"

#include <initializer_list>

namespace tarvix::bench {

namespace {

constexpr std::uint16_t kDivision = 0x7FFF;
// 128 ticks, two bytes of variable length; 120,000 of them at this division
// come to about 45,000 device clocks.
constexpr std::uint8_t kDelta[] = {0x81, 0x00};

void Put(std::vector<std::uint8_t>& bytes, std::initializer_list<std::uint8_t> more)
{
    bytes.insert(bytes.end(), more);
}

void PutBig32(std::vector<std::uint8_t>& bytes, std::uint32_t value)
{
    Put(bytes, {static_cast<std::uint8_t>(value >> 24), static_cast<std::uint8_t>(value >> 16),
                static_cast<std::uint8_t>(value >> 8), static_cast<std::uint8_t>(value)});
}

} // namespace

std::vector<std::uint8_t> MakeUnmatchedNoteOffFile()
{
    std::vector<std::uint8_t> events;
    for (std::uint32_t i = 0; i < kNoteOffFileControllers; ++i)
        Put(events, {kDelta[0], kDelta[1], 0xB0, 7, static_cast<std::uint8_t>(i % 128)});
    for (std::uint32_t i = 0; i < kNoteOffFileNoteOffs; ++i)
        Put(events, {kDelta[0], kDelta[1], 0x80, static_cast<std::uint8_t>(i % 128), 64});
    Put(events, {0x00, 0xFF, 0x2F, 0x00});

    std::vector<std::uint8_t> file = {'M', 'T', 'h', 'd', 0, 0, 0, 6, 0, 0, 0, 1};
    Put(file, {static_cast<std::uint8_t>(kDivision >> 8), static_cast<std::uint8_t>(kDivision)});
    Put(file, {'M', 'T', 'r', 'k'});
    PutBig32(file, static_cast<std::uint32_t>(events.size()));
    file.insert(file.end(), events.begin(), events.end());
    return file;
}

} // namespace tarvix::bench
