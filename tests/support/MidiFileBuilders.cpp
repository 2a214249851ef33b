#include "support/MidiFileBuilders.h"

#include "midifile/MidiFileStream.h"

#include <cstdio>

namespace tarvix::testing {

Bytes Join(std::initializer_list<Bytes> parts)
{
    Bytes joined;
    for (const Bytes& part : parts)
        joined.insert(joined.end(), part.begin(), part.end());
    return joined;
}

Bytes Chunk(const char* id, const Bytes& body)
{
    const auto length = static_cast<std::uint32_t>(body.size());
    Bytes chunk(id, id + 4);
    for (int shift = 24; shift >= 0; shift -= 8)
        chunk.push_back(static_cast<std::uint8_t>(length >> shift));
    return Join({chunk, body});
}

Bytes HeaderChunk(std::uint16_t format, std::uint16_t tracks, std::uint16_t division)
{
    const auto high = [](std::uint16_t value) { return static_cast<std::uint8_t>(value >> 8); };
    const auto low = [](std::uint16_t value) { return static_cast<std::uint8_t>(value); };
    return Chunk("MThd", {high(format), low(format), high(tracks), low(tracks), high(division),
                          low(division)});
}

Bytes Text(const std::string& text)
{
    return {text.begin(), text.end()};
}

CMidiFile ReadMidi(const Bytes& bytes)
{
    CMidiFileStream stream(bytes);
    CMidiFile file;
    file.Persist(stream);
    return file;
}

Bytes WriteMidi(CMidiFile& file)
{
    CMidiFileStream stream;
    stream.OpenMemoryForWriting();
    file.Persist(stream);
    const auto written = stream.GetWrittenBytes();
    return {written.begin(), written.end()};
}

std::unique_ptr<CMidiEvent> Channel(std::uint32_t delta, std::uint8_t status, std::uint8_t data1,
                                    std::uint8_t data2)
{
    auto event = std::make_unique<CMidiChannelEvent>(delta, status);
    event->SetData(data1, data2);
    return event;
}

std::unique_ptr<CMidiEvent> Meta(std::uint32_t delta, std::uint8_t type, const Bytes& data)
{
    auto event = std::make_unique<CMidiMetaEvent>(delta, 0xFF);
    event->SetType(type);
    event->SetData(data);
    return event;
}

std::unique_ptr<CMidiEvent> Sysex(std::uint32_t delta, std::uint8_t status, const Bytes& data)
{
    auto event = std::make_unique<CMidiSysexEvent>(delta, status);
    event->SetData(data);
    return event;
}

CMidiFile MakeFile(std::uint16_t format, std::uint16_t division,
                   std::vector<std::vector<std::unique_ptr<CMidiEvent>>> tracks)
{
    CMidiFile file;
    file.header.format = format;
    file.header.division = division;
    file.header.trackCount = static_cast<std::uint16_t>(tracks.size());
    for (auto& events : tracks) {
        auto track = std::make_unique<CMidiTrack>();
        track->events = std::move(events);
        file.tracks.push_back(std::move(track));
    }
    return file;
}

namespace {
void AppendHex(std::string& line, std::uint8_t byte)
{
    char text[4];
    std::snprintf(text, sizeof text, " %02x", byte);
    line += text;
}
void AppendHex(std::string& line, std::span<const std::uint8_t> bytes)
{
    for (const std::uint8_t byte : bytes)
        AppendHex(line, byte);
}
} // namespace

std::string ListEvents(const CMidiFile& file)
{
    std::string text = "header " + std::to_string(file.header.format) + " " +
                       std::to_string(file.header.trackCount) + " " +
                       std::to_string(file.header.division) + "\n";
    for (const auto& track : file.tracks) {
        text += "track\n";
        for (const auto& event : track->events) {
            std::string line = std::to_string(event->GetDeltaTime());
            if (event->GetKind() == CMidiEvent::kChannel) {
                const auto& channel = static_cast<const CMidiChannelEvent&>(*event);
                const std::uint8_t data[2] = {channel.GetData1(), channel.GetData2()};
                line += " channel";
                AppendHex(line, channel.GetStatus());
                AppendHex(line, std::span(data, channel.GetDataCount()));
            } else if (event->GetKind() == CMidiEvent::kSysex) {
                line += " sysex";
                AppendHex(line, event->GetStatus());
                AppendHex(line, static_cast<const CMidiSysexEvent&>(*event).GetData());
            } else {
                const auto& meta = static_cast<const CMidiMetaEvent&>(*event);
                line += " meta";
                AppendHex(line, meta.GetType());
                AppendHex(line, meta.GetData());
            }
            text += line + "\n";
        }
    }
    return text;
}

} // namespace tarvix::testing
