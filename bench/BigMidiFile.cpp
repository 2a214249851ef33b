#include "BigMidiFile.h"

#include <random>
#include <string>
#include <vector>

namespace tarvix::bench {

namespace {

constexpr std::uint32_t kTrackCount = 16;
constexpr std::uint32_t kSysexEvery = 2000;
constexpr std::uint32_t kMarkerEvery = 500;

std::uint32_t VarLenSize(std::uint32_t value)
{
    std::uint32_t size = 1;
    while ((value >>= 7) != 0 && size < 4)
        ++size;
    return size;
}

// Appends events and counts the bytes they will take when written.
class TrackFiller {
public:
    explicit TrackFiller(CMidiTrack& track) : m_track(track) {}

    std::uint32_t GetBytes() const { return m_bytes; }

    void Channel(std::uint32_t delta, std::uint8_t status, std::uint8_t data1, std::uint8_t data2)
    {
        auto event = std::make_unique<CMidiChannelEvent>(delta, status);
        event->SetData(data1, data2);
        m_bytes += VarLenSize(delta) + (status == m_lastStatus ? 0 : 1) + event->GetDataCount();
        m_lastStatus = status;
        m_track.AppendEvent(std::move(event));
    }

    void Sysex(std::uint32_t delta, const std::vector<std::uint8_t>& data)
    {
        auto event = std::make_unique<CMidiSysexEvent>(delta, 0xF0);
        event->SetData(data);
        Count(delta, data.size());
        m_track.AppendEvent(std::move(event));
    }

    void Meta(std::uint32_t delta, std::uint8_t type, const std::string& text)
    {
        auto event = std::make_unique<CMidiMetaEvent>(delta, 0xFF);
        event->SetType(type);
        event->SetData({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
        m_bytes += 1;
        Count(delta, text.size());
        m_track.AppendEvent(std::move(event));
    }

private:
    void Count(std::uint32_t delta, std::size_t length)
    {
        const auto size = static_cast<std::uint32_t>(length);
        m_bytes += VarLenSize(delta) + 1 + VarLenSize(size) + size;
        m_lastStatus = 0;
    }

    CMidiTrack& m_track;
    std::uint32_t m_bytes = 0;
    std::uint8_t m_lastStatus = 0;
};

void FillTrack(CMidiTrack& track, std::uint8_t channel, std::uint32_t targetBytes,
               std::mt19937& random)
{
    TrackFiller filler(track);
    filler.Meta(0, 0x03, "Track " + std::to_string(channel + 1));
    filler.Channel(0, static_cast<std::uint8_t>(0xC0 | channel), channel, 0);
    const auto noteOn = static_cast<std::uint8_t>(0x90 | channel);
    std::uniform_int_distribution<int> note(36, 96);
    std::uniform_int_distribution<int> velocity(1, 127);
    std::uniform_int_distribution<int> kind(0, 99);
    std::uint32_t count = 0;
    while (filler.GetBytes() < targetBytes) {
        ++count;
        if (count % kSysexEvery == 0) {
            std::vector<std::uint8_t> data = {0x43, 0x10, 0x4C, 0x00, 0x00};
            for (int i = 0; i < 24; ++i)
                data.push_back(static_cast<std::uint8_t>(random() & 0x7F));
            data.push_back(0xF7);
            filler.Sysex(0, data);
        } else if (count % kMarkerEvery == 0) {
            filler.Meta(0, 0x06, "Bar " + std::to_string(count / kMarkerEvery));
        } else if (const int k = kind(random); k < 6) {
            filler.Channel(0, static_cast<std::uint8_t>(0xB0 | channel),
                           static_cast<std::uint8_t>(k == 0 ? 7 : 1),
                           static_cast<std::uint8_t>(random() & 0x7F));
        } else if (k < 10) {
            filler.Channel(static_cast<std::uint32_t>(random() % 4),
                           static_cast<std::uint8_t>(0xE0 | channel),
                           static_cast<std::uint8_t>(random() & 0x7F),
                           static_cast<std::uint8_t>(random() & 0x7F));
        } else {
            const auto key = static_cast<std::uint8_t>(note(random));
            filler.Channel(static_cast<std::uint32_t>(random() % 3) * 24, noteOn, key,
                           static_cast<std::uint8_t>(velocity(random)));
            filler.Channel(static_cast<std::uint32_t>(random() % 4) * 48, noteOn, key, 0);
        }
    }
    auto end = std::make_unique<CMidiMetaEvent>(0, 0xFF);
    end->SetType(CMidiMetaEvent::kTypeEndOfTrack);
    track.AppendEvent(std::move(end));
}

} // namespace

CMidiFile MakeBigMidiFile(std::uint32_t targetBytes)
{
    std::mt19937 random(2024);
    CMidiFile file;
    file.header.format = 1;
    file.header.division = 96;
    file.header.trackCount = kTrackCount;
    for (std::uint32_t i = 0; i < kTrackCount; ++i) {
        file.tracks.push_back(std::make_unique<CMidiTrack>());
        FillTrack(*file.tracks.back(), static_cast<std::uint8_t>(i), targetBytes / kTrackCount,
                  random);
    }
    return file;
}

} // namespace tarvix::bench
