#pragma once

#include "UiTestBase.h"

#include "simulator/SimulatedMmt8.h"
#include "support/SeededDocuments.h"
#include "transport/drivers/loopback/LoopbackMidiDriver.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace tarvix {
class CMidiIn;
class CMidiOut;
} // namespace tarvix

namespace tarvix::testing {

using Bytes = std::vector<std::uint8_t>;

// The real application over the transport's ports on the Loopback driver,
// with one device plugged in; the test plays the device.
class TransportUiTest : public UiTest {
protected:
    static constexpr const char* kDeviceName = "MMT-8 cable";

    TransportUiTest();
    // The application goes first: the simulated device's cable ends with it.
    ~TransportUiTest() override;

    // Settings as the store holds them before the program starts.
    void StoreString(const char* name, const std::string& value);
    void StoreNumber(const char* name, std::uint32_t value);
    // Names the device's ports in the settings.
    void UseDevice(bool input = true, bool output = true);

    void StartOnLoopback(const QStringList& arguments = {});

    CLoopbackMidiDriver& Driver() { return *m_driver; }
    LoopbackMidiDevice& Device() { return *m_device; }
    CMidiIn& Input();
    CMidiOut& Output();

    // The simulated device on the other end of the cable, its own ports on
    // a second Loopback driver wired to ours; before the start.
    CSimulatedMmt8& ConnectSimulatedDevice(Bytes memory, bool wireSpeed);

private:
    std::unique_ptr<CLoopbackMidiDriver> m_ownedDriver;
    CLoopbackMidiDriver* m_driver = nullptr; // owned by the application once started
    LoopbackMidiDevice* m_device = nullptr;
    std::unique_ptr<CLoopbackMidiDriver> m_deviceDriver;
    std::unique_ptr<CSimulatedMmt8> m_simulator;
};

} // namespace tarvix::testing
