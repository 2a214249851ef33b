#pragma once

#include "transport/drivers/BufferedMidiDriver.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace tarvix {

class CLoopbackMidiDriver;
struct LoopbackPort;

// The far end of a Loopback port pair: what a cable would plug into. The
// program's input port of this name receives what is fed here; whatever
// the program sends through its output port of this name arrives here.
class LoopbackMidiDevice {
public:
    using Receiver = std::function<void(const std::uint8_t* data, std::size_t size)>;

    LoopbackMidiDevice(const LoopbackMidiDevice&) = delete;
    LoopbackMidiDevice& operator=(const LoopbackMidiDevice&) = delete;

    const std::string& GetName() const { return m_name; }

    // Bytes on the wire to the program, in any pieces and with any garbage;
    // see MidiDriver.h for what the program gets. Lost unless the input port
    // is open and started; kept (up to a limit) while no buffer is added.
    void Feed(const std::uint8_t* data, std::size_t size);
    void Feed(const std::vector<std::uint8_t>& bytes);

    // What the program sent, collected until taken. With a receiver set,
    // bytes go to it instead, buffer by buffer, on the sender's thread and
    // before that buffer's BufferDone; it may Feed, but must not call the
    // port that sent.
    std::vector<std::uint8_t> TakeReceived();
    void SetReceiver(Receiver receiver);

    // While held, sent buffers stay with the driver (as on a slow wire)
    // until released; Reset returns them unsent.
    void SetHoldOutput(bool hold);
    // Sends the oldest held buffers (all by default); returns how many.
    std::size_t ReleaseOutput(std::size_t count = SIZE_MAX);
    std::size_t GetHeldOutputCount() const;
    // The cable is pulled out of the program's output: what it holds and
    // all it is given later comes back failed, with this reason.
    void FailOutput(const std::string& reason);

    bool IsInputOpen() const;
    bool IsOutputOpen() const;
    // Fed SysEx bytes lost because the program added no buffer for too long.
    std::uint64_t GetLostBytes() const;

private:
    friend class CLoopbackMidiDriver;
    LoopbackMidiDevice(CLoopbackMidiDriver& driver, std::string name);

    CLoopbackMidiDriver& m_driver;
    std::string m_name;
    // The rest is guarded by the driver's lock.
    bool m_plugged = true;
    LoopbackPort* m_input = nullptr;
    LoopbackPort* m_output = nullptr;
    std::vector<std::uint8_t> m_received;
    Receiver m_receiver;
    bool m_holdOutput = false;
};

// In-process MIDI ports for tests and the simulated device. Every callback
// runs synchronously, on the thread whose call caused it (Open, Close,
// Reset, AddBuffer, LongMsg, Feed, ReleaseOutput), before that call
// returns -- unless another thread is delivering this driver's callbacks at
// that moment; that thread then delivers them right after its own, in
// order. So a single-threaded test sees every callback before the call it
// made returns.
class CLoopbackMidiDriver : public CBufferedMidiDriver {
public:
    // The name is what GetName gives, e.g. to tell two apart in a service.
    explicit CLoopbackMidiDriver(std::string name = "Loopback");
    ~CLoopbackMidiDriver() override;
    CLoopbackMidiDriver(const CLoopbackMidiDriver&) = delete;
    CLoopbackMidiDriver& operator=(const CLoopbackMidiDriver&) = delete;

    // Plugs in a device: an input and an output port called name, listed
    // after those already there. The reference lives as long as the driver.
    LoopbackMidiDevice& CreatePort(const std::string& name);
    // Unplugs it: its ports leave the list (open handles keep working).
    bool RemovePort(const std::string& name);
    // A plugged device by name, or null.
    LoopbackMidiDevice* FindPort(const std::string& name);
    // What GetUnavailableReason says, as a system that is down would.
    void SetUnavailableReason(const std::string& reason);

    std::string GetName() const override;
    std::uint32_t GetNumDevs(MidiDirection direction) override;
    MidiResult GetDevName(MidiDirection direction, std::uint32_t index, std::string& name) override;
    MidiResult Open(MidiDirection direction, std::uint32_t index, MidiCallback callback,
                    void* instance, MidiHandle& handle) override;
    // In-process: no cable, nothing to pace.
    bool IsSoftwareOnly(MidiHandle handle) override;

private:
    friend class LoopbackMidiDevice;

    void ClosePort(BufferedMidiPort& port) override;
    void OutputQueued(BufferedMidiPort& port) override;

    // All with the ports' lock held.
    LoopbackMidiDevice* PluggedDevice(std::uint32_t index) const;
    void SendFront(LoopbackPort& port);

    std::string m_name;
    std::vector<std::unique_ptr<LoopbackMidiDevice>> m_devices; // unplugged ones stay
};

} // namespace tarvix
