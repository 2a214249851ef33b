#include "model/DeviceImage.h"

#include "io/ByteBuffer.h"
#include "model/DeviceImageLayout.h"
#include "model/Mmt8Memory.h"
#include "model/Mmt8Names.h"
#include "model/TextBuilder.h"

#include <algorithm>

namespace tarvix {

namespace {
using namespace image;

// The largest part length the four nibbles can carry when each may exceed 9,
// as the reader allows: 15 x 1000 + 15 x 100 + 15 x 10 + 15.
constexpr std::uint32_t kLargestNibbleValue = 16665;

// Ordinary lengths are plain BCD. A part loaded from an image with nibbles
// above 9 gets them back, so that saving never changes what loads.
std::uint16_t EncodeBcd(std::uint32_t value)
{
    std::uint32_t field = 0;
    std::uint32_t weight = 1000;
    for (int shift = 12; shift >= 0; shift -= 4, weight /= 10) {
        const std::uint32_t nibble = std::min<std::uint32_t>(value / weight, 15);
        value -= nibble * weight;
        field |= nibble << shift;
    }
    return static_cast<std::uint16_t>(field);
}

void PutLittle16(std::uint8_t* at, std::uint32_t value)
{
    at[0] = static_cast<std::uint8_t>(value & 0xFF);
    at[1] = static_cast<std::uint8_t>((value >> 8) & 0xFF);
}

void PutBig16(std::uint8_t* at, std::uint32_t value)
{
    at[0] = static_cast<std::uint8_t>((value >> 8) & 0xFF);
    at[1] = static_cast<std::uint8_t>(value & 0xFF);
}

void PutName(std::uint8_t* at, const std::string& name)
{
    std::fill_n(at, kNameSize, static_cast<std::uint8_t>(' '));
    std::copy_n(name.begin(), std::min<std::size_t>(name.size(), kNameSize), at);
}

class ImageWriter {
public:
    ImageWriter(const CMmt8Memory& memory, CByteBuffer& image, std::string& error)
        : m_memory(memory), m_image(image), m_error(error)
    {
    }

    bool Write()
    {
        m_image.Clear();
        CMmt8Memory::GlobalBlock global = m_memory.globalBlock;
        std::fill_n(global.begin() + kPartTable, kPointerSize * kPartCount, 0);
        std::fill_n(global.begin() + kSongTable, kPointerSize * kSongCount, 0);
        m_image.Append(global.data(), kGlobalBlockSize);

        for (int part = 0; part < kPartCount; ++part)
            if (!m_memory.Part(part).IsEmpty() &&
                !(PlaceRecord(kPartTable, part) && WritePart(part)))
                return false;
        for (int song = 0; song < kSongCount; ++song)
            if (HasSongRecord(song) && !(PlaceRecord(kSongTable, song) && WriteSong(song)))
                return false;
        if (m_image.GetSize() != m_memory.GetMemorySize())
            return Fail("Can't build the memory image: out of memory.\n");
        return true;
    }

private:
    bool HasSongRecord(int song) const
    {
        return !m_memory.Song(song).steps.empty() || song == kSongCount - 1;
    }

    bool Fail(std::string message)
    {
        m_error = std::move(message);
        return false;
    }

    // Points the table entry at the end of the image, where the record goes.
    bool PlaceRecord(std::uint32_t table, int index)
    {
        const std::uint32_t offset = m_image.GetSize();
        if (offset > kLastRecordOffset)
            return Fail(FormatText("The memory uses %u bytes, more than a memory dump can "
                                   "address (records must start within its first %u bytes); "
                                   "nothing was written.\n",
                                   m_memory.GetMemorySize(), kLastRecordOffset + 1));
        PutBig16(m_image.GetData() + table + kPointerSize * unsigned(index), offset + kBaseAddress);
        return true;
    }

