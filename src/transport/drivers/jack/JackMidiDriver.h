#pragma once

#include "transport/drivers/BufferedMidiDriver.h"

#include <semaphore.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <string>
#include <thread>
#include <vector>

struct _jack_client;

namespace tarvix {

class CJackRealtimePort;
struct JackPort;

// JACK MIDI: one JACK client for the program, one JACK MIDI port of its own
// per open handle ("in", "out", then "in-2", ...), connected to the chosen
// port of another client. Ports are listed by their JACK names
// ("system:midi_capture_1", "tarvix-device:out"). The server is never
// started by us: without one it lists no ports and GetUnavailableReason
// says why; it tries again at the next listing. Callbacks come from the
// driver's thread, or for Open, Close, Reset and AddBuffer from within
// that call.
//
// A cycle the server ran without our process callback (the client was late
// on an asynchronous server, which then re-reads or skips our ports) may
// have lost or repeated bytes: a send under way then fails, and a SysEx
// message coming in counts a lost byte. An xrun of the server alone fails
// only a send to a port of its own driver (a physical port, before a cable),
// whose bridge was seen to repeat bytes across one; elsewhere every client
// still ran each cycle and nothing was lost.
class CJackMidiDriver : public CBufferedMidiDriver {
public:
    static constexpr std::size_t kMaxOpenPorts = 32;

    // An empty serverName is libjack's default: $JACK_DEFAULT_SERVER, else
    // "default".
    explicit CJackMidiDriver(std::string clientName = "tarvix", std::string serverName = {});
    ~CJackMidiDriver() override;
    CJackMidiDriver(const CJackMidiDriver&) = delete;
    CJackMidiDriver& operator=(const CJackMidiDriver&) = delete;

    // A port of our own named portName that other clients connect to (the
    // simulated device's "tarvix-device:out"), instead of one connected to
    // a listed port; otherwise a handle like any other.
    MidiResult OpenVirtual(MidiDirection direction, const std::string& portName,
                           MidiCallback callback, void* instance, MidiHandle& handle);
    // Our client's name as JACK gave it ("tarvix", or "tarvix-01" when
    // taken), empty without a server.
    std::string GetClientName() const;

    std::string GetName() const override;
    std::uint32_t GetNumDevs(MidiDirection direction) override;
    MidiResult GetDevName(MidiDirection direction, std::uint32_t index, std::string& name) override;
    MidiResult Open(MidiDirection direction, std::uint32_t index, MidiCallback callback,
                    void* instance, MidiHandle& handle) override;

private:
    void ClosePort(BufferedMidiPort& port) override;
    void ResetPort(BufferedMidiPort& port) override;
    void OutputQueued(BufferedMidiPort& port) override;

    static int ProcessCallback(std::uint32_t frames, void* driver);
    static void ShutdownCallback(void* driver);
    static int XrunCallback(void* driver);
    // In the process callback: whether cycles ran without us since the last.
    bool NoteCycle(std::uint32_t frames);

    // All with the ports' lock held.
    bool OpenClient();
    const std::vector<std::string>& Listed(MidiDirection direction);
    MidiResult OpenPort(MidiDirection direction, const std::string& portName, bool exactName,
                        const std::string* remote, MidiCallback callback, void* instance,
                        MidiHandle& handle);
    void Unpublish(std::size_t slot);
    void Pump();
    void PushOutput(JackPort& port);
    // Output: the connection to the remote port is there; fails the port
    // when it is gone for good.
    bool IsLinked(JackPort& port);
    void Account(JackPort& port, std::uint64_t bytes);
    // Fails a send the bridge it goes to would drop.
    bool Refused(JackPort& port);

    void Run();
    void Wake();

    std::string m_clientName;
    std::string m_serverName;
    _jack_client* m_client = nullptr;
    std::vector<std::string> m_listed[2];
    bool m_listedOnce[2] = {false, false};

    // Shared with the process callback.
    std::array<std::atomic<CJackRealtimePort*>, kMaxOpenPorts> m_slots{};
    std::atomic<std::uint64_t> m_cyclesStarted{0};
    std::atomic<std::uint64_t> m_cyclesEnded{0};
    std::atomic<bool> m_serverGone{false};
    std::atomic<_jack_client*> m_processClient{nullptr};
    std::atomic<std::uint64_t> m_missedCycles{0};
    // The process callback's own.
    std::uint32_t m_nextCycleStart = 0;
    bool m_cycleKnown = false;
    std::atomic<std::uint64_t> m_xruns{0};
    // The driver thread's: the counts when it last looked.
    std::uint64_t m_missedSeen = 0;
    std::uint64_t m_xrunsSeen = 0;

    sem_t m_wake;
    std::atomic<bool> m_stop{false};
    std::thread m_thread;
};

} // namespace tarvix
