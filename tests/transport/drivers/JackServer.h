#pragma once

#include <string>
#include <sys/types.h>

namespace tarvix::test {

// A private JACK server on the dummy backend for the time of a test:
// `jackd --no-realtime -n NAME -d dummy` in a process group of its own,
// stopped with the whole group when this object goes. The server also dies
// with the test process if that crashes.
class JackServer {
public:
    JackServer() = default;
    ~JackServer();
    JackServer(const JackServer&) = delete;
    JackServer& operator=(const JackServer&) = delete;

    static bool IsInstalled();
    // Starts it and waits until a client can connect; false with a reason.
    bool Start(const std::string& name, std::string& error);
    void Stop();
    const std::string& GetName() const { return m_name; }

private:
    pid_t m_pid = -1;
    std::string m_name;
};

} // namespace tarvix::test
