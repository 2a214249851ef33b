#pragma once

#include "transport/drivers/ForwardingMidiDriver.h"

#include <functional>
#include <string>

namespace tarvix {

// A backend seen through two ports of our own that other programs connect
// to, as a hardware interface's would be: it lists exactly one input and
// one output, and opening them creates them through the backend's
// OpenVirtual. Everything else goes straight to the backend. This lets the
// ordinary CMidiIn and CMidiOut serve the simulated device.
class CVirtualPortDriver : public CForwardingMidiDriver {
public:
    using Opener =
        std::function<MidiResult(MidiDirection direction, const std::string& portName,
                                 MidiCallback callback, void* instance, MidiHandle& handle)>;

    CVirtualPortDriver(IMidiDriver& backend, Opener opener, std::string inputName,
                       std::string outputName);

    std::string GetName() const override;
    std::uint32_t GetNumDevs(MidiDirection direction) override;
    MidiResult GetDevName(MidiDirection direction, std::uint32_t index, std::string& name) override;
    MidiResult Open(MidiDirection direction, std::uint32_t index, MidiCallback callback,
                    void* instance, MidiHandle& handle) override;
    std::string GetErrorText(MidiResult result) const override;
    std::string GetUnavailableReason() const override;

private:
    IMidiDriver* Target(MidiHandle /*handle*/) const override { return &m_backend; }
    const std::string& NameOf(MidiDirection direction) const;

    IMidiDriver& m_backend;
    Opener m_opener;
    std::string m_inputName;
    std::string m_outputName;
};

} // namespace tarvix
