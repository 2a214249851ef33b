#include "support/JackServer.h"

#include <jack/jack.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <sstream>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

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
constexpr auto kSettleTime = std::chrono::milliseconds(100);
// jackd unregisters itself on SIGTERM; killed, it would keep its place.
constexpr auto kStopGrace = std::chrono::seconds(15);

void Quiet(const char* /*message*/) {}

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

JackServer::~JackServer()
{
    Stop();
}

bool JackServer::IsInstalled()
{
    return !FindJackd().empty();
}

bool JackServer::Start(const std::string& baseName, std::string& error)
{
    const std::string jackd = FindJackd();
    if (jackd.empty()) {
        error = "jackd is not installed";
        return false;
    }
    for (int number = 1; number <= kNames; ++number) {
        if (StartAs(jackd, baseName + "-" + std::to_string(number), error)) {
            return true;
        }
    }
    return false;
}

bool JackServer::StartAs(const std::string& jackd, const std::string& name, std::string& error)
{
    const pid_t parent = getpid();
    m_pid = fork();
    if (m_pid < 0) {
        error = "cannot fork";
        return false;
    }
    if (m_pid == 0) {
        setpgid(0, 0);
        prctl(PR_SET_PDEATHSIG, SIGTERM);
        if (getppid() != parent) {
            _exit(1);
        }
        const int null = open("/dev/null", O_RDWR);
        dup2(null, STDIN_FILENO);
        dup2(null, STDOUT_FILENO);
        dup2(null, STDERR_FILENO);
        // Synchronous (-S), with a client allowed ten times kClientTimeoutMs
        // to finish its period (-t). By default jackd2 gives a client two periods
        // (about 43 ms) and does not wait for it at all: when the next cycle
        // starts with the graph unfinished it re-arms the graph and runs the
        // clients again while the late one is still in its callback. A
        // client reading a connected port then reads the buffer the late
        // writer is clearing and refilling, and MIDI events vanish or come
        // out mixed: on a loaded test machine, where no client runs in real
        // time, that happens at random. In sync mode a late client only
        // makes the period longer.
        execl(jackd.c_str(), "jackd", "--no-realtime", "-S", "-t", kClientTimeoutMs, "-n",
              name.c_str(), "-d", "dummy", static_cast<char*>(nullptr));
        _exit(127);
    }
    setpgid(m_pid, m_pid); // also from here, so the group exists before any kill
    m_name = name;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(15);
    while (std::chrono::steady_clock::now() < deadline) {
        if (HasExited()) {
            error = "jackd exited at start-up (its name taken, or JACK's registry full)";
            return false;
        }
        if (CanConnect(name)) {
            // The client may have reached another test's server of this
            // name before ours found the name taken and gave up.
            std::this_thread::sleep_for(kSettleTime);
            if (!HasExited()) {
                return true;
            }
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    error = "jackd did not come up within 15 s";
    Stop();
    return false;
}

bool JackServer::HasExited()
{
    int status = 0;
    if (m_pid <= 0 || waitpid(m_pid, &status, WNOHANG) == m_pid) {
        m_pid = -1;
        return true;
    }
    return false;
}

void JackServer::Stop()
{
    if (m_pid <= 0) {
        return;
    }
    kill(-m_pid, SIGTERM);
    const auto deadline = std::chrono::steady_clock::now() + kStopGrace;
    int status = 0;
    while (waitpid(m_pid, &status, WNOHANG) == 0) {
        if (std::chrono::steady_clock::now() >= deadline) {
            kill(-m_pid, SIGKILL);
            waitpid(m_pid, &status, 0);
            break;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    m_pid = -1;
}

} // namespace tarvix::test
