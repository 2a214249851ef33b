#pragma once

#include <memory>
#include <string>

namespace tarvix::test {

// A private JACK server on the dummy backend for the time of a test:
// `jackd --no-realtime -n NAME -d dummy` in a process group of its own,
// stopped with the whole group when this object goes. The server also dies
// with the test process if that crashes.
//
// JACK keeps at most 8 servers in a registry in shared memory, and a server
// that is killed outright keeps its place there until a server of the same
// name starts. So names come from a small fixed set, "BASE-1" to "BASE-8":
// the first one free is taken, and a place lost that way is won back. A
// name is free when no other process holds its lock file in /tmp.
class JackServer {
public:
    JackServer();
    ~JackServer();
    JackServer(const JackServer&) = delete;
    JackServer& operator=(const JackServer&) = delete;

    static bool IsInstalled();
    // Starts it under the first free name of the set and waits until a
    // client can connect; false with a reason. Synchronous unless asked:
    // asynchronous is how users run jackd, and where a late client misses
    // cycles.
    enum class Mode { Synchronous, Asynchronous };
    bool Start(const std::string& baseName, std::string& error, Mode mode = Mode::Synchronous);
    void Stop();
    const std::string& GetName() const { return m_name; }

private:
    bool StartAs(const std::string& jackd, const std::string& name, Mode mode, std::string& error);
    bool Launch(const std::string& jackd, const std::string& name, Mode mode, std::string& error);
    bool HasExited();
    bool ClaimName(const std::string& name);
    void ReleaseName();

    // The jackd process; its type is kept out of this header, whose users
    // live in namespaces where "testing" means GoogleTest.
    struct Process;
    std::unique_ptr<Process> m_jackd;
    std::string m_name;
    int m_nameLock = -1;
};

} // namespace tarvix::test
