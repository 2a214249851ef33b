// Transfers through a real kernel ALSA sequencer: tarvix-cli on the
// sequencer port of a snd-virmidi card, whose raw device the stand-in
// device reads and writes at cable speed. These need snd-seq-dummy and
// snd-virmidi loaded; scripts/alsa-vm.sh runs them in a VM that has both.
#include "../TransferCases.h"

#include <alsa/asoundlib.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <regex>
#include <thread>

#include <unistd.h>

namespace tarvix::testing {
namespace {

using Bytes = std::vector<std::uint8_t>;

const std::string kMidiThrough = "ALSA: Midi Through:Midi Through Port-0";
// The card snd-virmidi made, or -1.
int VirmidiCard()
{
    for (int card = 0; card < 32; ++card) {
        std::ifstream id("/proc/asound/card" + std::to_string(card) + "/id");
        std::string name;
        if (id >> name && name == "VirMIDI")
            return card;
    }
    return -1;
}

// Unplugs the virtual card as a USB interface is pulled out: its platform
// device leaves its driver, the card and its sequencer client go. Plugged
// back in at the end, so the tests after find it again.
class CardUnplug {
public:
    explicit CardUnplug(int card)
    {
        const std::string link = "/sys/class/sound/card" + std::to_string(card) + "/device";
        std::error_code error;
        m_device = std::filesystem::read_symlink(link, error).filename().string();
    }
    ~CardUnplug()
    {
        if (m_unplugged)
            Write("bind");
    }
    CardUnplug(const CardUnplug&) = delete;
    CardUnplug& operator=(const CardUnplug&) = delete;

    bool Unplug() { return m_unplugged = Write("unbind"); }

private:
    bool Write(const std::string& what) const
    {
        std::ofstream file("/sys/bus/platform/drivers/snd_virmidi/" + what);
        file << m_device << std::flush;
        return !m_device.empty() && file.good();
    }
    std::string m_device;
    bool m_unplugged = false;
};

// "Received N bytes, lost M bytes" from the stand-in's output.
struct Report {
    long received = -1;
    long lost = -1;
};
Report ReadReport(const std::string& output)
{
    std::smatch match;
    Report report;
    if (std::regex_search(output, match, std::regex("Received (\\d+) bytes, lost (\\d+) bytes"))) {
        report.received = std::stol(match[1]);
        report.lost = std::stol(match[2]);
    }
    return report;
}

void UseSequencer(std::vector<std::string>&)
{
    ASSERT_EQ(access("/dev/snd/seq", R_OK | W_OK), 0)
        << "no ALSA sequencer; scripts/alsa-vm.sh runs these tests in a VM that has one";
}

// A sequencer client's input queue is bounded: a device sending faster than
// a cable overflows it, and the driver rightly reports bytes lost. The
// simulated device keeps to the cable here, as the real one does.
INSTANTIATE_TEST_SUITE_P(Alsa, TransferTest,
                         ::testing::Values(E2eRig{"ALSA", &UseSequencer, {"--wire-speed"}}),
                         &RigName);

// A stand-in device behind a MIDI interface: a raw MIDI device of the card
// snd-virmidi made, whose other end is a sequencer port.
class AlsaTransferTest : public CliTest {
protected:
    void SetUp() override
    {
        CliTest::SetUp();
        const int card = VirmidiCard();
        ASSERT_GE(card, 0) << "snd-virmidi is not loaded; scripts/alsa-vm.sh runs these tests "
                              "in a VM that has it";
        m_card = card;
        const std::string number = std::to_string(card);
        rawDevice = "/dev/snd/midiC" + number + "D0";
        client = "Virtual Raw MIDI " + number + "-0";
        port = "ALSA: " + client + ":VirMIDI " + number + "-0";
        ASSERT_GT(FullDump().size(), 70000u);
    }

    std::unique_ptr<ChildProcess> StartStandIn(const Words& options)
    {
        Words command{TARVIX_STANDIN_PATH, rawDevice};
        command.insert(command.end(), options.begin(), options.end());
        auto device = StartProgram(command, "standin");
        EXPECT_TRUE(device->WaitForOutput("Opened " + rawDevice, kShowLimit)) << device->Describe();
        return device;
    }

    // Ends the stand-in and returns what it says reached it.
    Report FinishStandIn(ChildProcess& device)
    {
        device.CloseInput();
        const auto exit = device.Wait(kRunLimit);
        EXPECT_EQ(exit.code, 0) << device.Describe();
        return ReadReport(device.ReadOut());
    }

    int Card() const { return m_card; }

