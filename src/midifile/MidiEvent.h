#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace tarvix {

class CMidiDumpSink;
class CMidiFileStream;

// One event of a track with its delta time: ticks since the previous event
// of the same track.
class CMidiEvent {
public:
    static constexpr std::uint32_t kChannel = 1;
    static constexpr std::uint32_t kSysex = 2;
    static constexpr std::uint32_t kMeta = 3;

    CMidiEvent& operator=(const CMidiEvent&) = delete;
    virtual ~CMidiEvent() = default;
    // Reads the body that follows the status byte; consumed counts its bytes,
    // also when it fails.
    virtual bool Read(CMidiFileStream& stream, std::uint32_t& consumed) = 0;
    // Delta time, status (unless running status applies) and body. previous
    // is the event before this one in the track, or null.
    virtual void Write(CMidiFileStream& stream, const CMidiEvent* previous) const = 0;
    // The bare MIDI message, without delta time or length fields.
    virtual void WriteRaw(CMidiFileStream& stream, const CMidiEvent* previous) const = 0;
    virtual void Dump(CMidiDumpSink& sink) const = 0;
    virtual const char* GetTypeName() const = 0;

    std::uint32_t GetKind() const { return m_kind; }
    std::uint32_t GetDeltaTime() const { return m_deltaTime; }
    void SetDeltaTime(std::uint32_t deltaTime) { m_deltaTime = deltaTime; }
    std::uint8_t GetStatus() const { return m_status; }

protected:
    CMidiEvent(std::uint32_t kind, std::uint32_t deltaTime, std::uint8_t status)
        : m_kind(kind), m_deltaTime(deltaTime), m_status(status)
    {
    }
    CMidiEvent(const CMidiEvent&) = default;

private:
    std::uint32_t m_kind;
    std::uint32_t m_deltaTime;
    std::uint8_t m_status;
};

// A channel message, 0x80-0xEF. The channel is the status byte's low nibble.
class CMidiChannelEvent final : public CMidiEvent {
public:
    // The message kinds: the status byte's high nibble.
    enum Kind : std::uint8_t {
        kNoteOff = 0x80,
        kNoteOn = 0x90,
        kPolyAftertouch = 0xA0,
        kControlChange = 0xB0,
        kProgramChange = 0xC0,
        kChannelAftertouch = 0xD0,
        kPitchBend = 0xE0,
    };

    CMidiChannelEvent(std::uint32_t deltaTime, std::uint8_t status);
    CMidiChannelEvent(const CMidiChannelEvent&) = default;

    bool Read(CMidiFileStream& stream, std::uint32_t& consumed) override;
    void Write(CMidiFileStream& stream, const CMidiEvent* previous) const override;
    void WriteRaw(CMidiFileStream& stream, const CMidiEvent* previous) const override;
    void Dump(CMidiDumpSink& sink) const override;
    const char* GetTypeName() const override;

    // 2, 1 or 0 data bytes by bits 4-6 of the status byte; 0 for 0xFn.
    static std::uint32_t GetDataCount(std::uint8_t status);

    std::uint32_t GetDataCount() const { return m_dataCount; }
    std::uint8_t GetData1() const { return m_data[0]; }
    std::uint8_t GetData2() const { return m_data[1]; }
    void SetData(std::uint8_t data1, std::uint8_t data2 = 0)
    {
        m_data[0] = data1;
        m_data[1] = data2;
    }
    std::uint8_t GetChannel() const { return GetStatus() & 0x0F; }

private:
    void WriteMessage(CMidiFileStream& stream, const CMidiEvent* previous) const;

    std::uint8_t m_data[2] = {0, 0};
    std::uint32_t m_dataCount;
};

// A SysEx message. The status byte (0xF0, 0xF7, or any 0xF1-0xFE met in a
// file) is kept apart; the data are the bytes after the length field, so an
// ordinary message's data start with the manufacturer id.
class CMidiSysexEvent final : public CMidiEvent {
public:
    CMidiSysexEvent(std::uint32_t deltaTime, std::uint8_t status);
    CMidiSysexEvent(const CMidiSysexEvent&) = default;

    bool Read(CMidiFileStream& stream, std::uint32_t& consumed) override;
    void Write(CMidiFileStream& stream, const CMidiEvent* previous) const override;
    void WriteRaw(CMidiFileStream& stream, const CMidiEvent* previous) const override;
    void Dump(CMidiDumpSink& sink) const override;
    const char* GetTypeName() const override { return "Sysex"; }

    // Empty when the event has no data.
    std::span<const std::uint8_t> GetData() const { return m_data; }
    void SetData(std::span<const std::uint8_t> data) { m_data.assign(data.begin(), data.end()); }

private:
    std::vector<std::uint8_t> m_data;
};

// A meta event, status 0xFF; made with its status, its type set afterwards.
class CMidiMetaEvent final : public CMidiEvent {
public:
    static constexpr std::uint8_t kTypeText = 0x01;
    static constexpr std::uint8_t kTypeTrackName = 0x03;
    static constexpr std::uint8_t kTypeMarker = 0x06;
    static constexpr std::uint8_t kTypeChannelPrefix = 0x20;
    static constexpr std::uint8_t kTypeEndOfTrack = 0x2F;
    static constexpr std::uint8_t kTypeTempo = 0x51;
    static constexpr std::uint8_t kTypeTimeSignature = 0x58;

    CMidiMetaEvent(std::uint32_t deltaTime, std::uint8_t status);
    CMidiMetaEvent(const CMidiMetaEvent&) = default;

    bool Read(CMidiFileStream& stream, std::uint32_t& consumed) override;
    void Write(CMidiFileStream& stream, const CMidiEvent* previous) const override;
    void WriteRaw(CMidiFileStream& stream, const CMidiEvent* previous) const override;
    void Dump(CMidiDumpSink& sink) const override;
    const char* GetTypeName() const override { return "Meta"; }

    std::uint8_t GetType() const { return m_type; }
    void SetType(std::uint8_t type) { m_type = type; }
    // Empty when the event has no data.
    std::span<const std::uint8_t> GetData() const { return m_data; }
    void SetData(std::span<const std::uint8_t> data) { m_data.assign(data.begin(), data.end()); }

private:
    std::uint8_t m_type = 0;
    std::vector<std::uint8_t> m_data;
};

// The event class for a status byte: meta for 0xFF, SysEx for 0xF0-0xFE,
// channel for 0x80-0xEF; none for a data byte.
std::unique_ptr<CMidiEvent> CreateMidiEvent(std::uint32_t deltaTime, std::uint8_t status);

// A deep copy of a channel, SysEx or meta event; none for any other kind.
std::unique_ptr<CMidiEvent> CloneMidiEvent(const CMidiEvent& event);

} // namespace tarvix
