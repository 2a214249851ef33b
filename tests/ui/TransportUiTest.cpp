#include "TransportUiTest.h"

#include "model/SysexDump.h"
#include "settings/SettingsKey.h"
#include "support/RandomDocument.h"

#include <QApplication>

#include <chrono>
#include <random>
#include <thread>

namespace tarvix::testing {

TransportUiTest::TransportUiTest()
    : m_ownedDriver(std::make_unique<CLoopbackMidiDriver>()), m_driver(m_ownedDriver.get()),
      m_device(&m_driver->CreatePort(kDeviceName))
{
}

TransportUiTest::~TransportUiTest()
{
    Stop();
    m_simulator.reset();
}

CSimulatedMmt8& TransportUiTest::ConnectSimulatedDevice(Bytes memory, bool wireSpeed)
{
    m_deviceDriver = std::make_unique<CLoopbackMidiDriver>("Device side");
    LoopbackMidiDevice& far = m_deviceDriver->CreatePort(kDeviceName);
    LoopbackMidiDevice& near = *m_device;
    near.SetReceiver([&far](const std::uint8_t* data, std::size_t size) { far.Feed(data, size); });
    far.SetReceiver([&near](const std::uint8_t* data, std::size_t size) { near.Feed(data, size); });
    CSimulatedMmt8::Options options;
    options.wireSpeed = wireSpeed;
    m_simulator =
        std::make_unique<CSimulatedMmt8>(std::move(memory), options, [](const std::string&) {});
    std::string error;
    EXPECT_TRUE(m_simulator->Attach(*m_deviceDriver, kDeviceName, kDeviceName, error)) << error;
    return *m_simulator;
}

void TransportUiTest::StoreString(const char* name, const std::string& value)
{
    CSettingsKey::InFile(SettingsPath().toStdString()).WriteStringValue(name, value);
}

void TransportUiTest::StoreNumber(const char* name, std::uint32_t value)
{
    CSettingsKey::InFile(SettingsPath().toStdString()).WriteDwordValue(name, value);
}

void TransportUiTest::UseDevice(bool input, bool output)
{
    StoreString("MidiInDevice", input ? kDeviceName : "");
    StoreString("MidiOutDevice", output ? kDeviceName : "");
}

void TransportUiTest::StartOnLoopback(const QStringList& arguments)
{
    ASSERT_TRUE(m_ownedDriver) << "started twice";
    m_app = std::make_unique<CApplication>(CSettingsKey::InFile(SettingsPath().toStdString()),
                                           std::move(m_ownedDriver));
    m_app->Start(arguments);
    ProcessEvents();
}

CMidiIn& TransportUiTest::Input()
{
    return *m_app->Ports().InputPort();
}
CMidiOut& TransportUiTest::Output()
{
    return *m_app->Ports().OutputPort();
}

} // namespace tarvix::testing
