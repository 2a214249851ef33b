#include "model/Mmt8Event.h"

#include "io/ByteBuffer.h"

namespace tarvix {

namespace {
constexpr std::uint8_t kTimedBit = 0x80;
constexpr std::uint8_t kNotNoteBit = 0x80; // set in body 0 of every kind but notes

void EncodeBody(CByteBuffer& out, std::uint8_t b0, std::uint8_t b1, std::uint8_t b2,
                std::uint8_t b3)
{
    const std::uint8_t body[4] = {b0, b1, b2, b3};
    out.Append(body, sizeof body);
}

std::uint8_t Low(unsigned value)
{
    return static_cast<std::uint8_t>(value & 0xFF);
}
std::uint8_t High(unsigned value)
{
    return static_cast<std::uint8_t>((value >> 8) & 0xFF);
}

template <typename Event> std::unique_ptr<CMmt8Event> CloneAs(const CMmt8Event& event)
{
    return std::make_unique<Event>(static_cast<const Event&>(event));
}
} // namespace

void CMmt8Event::EncodeLead(CByteBuffer& out, std::uint8_t code) const
{
    if (timed) {
        const std::uint8_t lead[3] = {static_cast<std::uint8_t>(code | kTimedBit), Low(time),
                                      High(time)};
        out.Append(lead, sizeof lead);
    } else {
        out.AppendByte(static_cast<std::uint8_t>(code & 0x7F));
    }
}

// The duration is big-endian while times and the pitch-bend value are
// little-endian: the device's own mix, kept byte for byte.
void CMmt8NoteEvent::Encode(CByteBuffer& out) const
{
    EncodeLead(out, static_cast<std::uint8_t>(data1 & 0x7F));
    EncodeBody(out, data2 & 0x7F, channel & 0x0F, High(duration), Low(duration));
}

void CMmt8ControlEvent::Encode(CByteBuffer& out) const
{
    EncodeLead(out, static_cast<std::uint8_t>(data1 & 0x7F));
    EncodeBody(out, data2 | kNotNoteBit, channel & 0x0F, 0, 0);
}

void CMmt8ProgramEvent::Encode(CByteBuffer& out) const
{
    EncodeLead(out, kProgramEventType);
    EncodeBody(out, data1 | kNotNoteBit, channel & 0x0F, 0, 0);
}

void CMmt8AftertouchEvent::Encode(CByteBuffer& out) const
{
    EncodeLead(out, kAftertouchEventType);
    EncodeBody(out, data1 | kNotNoteBit, channel & 0x0F, 0, 0);
}

void CMmt8PitchBendEvent::Encode(CByteBuffer& out) const
{
    EncodeLead(out, kPitchBendEventType);
    EncodeBody(out, kNotNoteBit, channel & 0x0F, Low(value), High(value));
}

void CMmt8SysexEvent::Encode(CByteBuffer& out) const
{
    EncodeLead(out, kSysexEventType);
    EncodeBody(out, channel | kNotNoteBit, data1, 0, data2);
}

std::unique_ptr<CMmt8Event> CloneEvent(const CMmt8Event& event)
{
    switch (event.GetTypeCode()) {
    case kNoteEventType: return CloneAs<CMmt8NoteEvent>(event);
    case kControlEventType: return CloneAs<CMmt8ControlEvent>(event);
    case kProgramEventType: return CloneAs<CMmt8ProgramEvent>(event);
    case kAftertouchEventType: return CloneAs<CMmt8AftertouchEvent>(event);
    case kPitchBendEventType: return CloneAs<CMmt8PitchBendEvent>(event);
    case kSysexEventType: return CloneAs<CMmt8SysexEvent>(event);
    default: return nullptr;
    }
}

} // namespace tarvix
