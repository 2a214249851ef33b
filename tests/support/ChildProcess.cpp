#include "support/ChildProcess.h"

#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

extern char** environ;

namespace tarvix::testing {

namespace {
constexpr auto kPoll = std::chrono::milliseconds(10);
constexpr auto kStopGrace = std::chrono::seconds(5);

std::string ReadText(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// The test's environment with the given entries replacing those of the
// same name; made before fork, since the child may only exec.
std::vector<std::string> MergedEnvironment(const std::vector<std::string>& extra)
{
    std::vector<std::string> merged(extra);
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string text(*entry);
        const std::string name = text.substr(0, text.find('=') + 1);
        bool replaced = false;
        for (const std::string& own : extra)
            replaced = replaced || own.rfind(name, 0) == 0;
        if (!replaced)
            merged.push_back(text);
    }
    return merged;
}

std::vector<char*> Pointers(std::vector<std::string>& strings)
{
    std::vector<char*> pointers;
    for (std::string& text : strings)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}
} // namespace

ChildProcess::~ChildProcess()
{
    if (m_pid > 0 && !m_ended)
        Stop(kStopGrace);
    if (m_pid > 0)
        ::kill(-m_pid, SIGKILL); // anything the program left in its group
    if (m_input >= 0)
        ::close(m_input);
}

bool ChildProcess::Start(const std::vector<std::string>& command, const Options& options)
{
    m_outPath = options.outPath;
    m_errPath = options.errPath;
    const std::string outPath = m_outPath.empty() ? "/dev/null" : m_outPath;
    const std::string errPath = m_errPath.empty() ? "/dev/null" : m_errPath;
    std::vector<std::string> words(command);
    std::vector<std::string> variables = MergedEnvironment(options.environment);
    std::vector<char*> argv = Pointers(words);
    std::vector<char*> envp = Pointers(variables);
    int pipeEnds[2];
    if (::pipe2(pipeEnds, O_CLOEXEC) != 0)
        return false;
    const pid_t parent = ::getpid();
    m_pid = ::fork();
    if (m_pid < 0)
        return false;
    if (m_pid == 0) {
        ::setpgid(0, 0);
        ::prctl(PR_SET_PDEATHSIG, options.deathSignal);
        if (::getppid() != parent)
            ::_exit(126);
        const int out = ::open(outPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        const int err = ::open(errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        const int in = options.inputPipe ? pipeEnds[0] : ::open("/dev/null", O_RDONLY);
        ::dup2(in, STDIN_FILENO);
        ::dup2(out, STDOUT_FILENO);
        ::dup2(err, STDERR_FILENO);
        ::execve(argv[0], argv.data(), envp.data());
        ::_exit(127);
    }
    ::setpgid(m_pid, m_pid); // also from here, so the group exists before any signal
    ::close(pipeEnds[0]);
    m_input = pipeEnds[1];
    if (!options.inputPipe)
        CloseInput();
    return true;
}

bool ChildProcess::IsRunning()
{
    if (m_pid <= 0 || m_ended)
        return false;
    int status = 0;
    if (::waitpid(m_pid, &status, WNOHANG) != m_pid)
        return true;
    m_ended = true;
    if (WIFEXITED(status))
        m_exit.code = WEXITSTATUS(status);
    else if (WIFSIGNALED(status))
        m_exit.signal = WTERMSIG(status);
    return false;
}

void ChildProcess::Signal(int signal)
{
    if (IsRunning())
        ::kill(m_pid, signal);
}

void ChildProcess::SignalGroup(int signal)
{
    if (m_pid > 0)
        ::kill(-m_pid, signal);
}

bool ChildProcess::WriteInput(const std::string& text)
{
    return m_input >= 0 &&
           ::write(m_input, text.data(), text.size()) == static_cast<ssize_t>(text.size());
}

void ChildProcess::CloseInput()
{
    if (m_input >= 0)
        ::close(m_input);
    m_input = -1;
}

ChildProcess::Exit ChildProcess::Wait(std::chrono::seconds limit)
{
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (IsRunning()) {
        if (std::chrono::steady_clock::now() > deadline) {
            SignalGroup(SIGKILL);
            while (IsRunning())
                std::this_thread::sleep_for(kPoll);
            m_exit.timedOut = true;
            break;
        }
        std::this_thread::sleep_for(kPoll);
    }
    return m_exit;
}

ChildProcess::Exit ChildProcess::Stop(std::chrono::seconds grace)
{
    if (IsRunning())
        SignalGroup(SIGTERM);
    return Wait(grace); // kills the group when the grace runs out
}

std::string ChildProcess::ReadOut() const
{
    return ReadText(m_outPath);
}

std::string ChildProcess::ReadErr() const
{
    return ReadText(m_errPath);
}

bool ChildProcess::WaitForOutput(const std::string& text, std::chrono::seconds limit, bool onStderr)
{
    const auto deadline = std::chrono::steady_clock::now() + limit;
    for (;;) {
        const bool running = IsRunning();
        if ((onStderr ? ReadErr() : ReadOut()).find(text) != std::string::npos)
            return true;
        if (!running || std::chrono::steady_clock::now() > deadline)
            return false;
        std::this_thread::sleep_for(kPoll);
    }
}

std::string ChildProcess::Describe() const
{
    return Describe(m_exit, ReadOut(), ReadErr());
}

std::string ChildProcess::Describe(const Exit& exit, const std::string& out, const std::string& err)
{
    std::string text = "exit " + std::to_string(exit.code);
    if (exit.signal != 0)
        text += ", killed by signal " + std::to_string(exit.signal);
    if (exit.timedOut)
        text += ", timed out";
    return text + "\nstdout:\n" + out + "\nstderr:\n" + err;
}

} // namespace tarvix::testing
