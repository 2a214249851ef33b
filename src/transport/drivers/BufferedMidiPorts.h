#pragma once

#include "transport/drivers/MidiCallbackQueue.h"
#include "transport/drivers/MidiPortHandle.h"
#include "transport/drivers/SysexInputQueue.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace tarvix {

// An open port with the buffers the driver holds for it. Backends derive
// to add what their system needs.
struct BufferedMidiPort : MidiPortHandle {
    using MidiPortHandle::MidiPortHandle;

    bool HoldsBuffers() const { return m_input.HoldsBuffers() || !m_output.empty(); }

    CSysexInputQueue m_input;         // input ports
    std::deque<MidiHeader*> m_output; // output ports: to send, the front one in progress
    std::size_t m_outputOffset = 0;   // bytes of the front one already sent
    std::string m_failure;            // output: why the port can no longer send
    std::uint64_t m_lostInput = 0;    // input: bytes the backend dropped before the queue
};

// The open ports of one driver and everything the contract in MidiDriver.h
// says about their buffers, so that each backend only moves bytes. One lock
// guards the table, the ports and whatever the backend keeps beside them.
// The operations named like the driver's take the lock and deliver the
// callbacks themselves; the others expect the lock held and only post.
class CBufferedMidiPorts {
public:
    std::mutex& GetMutex() const { return m_mutex; }

    MidiResult PrepareHeader(MidiHandle handle, MidiHeader& header);
    MidiResult UnprepareHeader(MidiHandle handle, MidiHeader& header);
    MidiResult AddBuffer(MidiHandle handle, MidiHeader& header);
    MidiResult Start(MidiHandle handle);
    // Input: every buffer comes back by LongData and input stops; output:
    // every buffer comes back by BufferDone, the rest unsent. alsoLocked
    // runs under the same lock, for what the backend must drop with them.
    MidiResult Reset(MidiHandle handle,
                     const std::function<void(BufferedMidiPort&)>& alsoLocked = {});
    // LongMsg without the sending: the header joins the port's output.
    MidiResult QueueOutput(MidiHandle handle, MidiHeader& header);
    void Deliver();

    // With the lock held.
    BufferedMidiPort* Find(MidiHandle handle) const;
    BufferedMidiPort* Find(MidiHandle handle, MidiDirection direction) const;
    const std::vector<std::unique_ptr<BufferedMidiPort>>& GetPorts() const { return m_ports; }
    void Insert(std::unique_ptr<BufferedMidiPort> port); // posts Open
    // Posts Close; the caller has checked HoldsBuffers.
    std::unique_ptr<BufferedMidiPort> Erase(const BufferedMidiPort& port);
    // Bytes that arrived for an input port.
    void Receive(BufferedMidiPort& port, const std::uint8_t* data, std::size_t size);
    // What the output port still has to send of its front buffer (0: nothing).
    static std::size_t PeekOutput(const BufferedMidiPort& port, const std::uint8_t*& data);
    // count bytes of the front buffer went out; a finished buffer is returned.
    void Sent(BufferedMidiPort& port, std::size_t count);
    // The output port can no longer send: every buffer comes back marked
    // failed, and so will every later one.
    void Fail(BufferedMidiPort& port, const std::string& reason);
    void Post(std::function<void()> call) { m_calls.Post(std::move(call)); }

private:
    mutable std::mutex m_mutex;
    CMidiCallbackQueue m_calls;
    std::vector<std::unique_ptr<BufferedMidiPort>> m_ports;
};

} // namespace tarvix