    std::string rawDevice;
    std::string client;
    std::string port;

private:
    int m_card = -1;
};

TEST_F(AlsaTransferTest, PortsListsTheSequencersPortsByClientAndPortName)
{
    const Run ports = RunCli({"ports"});

    EXPECT_EQ(ports.exit.code, 0) << ports.description;
    for (const std::string& name : {port, kMidiThrough}) {
        EXPECT_NE(ports.out.find("in\t" + name + "\n"), std::string::npos) << ports.out;
        EXPECT_NE(ports.out.find("out\t" + name + "\n"), std::string::npos) << ports.out;
    }
    EXPECT_EQ(ports.err.find("ALSA: "), std::string::npos) << ports.err;
}

TEST_F(AlsaTransferTest, AFullDumpFromTheDeviceIsReceivedByteForByte)
{
    const auto device = StartStandIn({"--memory", WriteFile("full.syx", FullDump())});
    const auto receive = StartReceive(port, "got.syx");

    device->WriteInput("send\n");
    const auto exit = receive->Wait(kRunLimit);

    ASSERT_EQ(exit.code, 0) << receive->Describe();
    EXPECT_EQ(ReadAllBytes(folder.File("got.syx")), FullDump());
    EXPECT_TRUE(
        device->WaitForOutput("Sent " + std::to_string(FullDump().size()) + " bytes", kShowLimit));
}

TEST_F(AlsaTransferTest, AFullDumpReachesTheDeviceWholeThroughItsBoundedBuffer)
{
    const std::string received = folder.File("device-got.syx");
    const auto device = StartStandIn({"--received", received});

    const Run send = RunCli({"send", WriteFile("full.syx", FullDump()), "--port", port});
    const Report report = FinishStandIn(*device);

    ASSERT_EQ(send.exit.code, 0) << send.description;
    EXPECT_EQ(report.lost, 0) << device->Describe();
    EXPECT_EQ(ReadAllBytes(received), FullDump());
}

// The check above means something only if running ahead of the cable is
// caught: a client of our own writes the dump to the port as fast as the
// sequencer takes it.
TEST_F(AlsaTransferTest, ASendThatRunsAheadOfTheCableLosesBytesAtTheDevice)
{
    const auto device = StartStandIn({"--received", folder.File("device-got.syx")});
    snd_seq_t* seq = nullptr;
    ASSERT_EQ(snd_seq_open(&seq, "default", SND_SEQ_OPEN_OUTPUT, 0), 0);
    const int local = snd_seq_create_simple_port(seq, "unpaced", SND_SEQ_PORT_CAP_READ,
                                                 SND_SEQ_PORT_TYPE_APPLICATION);
    snd_seq_addr_t remote{};
    ASSERT_GE(local, 0);
    ASSERT_EQ(snd_seq_parse_address(seq, &remote, (client + ":0").c_str()), 0);
    ASSERT_EQ(snd_seq_connect_to(seq, local, remote.client, remote.port), 0);
    for (std::size_t at = 0; at < FullDump().size(); at += 256) {
        snd_seq_event_t event;
        snd_seq_ev_clear(&event);
        snd_seq_ev_set_source(&event, static_cast<unsigned char>(local));
        snd_seq_ev_set_subs(&event);
        snd_seq_ev_set_direct(&event);
        event.type = SND_SEQ_EVENT_SYSEX;
        event.flags |= SND_SEQ_EVENT_LENGTH_VARIABLE;
        event.data.ext.len =
            static_cast<unsigned int>(std::min<std::size_t>(256, FullDump().size() - at));
        event.data.ext.ptr = const_cast<std::uint8_t*>(FullDump().data() + at);
        ASSERT_GE(snd_seq_event_output_direct(seq, &event), 0);
    }
    snd_seq_close(seq);

    const Report report = FinishStandIn(*device);
    EXPECT_GT(report.lost, 0) << device->Describe();
    EXPECT_EQ(report.received + report.lost, static_cast<long>(FullDump().size()))
        << device->Describe();
}

TEST_F(AlsaTransferTest, CtrlCStopsASendAndTheDeviceHasOnlyItsBeginning)
{
    const std::string received = folder.File("device-got.syx");
    const auto device = StartStandIn({"--received", received});
    const auto send = StartCli({"send", WriteFile("full.syx", FullDump()), "--port", port}, "send");

    ASSERT_TRUE(send->WaitForOutput("Sending", kShowLimit, true)) << send->Describe();
    send->Signal(SIGINT);
    const auto exit = send->Wait(kRunLimit);
    const Report report = FinishStandIn(*device);

    EXPECT_EQ(exit.code, 1) << send->Describe();
    EXPECT_NE(send->ReadErr().find("Cancelled; the device may have received part of the dump."),
              std::string::npos)
        << send->ReadErr();
    EXPECT_EQ(report.lost, 0) << device->Describe();
    const Bytes got = ReadAllBytes(received);
    ASSERT_LT(got.size(), FullDump().size());
    EXPECT_TRUE(std::equal(got.begin(), got.end(), FullDump().begin()));
}

TEST_F(AlsaTransferTest, AnInterfaceUnpluggedMidReceiveEndsItWithAMessage)
{
    const auto device = StartStandIn({"--memory", WriteFile("full.syx", FullDump())});
    const auto receive = StartReceive(port, "got.syx");
    CardUnplug card(Card());

    device->WriteInput("send\n");
    ASSERT_TRUE(receive->WaitForOutput("Receiving Alesis MMT8", kShowLimit, true))
        << receive->Describe();
    ASSERT_TRUE(card.Unplug());
    const auto exit = receive->Wait(kRunLimit);

    EXPECT_FALSE(exit.timedOut);
    EXPECT_EQ(exit.code, 1) << receive->Describe();
    EXPECT_NE(receive->ReadErr().find("Port \"" + port + "\" is gone"), std::string::npos)
        << receive->ReadErr();
    EXPECT_TRUE(NothingWritten("got.syx"));
}

TEST_F(AlsaTransferTest, AnInterfaceUnpluggedMidSendEndsItWithAMessage)
{
    const auto device = StartStandIn({"--received", folder.File("device-got.syx")});
    CardUnplug card(Card());
    const auto send = StartCli({"send", WriteFile("full.syx", FullDump()), "--port", port}, "send");

    ASSERT_TRUE(send->WaitForOutput("Sending", kShowLimit, true)) << send->Describe();
    ASSERT_TRUE(card.Unplug());
    const auto exit = send->Wait(kRunLimit);

    EXPECT_FALSE(exit.timedOut);
    EXPECT_EQ(exit.code, 1) << send->Describe();
    // Said of the port, whichever way the program learnt of it.
    EXPECT_NE(send->ReadErr().find("is gone"), std::string::npos) << send->ReadErr();
}

#ifdef TARVIX_WITH_JACK
// a2jmidid drops SysEx on its way from JACK to ALSA: a send to its port is
// refused before a byte goes, and the ALSA port the message points to is
// the interface's, as listed.
TEST_F(AlsaTransferTest, ASendThroughA2jmididIsRefusedPointingToTheAlsaPort)
{
    ASSERT_TRUE(std::filesystem::exists("/usr/bin/a2jmidid"))
        << "a2jmidid is missing (scripts/setup.sh installs it)";
    // a2jmidid talks only to the server named "default", which in the VM
    // is no one else's.
    const auto jackd = StartProgram(
        {"/usr/bin/jackd", "--no-realtime", "-S", "-t", "200", "-n", "default", "-d", "dummy"},
        "jackd");
    environment.push_back("JACK_DEFAULT_SERVER=default");
    // a2jmidid gives up at once without a server.
    Run ports;
    for (int attempt = 0; attempt < 30; ++attempt) {
        ports = RunCli({"ports"});
        if (ports.err.find("No JACK server") == std::string::npos)
            break;
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
    }
    ASSERT_EQ(ports.err.find("No JACK server"), std::string::npos) << jackd->Describe();
    const auto bridge = StartProgram({"/usr/bin/a2jmidid", "-e"}, "a2jmidid");
    const auto device = StartStandIn({"--received", folder.File("device-got.syx")});

    // a2jmidid names its port "a2j:CLIENT [NUMBER] (playback): PORT".
    const std::regex a2jPort("out\\t(JACK: a2j:" + client + " \\[\\d+\\] \\(playback\\): VirMIDI " +
                             std::to_string(Card()) + "-0)\n");
    std::smatch match;
    for (int attempt = 0; attempt < 30; ++attempt) {
        ports = RunCli({"ports"});
        if (std::regex_search(ports.out, match, a2jPort))
            break;
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
    }
    ASSERT_FALSE(match.empty()) << ports.out << jackd->Describe() << bridge->Describe();
    EXPECT_NE(ports.out.find("out\t" + port + "\n"), std::string::npos) << ports.out;

    const Run send = RunCli({"send", WriteFile("full.syx", FullDump()), "--port", match[1]});
    const Report report = FinishStandIn(*device);

    EXPECT_EQ(send.exit.code, 1) << send.description;
    EXPECT_NE(send.err.find("Sending stopped after 0 of " + std::to_string(FullDump().size()) +
                            " bytes: a2jmidid passes no SysEx from JACK to the MIDI interface; "
                            "send to its ALSA port (" +
                            port + ") instead.\n"),
              std::string::npos)
        << send.err;
    EXPECT_EQ(report.received, 0) << device->Describe();
}
#endif

} // namespace
} // namespace tarvix::testing
