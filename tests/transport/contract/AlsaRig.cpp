// The driver contract on the ALSA sequencer. It needs a real one
// (/dev/snd/seq, with snd-seq loaded): without it every case fails and
// says so. Host builds leave it out (ctest label alsa); the virtual
// machine with a real kernel runs it.
#include "DriverContractTest.h"

#include "transport/drivers/alsa/AlsaMidiDriver.h"

#include <unistd.h>

namespace tarvix::test {
namespace {

std::unique_ptr<DriverRig> MakeAlsaRig(std::string& error)
{
    if (access("/dev/snd/seq", R_OK | W_OK) != 0) {
        error = "no ALSA sequencer here (/dev/snd/seq); these cases run where the kernel has one";
        return nullptr;
    }
    static int rigs = 0;
    // A client name of its own per case, as the listing finds ports by it.
    const std::string far = "tarvix-far-" + std::to_string(++rigs);
    auto program = std::make_unique<CAlsaMidiDriver>("tarvix-contract");
    auto peer = std::make_unique<CAlsaMidiDriver>(far);
    CAlsaMidiDriver& owner = *peer;
    return MakePeerRig(
        std::move(program), std::move(peer),
        [&owner](MidiDirection direction, const std::string& name, MidiCallback callback,
                 void* instance, MidiHandle& handle) {
            return owner.OpenVirtual(direction, name, callback, instance, handle);
        },
        [far](const std::string& port) { return far + ":" + port; }, error);
}

INSTANTIATE_TEST_SUITE_P(Alsa, DriverContractTest,
                         ::testing::Values(RigFactory{"ALSA", &MakeAlsaRig}), &RigName);

} // namespace
} // namespace tarvix::test
