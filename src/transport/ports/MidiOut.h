#pragma once

#include "transport/ports/AutoResetEvent.h"
#include "transport/ports/MidiDevice.h"

#include <atomic>
#include <cstdint>
#include <span>

namespace tarvix {

// The MIDI output port. Queued SysEx messages go out one at a time, cut
// into buffer-size pieces with the buffer delay after each piece and the
// SysEx delay after each complete message, all paced by the worker.
class CMidiOut : public CMidiDevice {
public:
    explicit CMidiOut(MidiDriver& driver);
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

protected:
    void ThreadProc() override;

private:
    static void Callback(MidiHandle handle, MidiCallbackMessage message, void* instance,
                         MidiHeader* header);
    void HandleCallback(MidiHandle handle, MidiCallbackMessage message, MidiHeader* header);
    void QueueMessage(std::span<const std::uint8_t> bytes);
    // Removes the first message once all of it has gone out; true when it
    // was a SysEx message, so that the SysEx pause follows.
    bool RemoveHandedOverMessage();
    bool SendNextChunk();
    CMidiBuffer* FindFreeBuffer();

    std::atomic<std::uint32_t> m_bufferDelay{10};
    std::atomic<std::uint32_t> m_sysexDelay{50};
    CAutoResetEvent m_sysexSent;
};

} // namespace tarvix
