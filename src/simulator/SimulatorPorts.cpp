#include "simulator/SimulatorPorts.h"

#include "transport/drivers/MidiService.h"

#ifdef TARVIX_HAVE_ALSA
#include "transport/drivers/alsa/AlsaMidiDriver.h"
#endif
#ifdef TARVIX_HAVE_JACK
#include "transport/drivers/jack/JackMidiDriver.h"
#endif

namespace tarvix {

namespace {
template <typename System>
SimulatorPorts MakeBackend(std::unique_ptr<System> system, std::function<std::string()> clientName)
{
    SimulatorPorts backend;
    System& owner = *system;
    auto opener = [&owner](MidiDirection direction, const std::string& portName,
                           MidiCallback callback, void* instance, MidiHandle& handle) {
        return owner.OpenVirtual(direction, portName, callback, instance, handle);
    };
    backend.ports = std::make_unique<CVirtualPortDriver>(owner, opener, SimulatorPorts::kInputPort,
                                                         SimulatorPorts::kOutputPort);
    const std::string prefix = owner.GetName() + CMidiService::kPrefixSeparator;
    backend.listedName = [prefix, clientName](const std::string& port) {
        return prefix + clientName() + ":" + port;
    };
    backend.system = std::move(system);
    return backend;
}
} // namespace

std::vector<SimulatorPorts> CreateSimulatorPorts([[maybe_unused]] const std::string& name)
{
    std::vector<SimulatorPorts> backends;
#ifdef TARVIX_HAVE_JACK
    {
        auto jack = std::make_unique<CJackMidiDriver>(name);
        CJackMidiDriver* client = jack.get();
        // JACK renames a client whose name is taken.
        backends.push_back(
            MakeBackend(std::move(jack), [client] { return client->GetClientName(); }));
    }
#endif
#ifdef TARVIX_HAVE_ALSA
    backends.push_back(
        MakeBackend(std::make_unique<CAlsaMidiDriver>(name), [name] { return name; }));
#endif
    return backends;
}

} // namespace tarvix
