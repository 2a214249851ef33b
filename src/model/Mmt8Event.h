#pragma once

#include <cstdint>
#include <memory>

namespace tarvix {

class CByteBuffer;
class CTextBuilder;

// Kind codes. In the device encoding they are the low 7 bits of a lead byte
// whose body is not a note; 0-121 there mean a control change of that
// controller, which is why a control change reports its own code 121.
enum Mmt8EventType : unsigned {
    kNoteEventType = 0,
    kControlEventType = 121,
    kProgramEventType = 122,
    kAftertouchEventType = 123,
    kPitchBendEventType = 124,
    kSysexEventType = 125,
};

// A SysEx slot the message does not fill.
inline constexpr std::uint8_t kSysexFiller = 0x80;

// One event of a device track. Times are absolute clocks from the start of
// the part; `timed` says the event starts a new time position (the device
// stores the time only then, and later events at that time take it over).
class CMmt8Event {
public:
    virtual ~CMmt8Event() = default;
    // Appends the device bytes: lead, time when timed, four body bytes.
    virtual void Encode(CByteBuffer& out) const = 0;
    // Appends the listing line, time column first.
    virtual void List(CTextBuilder& text) const = 0;
    virtual void ListTime(CTextBuilder& text) const;
    virtual unsigned GetTypeCode() const = 0;

    std::uint16_t time = 0;
    std::uint32_t timed = 0;
    std::uint8_t channel = 0; // SysEx: first data byte
    std::uint8_t data1 = 0;   // note, controller, program, pressure; SysEx: second byte
    std::uint8_t data2 = 0;   // velocity, controller value; SysEx: third byte

protected:
    CMmt8Event() = default;
    CMmt8Event(const CMmt8Event&) = default;
    CMmt8Event& operator=(const CMmt8Event&) = default;
    // Lead byte and, when timed, the time; every kind starts its bytes so.
    void EncodeLead(CByteBuffer& out, std::uint8_t code) const;
};

class CMmt8NoteEvent final : public CMmt8Event {
public:
    void Encode(CByteBuffer& out) const override;
    void List(CTextBuilder& text) const override;
    unsigned GetTypeCode() const override { return kNoteEventType; }

    std::uint16_t duration = 0;
};

class CMmt8ControlEvent final : public CMmt8Event {
public:
    void Encode(CByteBuffer& out) const override;
    void List(CTextBuilder& text) const override;
    unsigned GetTypeCode() const override { return kControlEventType; }
};

class CMmt8ProgramEvent final : public CMmt8Event {
public:
    void Encode(CByteBuffer& out) const override;
    void List(CTextBuilder& text) const override;
    unsigned GetTypeCode() const override { return kProgramEventType; }
};

class CMmt8AftertouchEvent final : public CMmt8Event {
public:
    void Encode(CByteBuffer& out) const override;
    void List(CTextBuilder& text) const override;
    unsigned GetTypeCode() const override { return kAftertouchEventType; }
};

class CMmt8PitchBendEvent final : public CMmt8Event {
public:
    void Encode(CByteBuffer& out) const override;
    void List(CTextBuilder& text) const override;
    unsigned GetTypeCode() const override { return kPitchBendEventType; }

    // The two MIDI data bytes side by side (MSB high, LSB low); centre 0x4000.
    std::uint16_t value = 0x4000;
};

class CMmt8SysexEvent final : public CMmt8Event {
public:
    void Encode(CByteBuffer& out) const override;
    void List(CTextBuilder& text) const override;
    unsigned GetTypeCode() const override { return kSysexEventType; }
};

// A new event of the same kind with every field equal; none for an unknown kind.
std::unique_ptr<CMmt8Event> CloneEvent(const CMmt8Event& event);

} // namespace tarvix
