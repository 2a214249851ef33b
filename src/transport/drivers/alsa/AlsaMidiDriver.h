#pragma once

#include "transport/drivers/BufferedMidiDriver.h"

#include <atomic>
#include <string>
#include <thread>
#include <vector>

struct _snd_seq;

namespace tarvix {

struct AlsaPortAddress;
struct AlsaPort;

// The ALSA sequencer: one sequencer client for the program ("Tarvix" unless
// named otherwise), one sequencer port of its own per open handle,
// subscribed to the chosen port of another client. Ports are listed as
// "<client name>:<port name>" (see AlsaPortList.h). Callbacks come from the
// driver's thread, or for Open, Close, Reset and AddBuffer from within that
// call. Without a sequencer (no /dev/snd/seq) it lists no ports and
// GetUnavailableReason says why; it tries again at the next listing.
class CAlsaMidiDriver : public CBufferedMidiDriver {
public:
    explicit CAlsaMidiDriver(std::string clientName = "Tarvix");
    ~CAlsaMidiDriver() override;
    CAlsaMidiDriver(const CAlsaMidiDriver&) = delete;
    CAlsaMidiDriver& operator=(const CAlsaMidiDriver&) = delete;

    // A port of our own named portName that other programs connect to
    // (the simulated device's ports), instead of one connected to a
    // listed port; otherwise a handle like any other.
    MidiResult OpenVirtual(MidiDirection direction, const std::string& portName,
                           MidiCallback callback, void* instance, MidiHandle& handle);

    std::string GetName() const override;
    std::uint32_t GetNumDevs(MidiDirection direction) override;
    MidiResult GetDevName(MidiDirection direction, std::uint32_t index, std::string& name) override;
    MidiResult Open(MidiDirection direction, std::uint32_t index, MidiCallback callback,
                    void* instance, MidiHandle& handle) override;

private:
    void ClosePort(BufferedMidiPort& port) override;
    void OutputQueued(BufferedMidiPort& port) override;

    // All with the ports' lock held.
    bool OpenSequencer();
    const std::vector<AlsaPortAddress>& Listed(MidiDirection direction);
    MidiResult OpenPort(MidiDirection direction, const std::string& portName,
                        const AlsaPortAddress* remote, MidiCallback callback, void* instance,
                        MidiHandle& handle);
    bool ReadInput(); // true when more input is waiting
    int SendOutput(); // milliseconds until output should be tried again, or -1
    bool IsSubscribed(const AlsaPort& port) const;

    void Run();
    void Wake();

    std::string m_clientName;
    _snd_seq* m_seq = nullptr;
    std::vector<AlsaPortAddress> m_listed[2];
    bool m_listedOnce[2] = {false, false};
    int m_wakeFd = -1;
    std::atomic<bool> m_stop{false};
    std::thread m_thread;
};

} // namespace tarvix