    bool WritePart(int index)
    {
        const CMmt8Part& part = m_memory.Part(index);
        const std::uint32_t size = m_memory.GetPartSize(index);
        if (size > 0xFFFF)
            return Fail(FormatText("Part %02d uses %u bytes, more than one part can hold "
                                   "(65535); nothing was written.\n",
                                   index, size));
        if (part.beats >= kLargestNibbleValue)
            return Fail(FormatText("Part %02d is %u beats long, more than a memory dump can "
                                   "carry; nothing was written.\n",
                                   index, part.beats));

        std::uint8_t header[kPartHeaderSize] = {};
        PutLittle16(header + kPartLength, size);
        PutLittle16(header + kPartBeats, EncodeBcd(part.beats + 1));
        PutName(header + kPartName, part.name);
        // Track data follows in slot order, so slot 0 (model track 8) comes first.
        std::uint32_t trackOffset = kPartHeaderSize;
        for (int slot = 0; slot < kTracksPerPart; ++slot) {
            const CMmt8Track& track = part.tracks[static_cast<std::size_t>(SlotOfTrack(slot))];
            PutLittle16(header + kPartTrackOffsets + 2u * unsigned(slot), trackOffset);
            header[kPartChannels + unsigned(slot)] = track.channel;
            trackOffset += GetTrackSize(track);
        }
        m_image.Append(header, sizeof header);
        const auto endClock = static_cast<std::uint16_t>(
            std::min<std::uint32_t>(part.beats * kClocksPerBeat, 0xFFFF));
        for (int slot = 0; slot < kTracksPerPart; ++slot)
            EncodeTrack(part.tracks[static_cast<std::size_t>(SlotOfTrack(slot))], m_image,
                        endClock);
        return true;
    }

    bool WriteSong(int index)
    {
        const CMmt8Song& song = m_memory.Song(index);
        const bool emptyRecord = IsWrittenAsEmptySong(song);
        if (song.steps.size() > static_cast<std::size_t>(kMaxSteps))
            return Fail(FormatText("Song %02d has %zu steps, more than the device's %d; nothing "
                                   "was written.\n",
                                   index, song.steps.size(), kMaxSteps));
        // A part number of 100 or more would end the step list when loaded.
        const auto stepAt = std::find_if(song.steps.begin(), song.steps.end(),
                                         [](Mmt8Step step) { return step.part >= kStepListEnd; });
        if (stepAt != song.steps.end())
            return Fail(FormatText("Song %02d step %d names part %u, which does not exist; "
                                   "nothing was written.\n",
                                   index, static_cast<int>(stepAt - song.steps.begin()) + 1,
                                   unsigned{stepAt->part}));

        std::uint8_t header[kSongSteps] = {};
        PutLittle16(header + kSongLength, m_memory.GetSongSize(index));
        header[kSongTempo] = emptyRecord ? 0 : song.tempo;
        if (emptyRecord)
            std::copy(kEmptySongName.begin(), kEmptySongName.end(), header + kSongName);
        else
            PutName(header + kSongName, song.name);
        m_image.Append(header, sizeof header);
        for (const Mmt8Step step : song.steps) {
            const std::uint8_t bytes[2] = {step.part, step.trackMask};
            m_image.Append(bytes, sizeof bytes);
        }
        m_image.AppendByte(kSongEndByte);
        return true;
    }

    const CMmt8Memory& m_memory;
    CByteBuffer& m_image;
    std::string& m_error;
};
} // namespace

bool IsWrittenAsEmptySong(const CMmt8Song& song)
{
    if (!song.steps.empty())
        return false;
    const bool unnamedAndUntimed = song.tempo == 0 && song.name.empty();
    return unnamedAndUntimed || song.name == NormalizeName(kEmptySongName);
}

bool BuildImage(const CMmt8Memory& memory, CByteBuffer& image, std::string& error)
{
    if (ImageWriter(memory, image, error).Write())
        return true;
    image.Clear();
    return false;
}

} // namespace tarvix
