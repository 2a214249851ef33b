#include "model/Mmt8Track.h"

#include "io/ByteBuffer.h"

namespace tarvix {

namespace {
constexpr std::size_t kBodySize = 4;
constexpr std::uint32_t kTimedEventSize = 7;
constexpr std::uint32_t kUntimedEventSize = 5;
constexpr std::uint32_t kEndMarkSize = 7;

bool IsEndMark(const std::uint8_t* body)
{
    return body[0] == 0x00 && body[1] == 0x80 && body[2] == 0x00 && body[3] == 0x00;
}

template <typename Event>
std::unique_ptr<Event> MakeEvent(std::uint8_t channel, std::uint8_t data1, std::uint8_t data2)
{
    auto event = std::make_unique<Event>();
    event->channel = channel;
    event->data1 = data1;
    event->data2 = data2;
    return event;
}

std::unique_ptr<CMmt8Event> DecodeBody(unsigned code, const std::uint8_t* b)
{
    const auto value = static_cast<std::uint8_t>(b[0] & 0x7F);
    if ((b[0] & 0x80) == 0) {
        auto note = MakeEvent<CMmt8NoteEvent>(b[1], static_cast<std::uint8_t>(code), b[0]);
        note->duration = static_cast<std::uint16_t>(b[2] << 8 | b[3]);
        return note;
    }
    switch (code) {
    case kProgramEventType: return MakeEvent<CMmt8ProgramEvent>(b[1], value, 0);
    case kAftertouchEventType: return MakeEvent<CMmt8AftertouchEvent>(b[1], value, 0);
    case kPitchBendEventType: {
        auto bend = MakeEvent<CMmt8PitchBendEvent>(b[1], 0, 0);
        bend->value = static_cast<std::uint16_t>(b[2] | b[3] << 8);
        return bend;
    }
    case kSysexEventType: return MakeEvent<CMmt8SysexEvent>(value, b[1], b[3]);
    default:
        if (code <= 121)
            return MakeEvent<CMmt8ControlEvent>(b[1], static_cast<std::uint8_t>(code), value);
        return nullptr; // 126 and 127 name no event: the track ends here
    }
}
} // namespace

CMmt8Track::CMmt8Track(const CMmt8Track& other) : channel(other.channel)
{
    events.reserve(other.events.size());
    for (const auto& event : other.events)
        if (auto copy = CloneEvent(*event))
            events.push_back(std::move(copy));
}

CMmt8Track& CMmt8Track::operator=(const CMmt8Track& other)
{
    if (this != &other) {
        CMmt8Track copy(other);
        *this = std::move(copy);
    }
    return *this;
}

void CMmt8Track::Clear()
{
    channel = 0;
    events.clear();
}

std::unique_ptr<CMmt8Event> DecodeEvent(CByteCursor& cursor, std::uint16_t& runningTime)
{
    if (cursor.Remaining() < 1)
        return nullptr;
    const std::uint8_t* at = cursor.data.data() + cursor.position;
    const std::uint8_t lead = at[0];
    const bool timed = (lead & 0x80) != 0;
    const std::size_t headerSize = timed ? 3 : 1;
    if (cursor.Remaining() < headerSize + kBodySize) {
        cursor.position = cursor.data.size();
        return nullptr;
    }
    const std::uint8_t* body = at + headerSize;
    if ((body[0] & 0x80) == 0 && IsEndMark(body)) {
        cursor.position += headerSize + kBodySize;
        return nullptr;
    }
    auto event = DecodeBody(lead & 0x7Fu, body);
    if (!event) {
        cursor.position += headerSize;
        return nullptr;
    }
    if (timed)
        runningTime = static_cast<std::uint16_t>(at[1] | at[2] << 8);
    cursor.position += headerSize + kBodySize;
    event->time = runningTime;
    event->timed = timed ? 1 : 0;
    return event;
}

void DecodeTrack(CMmt8Track& track, std::span<const std::uint8_t> data, std::uint8_t channel)
{
    track.Clear();
    track.channel = channel;
    CByteCursor cursor{data, 0};
    std::uint16_t runningTime = 0;
    while (auto event = DecodeEvent(cursor, runningTime))
        track.events.push_back(std::move(event));
}

void EncodeTrack(const CMmt8Track& track, CByteBuffer& out, std::uint16_t endClock)
{
    for (const auto& event : track.events)
        event->Encode(out);
    const std::uint8_t endMark[kEndMarkSize] = {0x80,
                                                static_cast<std::uint8_t>(endClock & 0xFF),
                                                static_cast<std::uint8_t>(endClock >> 8),
                                                0x00,
                                                0x80,
                                                0x00,
                                                0x00};
    out.Append(endMark, sizeof endMark);
}

std::uint32_t GetTrackSize(const CMmt8Track& track)
{
    std::uint32_t size = kEndMarkSize;
    for (const auto& event : track.events)
        size += event->timed ? kTimedEventSize : kUntimedEventSize;
    return size;
}

bool GetLastEventTime(const CMmt8Track& track, std::uint16_t& time)
{
    if (track.events.empty())
        return false;
    time = track.events.back()->time;
    return true;
}

bool TruncateTrack(CMmt8Track& track, std::uint32_t endClock)
{
    if (track.events.empty())
        return false;
    auto& events = track.events;
    for (auto i = events.size(); i-- > 0;) {
        CMmt8Event& event = *events[i];
        if (event.time >= endClock) {
            events.erase(events.begin() + static_cast<std::ptrdiff_t>(i));
        } else if (event.GetTypeCode() == kNoteEventType) {
            auto& note = static_cast<CMmt8NoteEvent&>(event);
            if (std::uint32_t{note.time} + note.duration > endClock)
                note.duration = static_cast<std::uint16_t>(endClock - note.time);
        }
    }
    return true;
}

CMmt8NoteEvent* FindOpenNote(CMmt8Track& track, std::uint8_t channel, std::uint8_t note)
{
    for (auto it = track.events.rbegin(); it != track.events.rend(); ++it) {
        CMmt8Event& event = **it;
        if (event.GetTypeCode() == kNoteEventType && event.channel == channel &&
            event.data1 == note)
            return static_cast<CMmt8NoteEvent*>(&event);
    }
    return nullptr;
}

bool CopyEventsInWindow(CMmt8Track& target, const CMmt8Track& source, std::uint32_t start,
                        std::uint32_t end)
{
    // Source and target may be one track (a part copied onto itself).
    CMmt8Track copied;
    copied.channel = source.channel;
    for (const auto& event : source.events) {
        if (event->time < start || event->time >= end)
            continue;
        auto copy = CloneEvent(*event);
        if (!copy)
            continue;
        copy->time = static_cast<std::uint16_t>(event->time - start);
        if (copied.events.empty())
            copy->timed = 1;
        copied.events.push_back(std::move(copy));
    }
    const bool received = !copied.events.empty();
    target = std::move(copied);
    return received;
}

void AppendEvent(CMmt8Track& track, std::unique_ptr<CMmt8Event> event)
{
    if (event)
        track.events.push_back(std::move(event));
}

bool ShiftTrackTimes(CMmt8Track& track, std::int32_t delta)
{
    if (delta == 0 || track.events.empty())
        return true;
    bool shiftedAny = false;
    for (auto& event : track.events) {
        const std::int64_t moved = std::int64_t{event->time} + delta;
        if (moved < 0 || moved > 0xFFFF) {
            if (shiftedAny)
                event->timed = 1;
            return false;
        }
        event->time = static_cast<std::uint16_t>(moved);
        shiftedAny = true;
    }
    return true;
}

} // namespace tarvix
