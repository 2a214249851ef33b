#pragma once

#include <chrono>
#include <csignal>
#include <string>
#include <sys/types.h>
#include <vector>

namespace tarvix::testing {

// A program the test runs beside itself, in a process group of its own,
// its output in files (or discarded). Whatever is still running of it when
// the object goes is stopped, group and all; it also dies with the test
// process. The one way tests start programs: the built tools, simulated
// devices and JACK servers.
class ChildProcess {
public:
    struct Exit {
        int code = -1;  // the exit status, -1 when it did not exit
        int signal = 0; // the signal that ended it
        bool timedOut = false;
    };

    struct Options {
        // "NAME=value" entries set on top of the test's own.
        std::vector<std::string> environment;
        // Where its stdout and stderr go; empty: nowhere.
        std::string outPath;
        std::string errPath;
        // A pipe for WriteInput; without it standard input is empty.
        bool inputPipe = true;
        // Sent to it when the test process dies: a program that must
        // clean up after itself (jackd's registry) wants SIGTERM.
        int deathSignal = SIGKILL;
    };

    ChildProcess() = default;
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    // command[0] is the program's path.
    bool Start(const std::vector<std::string>& command, const Options& options);

    pid_t GetPid() const { return m_pid; }
    bool IsRunning();
    void Signal(int signal);
    // The whole group, as when a device is unplugged.
    void SignalGroup(int signal);
    bool WriteInput(const std::string& text);
    // The end of its standard input.
    void CloseInput();
    // Waits for the end; past the limit it is killed and timedOut set.
    Exit Wait(std::chrono::seconds limit);
    // SIGTERM to the group, then Wait(grace).
    Exit Stop(std::chrono::seconds grace);

    std::string ReadOut() const;
    std::string ReadErr() const;
    // Until stdout (or stderr) holds the text; false when the limit passes
    // or the program ends without it.
    bool WaitForOutput(const std::string& text, std::chrono::seconds limit, bool onStderr = false);
    // Everything it printed, worded for a failure message.
    std::string Describe() const;
    // A run, worded for a failure message.
    static std::string Describe(const Exit& exit, const std::string& out, const std::string& err);

private:
    pid_t m_pid = -1;
    int m_input = -1;
    bool m_ended = false;
    Exit m_exit;
    std::string m_outPath;
    std::string m_errPath;
};

} // namespace tarvix::testing
