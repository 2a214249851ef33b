#pragma once

#include "transport/drivers/ForwardingMidiDriver.h"

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace tarvix {

// The ports of several backends as one service. Ports are numbered backend
// by backend in the order given, and each name is the backend's name, a
// colon, a space and the backend's own port name:
//     "ALSA: Midi Through:Midi Through Port-0"
//     "JACK: system:midi_capture_1"
// so a name stored in the settings finds the same port on the same backend.
// Handles are the backends' own; callbacks come straight from the backend.
class CMidiService : public CForwardingMidiDriver {
public:
    static constexpr const char* kPrefixSeparator = ": ";

    explicit CMidiService(std::vector<std::unique_ptr<IMidiDriver>> backends);
    ~CMidiService() override;
    CMidiService(const CMidiService&) = delete;
    CMidiService& operator=(const CMidiService&) = delete;

    // A backend by its GetName(), or null; for what only it can do.
    IMidiDriver* FindBackend(const std::string& name) const;

    // The backends' names joined by "+", e.g. "ALSA+JACK".
    std::string GetName() const override;
    std::uint32_t GetNumDevs(MidiDirection direction) override;
    MidiResult GetDevName(MidiDirection direction, std::uint32_t index, std::string& name) override;
    MidiResult Open(MidiDirection direction, std::uint32_t index, MidiCallback callback,
                    void* instance, MidiHandle& handle) override;
    std::string GetErrorText(MidiResult result) const override;
    // "<backend>: <reason>" for each backend that has one, one a line; with
    // no backend at all, that.
    std::string GetUnavailableReason() const override;

private:
    struct Place {
        IMidiDriver* backend = nullptr;
        std::uint32_t index = 0;
    };
    // Maps a service index through the counts of the last GetNumDevs.
    Place Locate(MidiDirection direction, std::uint32_t index);
    IMidiDriver* Target(MidiHandle handle) const override;
    void Closed(MidiHandle handle) override;

    std::vector<std::unique_ptr<IMidiDriver>> m_backends;
    mutable std::mutex m_mutex;
    std::vector<std::uint32_t> m_counts[2]; // per direction, per backend
    std::map<MidiHandle, IMidiDriver*> m_owners;
};

} // namespace tarvix
