// Receive and Send in the window over a real JACK server: the program's
// ports are those of the system's MIDI service, the simulated device has
// its own JACK client, as a hardware interface would.
#include "UiTestBase.h"

#include "framework/DialogRunner.h"
#include "model/SysexDump.h"
#include "settings/SettingsKey.h"
#include "simulator/SimulatedMmt8.h"
#include "simulator/SimulatorPorts.h"
#include "support/JackServer.h"
#include "support/SeededDocuments.h"
#include "transport/drivers/SystemMidiService.h"
#include "ui/transfer/MidiProgressDlg.h"

#include <QApplication>

#include <chrono>
#include <cstdlib>
#include <random>
#include <thread>

namespace tarvix::testing {
namespace {

using Bytes = std::vector<std::uint8_t>;

class JackTransferTest : public UiTest {
protected:
    static void SetUpTestSuite()
    {
        if (!test::JackServer::IsInstalled())
            return;
        s_server = std::make_unique<test::JackServer>();
        if (!s_server->Start("tarvix-ui", s_startError))
            s_server.reset();
    }
    static void TearDownTestSuite() { s_server.reset(); }

    void SetUp() override
    {
        if (!test::JackServer::IsInstalled())
            GTEST_SKIP() << "jackd is not installed (the jackd2 package)";
        ASSERT_TRUE(s_server) << s_startError;
        // The program's JACK client finds the server as any JACK program would.
        ::setenv("JACK_DEFAULT_SERVER", s_server->GetName().c_str(), 1);
    }

    void TearDown() override
    {
        Stop();
        m_device.reset();
        m_backends.clear();
    }

    // The device on its own JACK ports, and the program's settings naming them.
    CSimulatedMmt8& StartDevice(Bytes memory, bool wireSpeed)
    {
        m_backends = CreateSimulatorPorts("tarvix-device");
        CSimulatedMmt8::Options options;
        options.wireSpeed = wireSpeed;
        m_device =
            std::make_unique<CSimulatedMmt8>(std::move(memory), options, [](const std::string&) {});
        for (SimulatorPorts& backend : m_backends) {
            if (backend.system->GetName() != "JACK")
                continue;
            std::string error;
            EXPECT_TRUE(m_device->Attach(*backend.ports, SimulatorPorts::kInputPort,
                                         SimulatorPorts::kOutputPort, error))
                << error;
            const CSettingsKey key = CSettingsKey::InFile(SettingsPath().toStdString());
            key.WriteStringValue("MidiInDevice", backend.listedName(SimulatorPorts::kOutputPort));
            key.WriteStringValue("MidiOutDevice", backend.listedName(SimulatorPorts::kInputPort));
        }
        return *m_device;
    }

    void StartProgram()
    {
        m_app = std::make_unique<CApplication>(CSettingsKey::InFile(SettingsPath().toStdString()),
                                               CreateSystemMidiService());
        m_app->Start({});
        ProcessEvents();
    }

    static inline std::unique_ptr<test::JackServer> s_server;
    static inline std::string s_startError;
    std::vector<SimulatorPorts> m_backends;
    std::unique_ptr<CSimulatedMmt8> m_device;
};

TEST_F(JackTransferTest, ReceiveTheDevicesDumpAtWireSpeedThenSendADocument)
{
    const Bytes dump = DumpOf(20);
    CSimulatedMmt8& device = StartDevice(dump, true);
    StartProgram();
    ASSERT_TRUE(m_app->Ports().IsInputOpen());
    ASSERT_TRUE(m_app->Ports().IsOutputOpen());
    QStringList states;
    CDialogRunner::SetNextResponder([&](QDialog& dialog) {
        auto& progress = dynamic_cast<CMidiProgressDlg&>(dialog);
        progress.show();
        for (const char* state : {"To start", "Receiving", "Received"}) {
            EXPECT_TRUE(WaitUntil([&] {
                return progress.StatusText().startsWith(QLatin1String(state));
            })) << state;
            states << progress.StatusText();
            if (states.size() == 1)
                device.RequestSend();
        }
        WaitUntil([&] { return !progress.isVisible(); });
        return progress.result();
    });

    TriggerAction("fileReceive");

    ASSERT_EQ(states.size(), 3);
    EXPECT_EQ(states[2], QStringLiteral("Received Alesis MMT8 sysex %1 bytes\n").arg(dump.size()));
    CMmt8Memory expected;
    MakeDocument(expected, 20);
    EXPECT_EQ(DescribeDifference(expected, Memory()), "");

    // A send that takes a while closes its dialog by itself.
    CDialogRunner::SetUnattendedResponder([](QDialog& dialog) {
        dialog.show();
        WaitUntil([&] { return !dialog.isVisible(); });
        return dialog.result();
    });
    MakeDocument(Memory(), 22);
    TriggerAction("fileSend");
    EXPECT_TRUE(WaitUntil([&] {
        device.Poll();
        return device.GetMemory() == DumpOf(22);
    }));
}

} // namespace
} // namespace tarvix::testing
