#pragma once

#include "transport/drivers/MidiDriver.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace tarvix::test {

using Bytes = std::vector<std::uint8_t>;

// One backend under test and the far end of its cable: the driver the
// program uses, and something at the other end that sends bytes to the
// program's input, collects what its output sends, and can go away.
class DriverRig {
public:
    virtual ~DriverRig() = default;

    virtual IMidiDriver& Driver() = 0;
    // The far end's ports as the driver lists them.
    virtual std::string InputName() = 0;  // the program receives from it
    virtual std::string OutputName() = 0; // the program sends to it
    // Bytes the far end puts on the cable to the program.
    virtual void Feed(const Bytes& bytes) = 0;
    // What reached the far end so far.
    virtual Bytes Received() = 0;
    // The far end's input port goes away, as an unplugged interface's.
    virtual void RemoveFarInput() = 0;
};

// How a test gets a fresh rig; empty with a reason when it cannot.
struct RigFactory {
    std::string name;
    std::function<std::unique_ptr<DriverRig>(std::string& error)> make;
};

// gtest shows the parameter in each case's name: the backend, not its bytes.
inline void PrintTo(const RigFactory& rig, std::ostream* os)
{
    *os << rig.name;
}

// A far end made of a second driver of the same backend with ports of its
// own (JACK, ALSA): opener creates them as the simulated device does.
using VirtualOpener =
    std::function<MidiResult(MidiDirection direction, const std::string& name,
                             MidiCallback callback, void* instance, MidiHandle& handle)>;
std::unique_ptr<DriverRig> MakePeerRig(std::unique_ptr<IMidiDriver> program,
                                       std::unique_ptr<IMidiDriver> peer, VirtualOpener opener,
                                       std::function<std::string(const std::string&)> listedName,
                                       std::string& error);

} // namespace tarvix::test
