#include "midifile/MidiTrack.h"

#include "midifile/MidiFileStream.h"
#include "midifile/VarLen.h"

namespace tarvix {

CMidiTrack::CMidiTrack(const CMidiTrack& other) : CMidiChunk(other), spare(other.spare)
{
    events.reserve(other.events.size());
    for (const auto& event : other.events)
        if (event)
            if (auto copy = CloneMidiEvent(*event))
                events.push_back(std::move(copy));
}

CMidiTrack& CMidiTrack::operator=(const CMidiTrack& other)
{
    if (this != &other)
        *this = CMidiTrack(other);
    return *this;
}

bool CMidiTrack::Read(CMidiFileStream& stream)
{
    if (!ReadChunkHeader(stream))
        return false;
    // A second "MThd" is walked like a track, and then not kept.
    const bool good = m_kind == kTrack;

    std::uint32_t consumed = 0;
    std::uint8_t lastStatus = 0; // none yet
    while (consumed < m_length) {
        std::uint32_t deltaTime = 0;
        consumed += ReadVarLen(stream, deltaTime);
        if (deltaTime == kVarLenFailed)
            return false;
        std::uint8_t status = 0;
        if (!stream.ReadByte(status))
            return false;
        if (status < 0x80) {
            // Running status, after any status byte: after a meta event a
            // data byte starts another meta event.
            status = lastStatus;
            stream.Seek(-1);
        } else {
            lastStatus = status;
            ++consumed;
        }
        auto event = CreateMidiEvent(deltaTime, status);
        if (!event || !event->Read(stream, consumed))
            break;
        events.push_back(std::move(event));
    }
    return good;
}

void CMidiTrack::Write(CMidiFileStream& stream)
{
    const std::uint32_t start = stream.GetPosition();
    WriteChunkHeader(stream);
    const std::uint32_t bodyStart = stream.GetPosition();
    const CMidiEvent* previous = nullptr;
    for (const auto& event : events) {
        if (event)
            event->Write(stream, previous);
        previous = event.get();
    }
    const std::uint32_t end = stream.GetPosition();
    if (end - bodyStart != m_length) {
        m_length = end - bodyStart;
        stream.SeekTo(start);
        WriteChunkHeader(stream);
        stream.SeekTo(end);
    }
}

bool GetMetaText(const CMidiTrack& track, std::uint8_t type, std::uint32_t n, std::string& text)
{
    for (const auto& event : track.events) {
        if (!event || event->GetKind() != CMidiEvent::kMeta)
            continue;
        const auto& meta = static_cast<const CMidiMetaEvent&>(*event);
        if (meta.GetType() != type || n-- != 0)
            continue;
        const auto data = meta.GetData();
        text.assign(data.begin(), data.end());
        return true;
    }
    return false;
}

const CMidiEvent* FindEventOfKind(const CMidiTrack& track, std::uint32_t kind, std::uint32_t n)
{
    for (const auto& event : track.events)
        if (event && event->GetKind() == kind && n-- == 0)
            return event.get();
    return nullptr;
}

} // namespace tarvix
