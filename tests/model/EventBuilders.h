#pragma once

#include "io/ByteBuffer.h"
#include "model/Mmt8Event.h"
#include "model/Mmt8Track.h"
#include "support/Bytes.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

// Short builders for hand-made events and tracks, and field-for-field
// comparisons, shared by the model's tests.
namespace tarvix::test {

using testing::Bytes;
using testing::Concat;

inline Bytes ToBytes(const CByteBuffer& buffer)
{
    const auto view = buffer.View();
    return Bytes(view.begin(), view.end());
}

inline Bytes Encoded(const CMmt8Event& event)
{
    CByteBuffer out;
    event.Encode(out);
    return ToBytes(out);
}

// Every builder makes a timed event; Untimed() takes the mark away.
template <typename Event>
std::unique_ptr<Event> Make(std::uint16_t time, std::uint8_t channel, std::uint8_t data1,
                            std::uint8_t data2 = 0)
{
    auto event = std::make_unique<Event>();
    event->time = time;
    event->timed = 1;
    event->channel = channel;
    event->data1 = data1;
    event->data2 = data2;
    return event;
}

inline std::unique_ptr<CMmt8NoteEvent> Note(std::uint16_t time, std::uint8_t note,
                                            std::uint16_t duration, std::uint8_t channel = 0,
                                            std::uint8_t velocity = 100)
{
    auto event = Make<CMmt8NoteEvent>(time, channel, note, velocity);
    event->duration = duration;
    return event;
}

inline std::unique_ptr<CMmt8PitchBendEvent> Bend(std::uint16_t time, std::uint16_t value,
                                                 std::uint8_t channel = 0)
{
    auto event = Make<CMmt8PitchBendEvent>(time, channel, 0);
    event->value = value;
    return event;
}

template <typename Event> std::unique_ptr<Event> Untimed(std::unique_ptr<Event> event)
{
    event->timed = 0;
    return event;
}

template <typename... Events>
CMmt8Track TrackOf(std::uint8_t channel, std::unique_ptr<Events>... events)
{
    CMmt8Track track;
    track.channel = channel;
    (track.events.push_back(std::move(events)), ...);
    return track;
}

// All six kinds, timed and untimed, the way a decoded track holds them.
inline CMmt8Track TrackOfEveryKind()
{
    return TrackOf(9, Note(0, 60, 96, 3, 0x64), Untimed(Make<CMmt8ControlEvent>(0, 3, 7, 0x64)),
                   Make<CMmt8ProgramEvent>(0x30, 3, 0x15),
                   Make<CMmt8AftertouchEvent>(0x60, 15, 0x40), Untimed(Bend(0x60, 0x2000, 1)),
                   Make<CMmt8SysexEvent>(0x1234, 0x43, 0x10, 0x7F),
                   Untimed(Make<CMmt8SysexEvent>(0x1234, 0x01, kSysexFiller, kSysexFiller)));
}

inline std::string Fields(const CMmt8Event& event)
{
    std::ostringstream out;
    out << "kind " << event.GetTypeCode() << " time " << event.time << " timed " << event.timed
        << " channel " << +event.channel << " data " << +event.data1 << " " << +event.data2;
    if (const auto* note = dynamic_cast<const CMmt8NoteEvent*>(&event))
        out << " duration " << note->duration;
    if (const auto* bend = dynamic_cast<const CMmt8PitchBendEvent*>(&event))
        out << " value " << bend->value;
    return out.str();
}

inline ::testing::AssertionResult SameEvent(const CMmt8Event& a, const CMmt8Event& b)
{
    if (Fields(a) == Fields(b))
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << Fields(a) << " against " << Fields(b);
}

inline ::testing::AssertionResult SameTrack(const CMmt8Track& a, const CMmt8Track& b)
{
    if (a.channel != b.channel)
        return ::testing::AssertionFailure() << "channels differ";
    if (a.events.size() != b.events.size())
        return ::testing::AssertionFailure()
               << a.events.size() << " events against " << b.events.size();
    for (std::size_t i = 0; i < a.events.size(); ++i)
        if (auto same = SameEvent(*a.events[i], *b.events[i]); !same)
            return same << " (event " << i << ")";
    return ::testing::AssertionSuccess();
}

} // namespace tarvix::test
