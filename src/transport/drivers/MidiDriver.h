#pragma once

// The operating system's MIDI service as the ports see it. The operations,
// result codes and callback contract are those of the multimedia MIDI
// service the program was first written for, so a WinMM backend is a direct
// mapping and every other backend (ALSA, JACK, Loopback) imitates it.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace tarvix {

enum class MidiDirection { Input, Output };

// Result codes; 0 is success. The numbers are the multimedia service's.
using MidiResult = std::uint32_t;
inline constexpr MidiResult kMidiNoError = 0;
inline constexpr MidiResult kMidiError = 1;       // unspecified failure
inline constexpr MidiResult kMidiBadDeviceId = 2; // no such port (also: a stored name not found)
inline constexpr MidiResult kMidiAllocated = 4;   // the port is in use
inline constexpr MidiResult kMidiInvalidHandle = 5;
inline constexpr MidiResult kMidiNoDriver = 6; // the MIDI system is not there
inline constexpr MidiResult kMidiNoMemory = 7;
inline constexpr MidiResult kMidiInvalidParameter = 11;
inline constexpr MidiResult kMidiUnprepared = 64;   // header not prepared
inline constexpr MidiResult kMidiStillPlaying = 65; // buffer still with the driver
inline constexpr MidiResult kMidiNotReady = 67;

// Flags the driver keeps in a header.
inline constexpr std::uint32_t kMidiHeaderDone = 0x1;
inline constexpr std::uint32_t kMidiHeaderPrepared = 0x2;
inline constexpr std::uint32_t kMidiHeaderInQueue = 0x4;
// Output: the buffer came back without all its bytes sent, because the
// port failed (its server stopped, it went away, a write failed);
// bytesRecorded says how many of them were handed over.
inline constexpr std::uint32_t kMidiHeaderFailed = 0x100;

// One buffer as it is handed to the driver.
struct MidiHeader {
    std::uint8_t* data = nullptr;
    std::uint32_t bufferLength = 0;  // output: bytes to send; input: room
    std::uint32_t bytesRecorded = 0; // input: bytes the driver filled in
    std::uintptr_t user = 0;         // the program's own word
    std::uint32_t flags = 0;         // the driver's kMidiHeader* flags
};

// An open port; only the driver that opened it looks inside.
struct MidiPortHandle;
using MidiHandle = MidiPortHandle*;

enum class MidiCallbackMessage {
    Open,       // the port is open; handle is the new handle
    Close,      // the port is closed
    LongData,   // input: a buffer comes back (full, or flushed by Reset)
    LongError,  // input: a buffer came back damaged; it is not returned
    BufferDone, // output: a buffer has gone out (or was returned by Reset)
};

// Called on the driver's own thread (or, for Open and Close, possibly
// within the call that caused them). It must not block.
using MidiCallback = void (*)(MidiHandle handle, MidiCallbackMessage message, void* instance,
                              MidiHeader* header);

// A MIDI service: the ports of one direction numbered 0..count-1.
// Contract, as the ports rely on it:
// - Open delivers Open through the callback before or soon after it returns;
//   Close delivers Close. Close fails with kMidiStillPlaying while the driver
//   holds buffers of the port: Reset first.
// - Input: buffers given with AddBuffer are filled, after Start, with whole
//   incoming SysEx bytes in arrival order and returned by LongData, one at a
//   time; a buffer is returned when full or when a SysEx message ends in it.
//   A new F0 always starts a new buffer, so a buffer holds at most one F0,
//   at its start. Bytes outside F0..F7 (short messages, real-time bytes) are
//   dropped; a status byte cuts a SysEx short. Reset returns every buffer
//   still held, each by LongData (bytes so far), and stops input until the
//   next Start. The backends here never send LongError.
// - Output: LongMsg sends the header's bytes as they are and returns the
//   buffer by BufferDone when they are gone; Reset returns every buffer
//   still held, by BufferDone, without sending what was not sent yet. A
//   port that can no longer send returns every buffer it holds, and each
//   one given to it later, marked kMidiHeaderFailed; GetPortFailure says
//   why. A buffer is never returned as sent when its bytes were not handed
//   over.
// - Prepare must precede AddBuffer/LongMsg; Unprepare fails with
//   kMidiStillPlaying while the driver holds the buffer.
// - Callbacks of one driver never run concurrently and arrive in the order
//   the driver produced them.
class IMidiDriver {
public:
    virtual ~IMidiDriver();

    // "ALSA", "JACK", "Loopback", ...
    virtual std::string GetName() const = 0;
    virtual std::uint32_t GetNumDevs(MidiDirection direction) = 0;
    virtual MidiResult GetDevName(MidiDirection direction, std::uint32_t index,
                                  std::string& name) = 0;
    virtual MidiResult Open(MidiDirection direction, std::uint32_t index, MidiCallback callback,
                            void* instance, MidiHandle& handle) = 0;
    virtual MidiResult Close(MidiHandle handle) = 0;
    virtual MidiResult Reset(MidiHandle handle) = 0;
    virtual MidiResult PrepareHeader(MidiHandle handle, MidiHeader& header) = 0;
    virtual MidiResult UnprepareHeader(MidiHandle handle, MidiHeader& header) = 0;
    // Input only.
    virtual MidiResult AddBuffer(MidiHandle handle, MidiHeader& header) = 0;
    virtual MidiResult Start(MidiHandle handle) = 0;
    // Output only.
    virtual MidiResult LongMsg(MidiHandle handle, MidiHeader& header) = 0;
    // The service's text for a code, one line.
    virtual std::string GetErrorText(MidiResult result) const = 0;
    // Why the service lists no ports (no sequencer, no server), or empty.
    virtual std::string GetUnavailableReason() const { return {}; }
    // True for a port with no cable behind it anywhere (in-process ports),
    // which the output port may feed faster than a cable carries; see
    // CMidiOut for the rule.
    virtual bool IsSoftwareOnly(MidiHandle /*handle*/) { return false; }
    // Input: SysEx bytes that arrived for the port and were dropped on the
    // way (full rings or pools, a message cut by a status byte), since it
    // was opened.
    virtual std::uint64_t GetLostInputBytes(MidiHandle /*handle*/) { return 0; }
    // Output: why the port failed (one sentence), or empty while it works.
    virtual std::string GetPortFailure(MidiHandle /*handle*/) { return {}; }
};

} // namespace tarvix
