#include "model/TrackListing.h"

#include "model/Mmt8Event.h"
#include "model/Mmt8Track.h"
#include "vocabulary/MidiVocabulary.h"

namespace tarvix {

// Events sharing a time position show the time once, on the first of them.
void CMmt8Event::ListTime(CTextBuilder& text) const
{
    if (timed)
        text.AppendFormat("%04X ", unsigned{time});
    else
        text.Append("     ");
}

void CMmt8NoteEvent::List(CTextBuilder& text) const
{
    ListTime(text);
    text.AppendFormat("%02X NOTE %02X %02X %04X  %s\n", unsigned{channel}, unsigned{data1},
                      unsigned{data2}, unsigned{duration}, GetNoteName(data1));
}

void CMmt8ControlEvent::List(CTextBuilder& text) const
{
    ListTime(text);
    text.AppendFormat("%02X CTRL %02X %02X       %s\n", unsigned{channel}, unsigned{data1},
                      unsigned{data2}, GetControllerName(data1));
}

void CMmt8ProgramEvent::List(CTextBuilder& text) const
{
    ListTime(text);
    text.AppendFormat("%02X PROG %02X          %s\n", unsigned{channel}, unsigned{data1},
                      GetProgramName(data1));
}

void CMmt8AftertouchEvent::List(CTextBuilder& text) const
{
    ListTime(text);
    text.AppendFormat("%02X ATCH %02X\n", unsigned{channel}, unsigned{data1});
}

// The decimal is the stored MSB x 256 + LSB less the centre, so one step of
// the MSB prints as 256: the listing shows the bytes, not a 14-bit bend.
void CMmt8PitchBendEvent::List(CTextBuilder& text) const
{
    ListTime(text);
    text.AppendFormat("%02X PTCH %04X %d\n", unsigned{channel}, unsigned{value},
                      static_cast<int>(value) - 0x4000);
}

void CMmt8SysexEvent::List(CTextBuilder& text) const
{
    ListTime(text);
    text.AppendFormat("   SYSX %02X %02X %02X\n", unsigned{channel}, unsigned{data1},
                      unsigned{data2});
}

std::string ListTrack(const CMmt8Track& track, LineEnds lineEnds)
{
    CTextBuilder text(lineEnds);
    text.Append("Time Ch Type Data\n----------------------------\n");
    for (const auto& event : track.events)
        event->List(text);
    return text.TakeText();
}

std::string ListEventLine(const CMmt8Event& event)
{
    CTextBuilder text(LineEnds::Lf);
    event.List(text);
    std::string line = text.TakeText();
    // An untimed line starts with five spaces where the time would be.
    if (!event.timed && line.size() >= 4)
        line.replace(0, 4, FormatText("%04X", unsigned{event.time}));
    while (!line.empty() && line.back() == '\n')
        line.pop_back();
    return line;
}

} // namespace tarvix
