#pragma once

#include "transport/ports/AutoResetEvent.h"
#include "transport/ports/BufferQueue.h"
#include "transport/ports/MidiDevice.h"

#include <atomic>
#include <cstdint>
#include <mutex>

namespace tarvix {

// The MIDI input port. While started, the driver fills the port's buffers;
// the worker joins what comes back into complete SysEx messages and hands
// each buffer straight back to the driver.
class CMidiIn : public CMidiDevice {
public:
    explicit CMidiIn(IMidiDriver& driver);
    ~CMidiIn() override;

    bool Open(std::uint32_t index) override;
    bool Close() override;
    // Returns every buffer and signals the stop event.
    bool Reset() override;

    // Drops the messages received so far and starts receiving into all
    // free buffers. Always true: a port that fails to start shows up as
    // nothing arriving, the code stays in the last error.
    bool StartReceive();
    // Once it returns, what arrived before is in the message list.
    void Stop();

    bool IsStarted() const { return m_started; }
    // Long-data errors and ring overflows since the last start.
    std::uint32_t GetErrorCount() const { return m_errorCount; }
    // SysEx bytes that arrived since the last start but were dropped on
    // the way, by the driver or in the port's own ring.
    std::uint64_t GetLostBytes() const;
    CAutoResetEvent& GetStopEvent() { return m_stopEvent; }

protected:
    void ThreadProc() override;

private:
    void HandleCallback(MidiHandle handle, MidiCallbackMessage message,
                        MidiHeader* header) override;
    void CollectBytes(CMidiBuffer& buffer);
    // Hands a buffer to the driver; on failure it stays free.
    void GiveBack(CMidiBuffer& buffer);
    void CountLostBuffer(const MidiHeader* header);

    // Held while the worker gives a buffer back and while Stop clears the
    // started flag, so that no buffer reaches the driver after its reset.
    std::mutex m_startLock;
    std::atomic<bool> m_started{false};
    std::atomic<std::uint32_t> m_errorCount{0};
    // Buffers the driver damaged or the full ring dropped, until the next open.
    std::atomic<std::uint32_t> m_lostBuffers{0};
    std::atomic<std::uint64_t> m_lostBufferBytes{0};
    std::uint64_t m_driverLostAtStart = 0;
    CBufferQueue m_queue;
    CAutoResetEvent m_stopEvent;
};

} // namespace tarvix
