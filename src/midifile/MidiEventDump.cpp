// The events' lines of the MIDI file dump report.
#include "midifile/MidiDumpSink.h"
#include "midifile/MidiEvent.h"
#include "vocabulary/MidiVocabulary.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>

namespace tarvix {

namespace {

// Tempo, SMPTE and signature data are read at fixed positions whatever the
// declared length; a position past the data reads as 0.
std::uint8_t ByteAt(std::span<const std::uint8_t> data, std::size_t index)
{
    return index < data.size() ? data[index] : 0;
}

const char* GetValueName(const CMidiChannelEvent& event)
{
    switch ((event.GetStatus() >> 4) & 7) {
    case 0: // note off
    case 1: // note on
    case 2: // poly aftertouch
        return GetNoteName(event.GetData1());
    case 3: return GetControllerName(event.GetData1());
    case 4: return GetProgramName(event.GetData1());
    default: return "";
    }
}

// One report line built in place. The channel event's line is most of any
// report, and printf would cost more than the rest of the dump together.
class CLine {
public:
    void Hex(std::uint32_t value, int digits)
    {
        for (int digit = digits - 1; digit >= 0; --digit)
            Put("0123456789ABCDEF"[(value >> (4 * digit)) & 0x0F]);
    }
    void Text(std::string_view text)
    {
        const std::size_t count = std::min(text.size(), sizeof m_text - m_size);
        std::memcpy(m_text + m_size, text.data(), count);
        m_size += count;
    }
    // As printf's "%-16s": blanks up to the width, never cut.
    void Padded(std::string_view text, std::size_t width)
    {
        Text(text);
        for (std::size_t i = text.size(); i < width; ++i)
            Put(' ');
    }
    std::string_view View() const { return {m_text, m_size}; }

private:
    void Put(char c)
    {
        if (m_size < sizeof m_text)
            m_text[m_size++] = c;
    }

    char m_text[160];
    std::size_t m_size = 0;
};

const char* const kTextLabels[] = {"Text",  "Copyright", "Name",     "Instrument",
                                   "Lyric", "Marker",    "Cue point"};

void DumpText(CMidiDumpSink& sink, std::uint8_t type, std::span<const std::uint8_t> data)
{
    sink.WriteFormat("%s: ", kTextLabels[type - 1]);
    if (data.empty()) {
        sink.WriteText("<no data>\n");
        return;
    }
    std::string text(data.begin(), data.end());
    for (char& c : text)
        if (c == '\0')
            c = ' ';
    text += '\n';
    sink.WriteText(text);
}

void DumpTempo(CMidiDumpSink& sink, std::span<const std::uint8_t> data)
{
    if (data.empty()) {
        sink.WriteText("Set tempo: <no data>\n");
        return;
    }
    const std::uint32_t t = std::uint32_t{ByteAt(data, 0)} << 16 |
                            std::uint32_t{ByteAt(data, 1)} << 8 | ByteAt(data, 2);
    // A tempo of 0 microseconds has no BPM; it shows as 0 rather than failing.
    sink.WriteFormat("Set tempo: %u BPM (%u uSec PQN)\n", t == 0 ? 0 : 60000000 / t, t);
}

void DumpWithHex(CMidiDumpSink& sink, const char* label, std::span<const std::uint8_t> data)
{
    sink.WriteFormat("%s size %u bytes\n", label, static_cast<std::uint32_t>(data.size()) + 1);
    sink.HexDumpWithStatus(0xFF, data.data(), static_cast<std::uint32_t>(data.size()));
}

} // namespace

// "%08X Midi %02X", then " %02X %02X   ", " %02X      " or nine blanks by
// the data bytes, then "%-16s %s\n" with the type and value names.
void CMidiChannelEvent::Dump(CMidiDumpSink& sink) const
{
    if (!sink.ShowsChannelEvents())
        return;
    CLine line;
    line.Hex(GetDeltaTime(), 8);
    line.Text(" Midi ");
    line.Hex(GetStatus(), 2);
    if (m_dataCount == 0) {
        line.Text("         ");
    } else {
        line.Text(" ");
        line.Hex(m_data[0], 2);
        if (m_dataCount == 2) {
            line.Text(" ");
            line.Hex(m_data[1], 2);
            line.Text("   ");
        } else {
            line.Text("      ");
        }
    }
    line.Padded(GetTypeName(), 16);
    line.Text(" ");
    line.Text(GetValueName(*this));
    line.Text("\n");
    sink.WriteText(line.View());
}

void CMidiSysexEvent::Dump(CMidiDumpSink& sink) const
{
    if (!sink.ShowsSysexEvents())
        return;
    sink.WriteFormat("%08X %s Sysex %u bytes\n", GetDeltaTime(),
                     GetManufacturerName(ByteAt(m_data, 0)),
                     static_cast<std::uint32_t>(m_data.size()) + 1);
    sink.HexDumpWithStatus(GetStatus(), m_data.data(), static_cast<std::uint32_t>(m_data.size()));
}

void CMidiMetaEvent::Dump(CMidiDumpSink& sink) const
{
    if (!sink.ShowsMetaEvents())
        return;
    sink.WriteFormat("%08X Meta Event %02X   ", GetDeltaTime(), m_type);
    const std::span<const std::uint8_t> data = m_data;
    const bool none = data.empty();
    switch (m_type) {
    case 0x00:
        // The second byte is left out, as the report has always done.
        sink.WriteFormat("Sequence number: %d\n", ByteAt(data, 0) * 256);
        break;
    case 0x01:
    case 0x02:
    case 0x03:
    case 0x04:
    case 0x05:
    case 0x06:
    case 0x07: DumpText(sink, m_type, data); break;
    case 0x20: sink.WriteFormat("MIDI Channel: %d\n", ByteAt(data, 0)); break;
    case 0x21: sink.WriteFormat("MIDI Port: %d\n", ByteAt(data, 0)); break;
    case kTypeEndOfTrack: sink.WriteText("End of track\n"); break;
    case kTypeTempo: DumpTempo(sink, data); break;
    case 0x54:
        if (none)
            sink.WriteText("SMPTE Offset: <no data>\n");
        else
            sink.WriteFormat("SMPTE Offset: %02d:%02d:%02d:%02d:%d\n", ByteAt(data, 0),
                             ByteAt(data, 1), ByteAt(data, 2), ByteAt(data, 3), ByteAt(data, 4));
        break;
    case 0x58:
        // 2 to the power of the byte, shifted in 32 bits as the report always has.
        if (none)
            sink.WriteText("Time signature: <no data>\n");
        else
            sink.WriteFormat("Time signature: %d/%d %d %d\n", ByteAt(data, 0),
                             static_cast<int>(1u << (ByteAt(data, 1) & 31)), ByteAt(data, 2),
                             ByteAt(data, 3));
        break;
    case 0x59:
        if (none)
            sink.WriteText("Key signature: <no data>\n");
        else
            sink.WriteFormat("Key signature: %s %s\n",
                             GetKeySignatureName(static_cast<std::int8_t>(ByteAt(data, 0))),
                             GetModeName(ByteAt(data, 1)));
        break;
    case 0x7F: DumpWithHex(sink, "Sequencer specific:", data); break;
    default: DumpWithHex(sink, "", data); break;
    }
}

} // namespace tarvix
