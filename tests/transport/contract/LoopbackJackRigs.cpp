// The driver contract on the backends that run anywhere: Loopback, and
// JACK on a private dummy server.
#include "DriverContractTest.h"

#include "transport/drivers/loopback/LoopbackMidiDriver.h"

#ifdef TARVIX_HAVE_JACK
#include "support/JackServer.h"
#include "transport/drivers/jack/JackMidiDriver.h"
#endif

namespace tarvix::test {
namespace {

class LoopbackRig : public DriverRig {
public:
    static constexpr const char* kName = "far end";

    IMidiDriver& Driver() override { return m_driver; }
    std::string InputName() override { return kName; }
    std::string OutputName() override { return kName; }
    void Feed(const Bytes& bytes) override { m_device.Feed(bytes); }
    Bytes Received() override
    {
        const Bytes more = m_device.TakeReceived();
        m_received.insert(m_received.end(), more.begin(), more.end());
        return m_received;
    }
    // In process there is no port to lose; the cable is pulled instead.
    void RemoveFarInput() override { m_device.FailOutput("The port it was connected to is gone."); }

private:
    CLoopbackMidiDriver m_driver;
    LoopbackMidiDevice& m_device = m_driver.CreatePort(kName);
    Bytes m_received;
};

INSTANTIATE_TEST_SUITE_P(Loopback, DriverContractTest,
                         ::testing::Values(RigFactory{"Loopback",
                                                      [](std::string&) {
                                                          return std::unique_ptr<DriverRig>(
                                                              std::make_unique<LoopbackRig>());
                                                      }}),
                         &RigName);

#ifdef TARVIX_HAVE_JACK
std::unique_ptr<DriverRig> MakeJackRig(std::string& error)
{
    // One server for the whole program, started by the first case.
    static JackServer server;
    static std::string startError;
    static const bool started = [] {
        if (!JackServer::IsInstalled()) {
            startError = "jackd is not installed (the jackd2 package)";
            return false;
        }
        return server.Start("tarvix-contract", startError);
    }();
    if (!started) {
        error = startError;
        return nullptr;
    }
    auto program = std::make_unique<CJackMidiDriver>("tarvix", server.GetName());
    auto peer = std::make_unique<CJackMidiDriver>("tarvix-far", server.GetName());
    CJackMidiDriver& owner = *peer;
    return MakePeerRig(
        std::move(program), std::move(peer),
        [&owner](MidiDirection direction, const std::string& name, MidiCallback callback,
                 void* instance, MidiHandle& handle) {
            return owner.OpenVirtual(direction, name, callback, instance, handle);
        },
        [&owner](const std::string& port) { return owner.GetClientName() + ":" + port; }, error);
}

INSTANTIATE_TEST_SUITE_P(Jack, DriverContractTest,
                         ::testing::Values(RigFactory{"JACK", &MakeJackRig}), &RigName);
#endif

} // namespace
} // namespace tarvix::test
