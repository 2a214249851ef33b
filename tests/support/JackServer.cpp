#include "support/JackServer.h"

#include "support/ChildProcess.h"
#include "transport/drivers/jack/JackSharedFilesLock.h"

#include <jack/jack.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <sstream>
#include <sys/file.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace tarvix::test {

namespace {

std::string FindJackd()
{
    const char* path = std::getenv("PATH");
    std::istringstream folders(path != nullptr ? path : "/usr/bin:/bin");
    std::string folder;
    while (std::getline(folders, folder, ':')) {
        const std::string candidate = folder + "/jackd";
        if (access(candidate.c_str(), X_OK) == 0) {
            return candidate;
        }
    }
    return {};
}

constexpr int kNames = 8;
// The server waits up to ten times this for a late client before it
// moves on: longer than the stalls of a loaded machine, short enough
// that a client killed in its callback (the tests kill the simulated
// device mid-transfer) holds the server only briefly each cycle until
// jackd has removed it.
constexpr const char* kClientTimeoutMs = "200";
// jackd unregisters itself on SIGTERM; killed, it would keep its place.
constexpr auto kStopGrace = std::chrono::seconds(15);

void Quiet(const char* /*message*/) {}

// A client that is not activated, so that it leaves the server as it came;
// the caller holds the shared files' lock.
bool CanConnect(const std::string& name)
{
    jack_set_error_function(&Quiet);
    jack_set_info_function(&Quiet);
    jack_status_t status{};
    jack_client_t* client = jack_client_open(
        "tarvix-probe", static_cast<jack_options_t>(JackNoStartServer | JackServerName), &status,
        name.c_str());
    jack_set_error_function(nullptr);
    jack_set_info_function(nullptr);
    if (client == nullptr) {
        return false;
    }
    jack_client_close(client);
    return true;
}

} // namespace

struct JackServer::Process : testing::ChildProcess {};

JackServer::JackServer() = default;

JackServer::~JackServer()
{
    Stop();
}

bool JackServer::IsInstalled()
{
    return !FindJackd().empty();
}

bool JackServer::Start(const std::string& baseName, std::string& error, Mode mode)
{
    const std::string jackd = FindJackd();
    if (jackd.empty()) {
        error = "jackd is not installed";
        return false;
    }
    for (int number = 1; number <= kNames; ++number) {
        if (StartAs(jackd, baseName + "-" + std::to_string(number), mode, error)) {
            return true;
        }
    }
    return false;
}

// Another test's server may hold the name, or be starting under it: jackd
// finds the name taken only after a while, and a client connecting in that
// while reaches the other server. So a name is claimed first with a lock the
// kernel drops when its holder ends, however it ends.
bool JackServer::ClaimName(const std::string& name)
{
    const std::string path = "/tmp/tarvix-jackd-" + name + ".lock";
    const int fd = open(path.c_str(), O_CREAT | O_RDWR | O_CLOEXEC, 0666);
    if (fd < 0) {
        return false;
    }
    if (flock(fd, LOCK_EX | LOCK_NB) != 0) {
        close(fd);
        return false;
    }
    m_nameLock = fd;
    return true;
}

void JackServer::ReleaseName()
{
    if (m_nameLock >= 0) {
        close(m_nameLock);
        m_nameLock = -1;
    }
}

bool JackServer::StartAs(const std::string& jackd, const std::string& name, Mode mode,
                         std::string& error)
{
    if (!ClaimName(name)) {
        error = "every name is taken by another test's server";
        return false;
    }
    bool up = false;
    {
        // jackd creates files that every server and client shares as it
        // starts; no other test's client or server may touch them meanwhile.
        const CJackSharedFilesLock lock;
        up = Launch(jackd, name, mode, error);
    }
    if (!up) {
        Stop();
    }
    return up;
}

bool JackServer::Launch(const std::string& jackd, const std::string& name, Mode mode,
                        std::string& error)
{
    testing::ChildProcess::Options options;
    options.inputPipe = false;
    options.deathSignal = SIGTERM;
    m_jackd = std::make_unique<Process>();
    // Synchronous (-S), with a client allowed ten times kClientTimeoutMs to
    // finish its period (-t). By default jackd2 gives a client two periods
    // (about 43 ms) and does not wait for it at all: when the next cycle
    // starts with the graph unfinished it re-arms the graph and runs the
    // clients again while the late one is still in its callback. A client
    // reading a connected port then reads the buffer the late writer is
    // clearing and refilling, and MIDI events vanish or come out mixed: on a
    // loaded test machine, where no client runs in real time, that happens
    // at random. In sync mode a late client only makes the period longer.
    std::vector<std::string> arguments{jackd, "--no-realtime", "-t", kClientTimeoutMs, "-n", name,
                                       "-d",  "dummy"};
    if (mode == Mode::Synchronous) {
        arguments.insert(arguments.begin() + 2, "-S");
    }
    if (!m_jackd->Start(arguments, options)) {
        error = "cannot start jackd";
        return false;
    }
    m_name = name;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(15);
    while (std::chrono::steady_clock::now() < deadline) {
        if (HasExited()) {
            error = "jackd exited at start-up (JACK's registry full?)";
            return false;
        }
        if (CanConnect(name)) {
            return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    error = "jackd did not come up within 15 s";
    return false;
}

bool JackServer::HasExited()
{
    return !m_jackd || !m_jackd->IsRunning();
}

void JackServer::Stop()
{
    if (m_jackd) {
        // jackd removes files every server and client shares as it stops.
        const CJackSharedFilesLock lock;
        m_jackd->Stop(kStopGrace);
        m_jackd.reset();
    }
    ReleaseName();
}

} // namespace tarvix::test
