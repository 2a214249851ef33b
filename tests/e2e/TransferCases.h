#pragma once

#include "CliFixture.h"

#include <functional>
#include <ostream>
#include <string>
#include <vector>

namespace tarvix::testing {

// A backend the simulated device and tarvix-cli meet on: its name as the
// port names start ("JACK", "ALSA"), what the programs need from the test
// to find it (on failure it fails or skips the case), and options the
// simulated device always takes there.
struct E2eRig {
    std::string backend;
    std::function<void(std::vector<std::string>& environment)> prepare;
    Words deviceOptions;
};

inline void PrintTo(const E2eRig& rig, std::ostream* os)
{
    *os << rig.backend;
}

inline std::string RigName(const ::testing::TestParamInfo<E2eRig>& rig)
{
    return rig.param.backend;
}

// The same transfers on every backend: the simulated device and tarvix-cli
// as separate processes on real ports.
class TransferTest : public CliTest, public ::testing::WithParamInterface<E2eRig> {
protected:
    void SetUp() override;

    // The simulated device's ports under its default name.
    std::string DeviceOut() const { return GetParam().backend + ": tarvix-device:out"; }
    std::string DeviceIn() const { return GetParam().backend + ": tarvix-device:in"; }

    // The device, once its ports are there.
    std::unique_ptr<ChildProcess> StartDevice(const Words& options = {});
};

// A full memory's dump (over 70 KB).
const std::vector<std::uint8_t>& FullDump();

} // namespace tarvix::testing
