#include "midifile/MidiEvent.h"

#include "midifile/MidiFileStream.h"
#include "midifile/VarLen.h"
#include "vocabulary/MidiVocabulary.h"

namespace tarvix {

namespace {

constexpr std::uint8_t kMetaStatus = 0xFF;

// The length field and the data of a SysEx or meta event. A declared length
// longer than the bytes left fails before anything is allocated for it, and
// takes the bytes that are left, as a short read of them would.
bool ReadLengthAndData(CMidiFileStream& stream, std::vector<std::uint8_t>& data,
                       std::uint32_t& consumed)
{
    std::uint32_t length = 0;
    consumed += ReadVarLen(stream, length);
    if (length == kVarLenFailed)
        return false;
    data.clear();
    if (length == 0)
        return true;
    if (length > stream.GetRemaining()) {
        consumed += stream.Skip(length);
        return false;
    }
    data.resize(length);
    consumed += stream.Read(data.data(), length);
    return true;
}

void WriteLengthAndData(CMidiFileStream& stream, const std::vector<std::uint8_t>& data)
{
    WriteVarLen(stream, static_cast<std::uint32_t>(data.size()));
    stream.Write(data.data(), static_cast<std::uint32_t>(data.size()));
}

} // namespace

CMidiChannelEvent::CMidiChannelEvent(std::uint32_t deltaTime, std::uint8_t status)
    : CMidiEvent(kChannel, deltaTime, status), m_dataCount(GetDataCount(status))
{
}

std::uint32_t CMidiChannelEvent::GetDataCount(std::uint8_t status)
{
    static constexpr std::uint8_t kCounts[8] = {2, 2, 2, 2, 1, 1, 2, 0};
    return kCounts[(status >> 4) & 7];
}

bool CMidiChannelEvent::Read(CMidiFileStream& stream, std::uint32_t& consumed)
{
    const std::uint32_t read = stream.Read(m_data, m_dataCount);
    consumed += read;
    return read == m_dataCount;
}

void CMidiChannelEvent::Write(CMidiFileStream& stream, const CMidiEvent* previous) const
{
    WriteVarLen(stream, GetDeltaTime());
    WriteMessage(stream, previous);
}

void CMidiChannelEvent::WriteRaw(CMidiFileStream& stream, const CMidiEvent* previous) const
{
    WriteMessage(stream, previous);
}

// Running status: only an event of the very same status byte lets this one
// leave its status out, so a meta or SysEx event in between always ends it.
void CMidiChannelEvent::WriteMessage(CMidiFileStream& stream, const CMidiEvent* previous) const
{
    if (previous == nullptr || previous->GetStatus() != GetStatus())
        stream.WriteByte(GetStatus());
    stream.Write(m_data, m_dataCount);
}

const char* CMidiChannelEvent::GetTypeName() const
{
    return GetChannelMessageName(GetStatus());
}

CMidiSysexEvent::CMidiSysexEvent(std::uint32_t deltaTime, std::uint8_t status)
    : CMidiEvent(kSysex, deltaTime, status)
{
}

bool CMidiSysexEvent::Read(CMidiFileStream& stream, std::uint32_t& consumed)
{
    return ReadLengthAndData(stream, m_data, consumed);
}

void CMidiSysexEvent::Write(CMidiFileStream& stream, const CMidiEvent* /*previous*/) const
{
    WriteVarLen(stream, GetDeltaTime());
    stream.WriteByte(GetStatus());
    WriteLengthAndData(stream, m_data);
}

void CMidiSysexEvent::WriteRaw(CMidiFileStream& stream, const CMidiEvent* /*previous*/) const
{
    if (m_data.empty())
        return;
    stream.WriteByte(GetStatus());
    stream.Write(m_data.data(), static_cast<std::uint32_t>(m_data.size()));
}

CMidiMetaEvent::CMidiMetaEvent(std::uint32_t deltaTime, std::uint8_t status)
    : CMidiEvent(kMeta, deltaTime, status)
{
}

bool CMidiMetaEvent::Read(CMidiFileStream& stream, std::uint32_t& consumed)
{
    if (!stream.ReadByte(m_type))
        return false;
    ++consumed;
    return ReadLengthAndData(stream, m_data, consumed);
}

void CMidiMetaEvent::Write(CMidiFileStream& stream, const CMidiEvent* /*previous*/) const
{
    WriteVarLen(stream, GetDeltaTime());
    stream.WriteByte(kMetaStatus);
    stream.WriteByte(m_type);
    WriteLengthAndData(stream, m_data);
}

void CMidiMetaEvent::WriteRaw(CMidiFileStream& stream, const CMidiEvent* /*previous*/) const
{
    stream.WriteByte(kMetaStatus);
    stream.WriteByte(m_type);
    stream.Write(m_data.data(), static_cast<std::uint32_t>(m_data.size()));
}

std::unique_ptr<CMidiEvent> CreateMidiEvent(std::uint32_t deltaTime, std::uint8_t status)
{
    if (status == kMetaStatus)
        return std::make_unique<CMidiMetaEvent>(deltaTime, status);
    if (status >= 0xF0)
        return std::make_unique<CMidiSysexEvent>(deltaTime, status);
    if (status >= 0x80)
        return std::make_unique<CMidiChannelEvent>(deltaTime, status);
    return nullptr;
}

std::unique_ptr<CMidiEvent> CloneMidiEvent(const CMidiEvent& event)
{
    switch (event.GetKind()) {
    case CMidiEvent::kChannel:
        return std::make_unique<CMidiChannelEvent>(static_cast<const CMidiChannelEvent&>(event));
    case CMidiEvent::kSysex:
        return std::make_unique<CMidiSysexEvent>(static_cast<const CMidiSysexEvent&>(event));
    case CMidiEvent::kMeta:
        return std::make_unique<CMidiMetaEvent>(static_cast<const CMidiMetaEvent&>(event));
    default: return nullptr;
    }
}

} // namespace tarvix
