#pragma once

#include "simulator/VirtualPortDriver.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tarvix {

// The simulated device's two ports on one MIDI system, named like a
// hardware interface's: "<name>:in" takes what the program sends,
// "<name>:out" carries what the device sends.
struct SimulatorPorts {
    static constexpr const char* kInputPort = "in";
    static constexpr const char* kOutputPort = "out";

    std::unique_ptr<IMidiDriver> system; // a client of the system called by the device's name
    std::unique_ptr<CVirtualPortDriver> ports;
    // A port's name as other programs list it ("JACK: tarvix-device:out").
    std::function<std::string(const std::string& port)> listedName;
};

// Every MIDI system built into this program that can carry the device's
// ports (JACK, ALSA), whether or not it is running now: attaching to one
// that is not fails and its system says why.
std::vector<SimulatorPorts> CreateSimulatorPorts(const std::string& name);

} // namespace tarvix
