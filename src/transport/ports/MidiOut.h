#pragma once

#include "transport/drivers/CablePacer.h"
#include "transport/ports/AutoResetEvent.h"
#include "transport/ports/MidiDevice.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <mutex>
#include <span>
#include <string>

namespace tarvix {

// The MIDI output port. Queued SysEx messages go out one at a time, cut
// into buffer-size pieces with the buffer delay after each piece and the
// SysEx delay after each complete message, all paced by the worker.
//
// Pacing. No driver can be trusted to hold back bytes a cable cannot carry
// yet: ALSA's sequencer hands them to a raw MIDI buffer of a few KB and
// drops what does not fit, JACK bridges drop whole events. So the worker
// hands the driver no more than the cable could have carried since the
// send began plus the pacer's lead (CCablePacer), whatever the buffer size;
// the two delays come on top. The rule for going faster: only a port whose
// driver says it is software only (IsSoftwareOnly: Loopback, in process)
// is not paced, unless the owner asks otherwise with SetPacing. A message
// is done, and the SysEx delay starts, once its last byte could have left
// the cable.
class CMidiOut : public CMidiDevice {
public:
    enum class Pacing {
        Auto,  // at cable speed unless the driver says the port is software only
        Cable, // always at cable speed
        None,  // as fast as the driver takes the buffers
    };

    // The clock is the pacer's; tests step it.
    explicit CMidiOut(IMidiDriver& driver, CCablePacer::Clock clock = {});
    ~CMidiOut() override;

    bool Open(std::uint32_t index) override;
    bool Close() override;
    // Returns every buffer and signals the SysEx-sent event.
    bool Reset() override;

    // As one message, or split into its F0..F7 messages. Splitting needs a
    // gap-free run of complete messages: a gap or trailing bytes fail, the
    // messages split off before them staying queued.
    bool QueueSysex(std::span<const std::uint8_t> bytes, bool asOneMessage);
    // Sizes and sent bytes of all queued messages; true while any is queued.
    bool GetQueueState(std::uint32_t& totalBytes, std::uint32_t& sentBytes,
                       std::uint32_t& messageCount) const;

    // In milliseconds; read by the worker before each pause.
    void SetBufferDelay(std::uint32_t delay) { m_bufferDelay = delay; }
    void SetSysexDelay(std::uint32_t delay) { m_sysexDelay = delay; }
    std::uint32_t GetBufferDelay() const { return m_bufferDelay; }
    std::uint32_t GetSysexDelay() const { return m_sysexDelay; }
    // Signalled after each complete message and its pause, and by Reset.
    CAutoResetEvent& GetSysexSentEvent() { return m_sysexSent; }

    // Takes effect at the next open; the lead is the pacer's (see
    // CCablePacer), and no piece handed over is larger.
    void SetPacing(Pacing pacing, std::size_t lead = CCablePacer::kDefaultLead,
                   std::chrono::nanoseconds catchUp = std::chrono::nanoseconds::zero())
    {
        m_pacing = pacing;
        m_lead = lead;
        m_catchUp = catchUp;
    }
    bool IsPaced() const { return m_paced; }

    // The port failed mid-send (server stopped, port gone, write failed):
    // the queue stays where it was and nothing more goes out until the
    // next Reset. The reason, as the driver words it.
    bool HasFailed() const { return m_failed; }
    std::string GetFailure();
    // Bytes the driver has taken from buffers since the queue was last
    // empty (only what it reports handed over, not what a failure lost).
    std::uint64_t GetHandedOverBytes() const { return m_handedOver; }

protected:
    void ThreadProc() override;

private:
    void HandleCallback(MidiHandle handle, MidiCallbackMessage message,
                        MidiHeader* header) override;
    void QueueMessage(std::span<const std::uint8_t> bytes);
    // Removes the first message once all of it has gone out; true when it
    // was a SysEx message, so that the SysEx pause follows.
    // Both may ask to be run again after a pause: wait is then set to at
    // most that long.
    bool RemoveHandedOverMessage(std::chrono::nanoseconds& wait);
    bool SendNextChunk(std::chrono::nanoseconds& wait);
    void WaitAtMost(std::chrono::nanoseconds& wait, CCablePacer::TimePoint until) const;
    CMidiBuffer* FindFreeBuffer();

    std::atomic<std::uint32_t> m_bufferDelay{10};
    std::atomic<std::uint32_t> m_sysexDelay{50};
    CAutoResetEvent m_sysexSent;
    Pacing m_pacing = Pacing::Auto;
    std::size_t m_lead = CCablePacer::kDefaultLead;
    std::chrono::nanoseconds m_catchUp{0};
    CCablePacer::Clock m_clock;
    std::atomic<bool> m_paced{false};
    CCablePacer m_pacer; // under the list lock
    std::atomic<bool> m_failed{false};
    std::atomic<std::uint64_t> m_handedOver{0};
};

} // namespace tarvix
