#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <thread>
#include <vector>

namespace tarvix {

class CMidiIn;
class CMidiOut;
class IMidiDriver;

// A stand-in for the Alesis MMT-8 at the far end of the cable, for tests
// and demonstrations. Asked to, it sends its memory as the device's dump;
// every dump it receives replaces its memory, as on the device, and is
// written out byte for byte. Its ports are ordinary CMidiIn and CMidiOut
// ports, so it runs on any driver: Loopback in tests, its own JACK or ALSA
// ports in `tarvix-cli device`.
class CSimulatedMmt8 {
public:
    // One line of what the device does, without a line end. Called from
    // the caller's thread and from the sender's, never at the same time.
    using Log = std::function<void(const std::string& line)>;

    static constexpr std::size_t kDefaultInputBuffer = 4096;

    struct Options {
        // As on a MIDI cable, 31250 baud at 10 bits a byte: output goes no
        // faster, and input drains through a buffer of inputBuffer bytes at
        // that speed, what does not fit being lost (and said so), as a MIDI
        // interface's buffer would. Otherwise both go as fast as the ports.
        bool wireSpeed = false;
        std::size_t inputBuffer = kDefaultInputBuffer;
        // Where each dump received is written; empty: nowhere.
        std::string receivedPath;
    };

    // memory: F0..F7 messages, back to back, one of them a dump that loads
    // (CheckMemory); they are all sent, in order, as the device's dump.
    CSimulatedMmt8(std::vector<std::uint8_t> memory, Options options, Log log);
    // Stops a send under way and closes the ports; the drivers they were
    // attached on must outlive it.
    ~CSimulatedMmt8();
    CSimulatedMmt8(const CSimulatedMmt8&) = delete;
    CSimulatedMmt8& operator=(const CSimulatedMmt8&) = delete;

    // True when the bytes are a run of F0..F7 messages holding a dump that
    // loads; otherwise the reason, as the program words it.
    static bool CheckMemory(std::span<const std::uint8_t> memory, std::string& error);
    // Seconds the bytes take on the cable.
    static double GetWireSeconds(std::size_t bytes);

    // Opens an input and an output port of the driver, named so, and
    // listens. Several pairs (JACK and ALSA) may be attached; the memory
    // goes out on all of them.
    bool Attach(IMidiDriver& driver, const std::string& inputName, const std::string& outputName,
                std::string& error);

    // Starts sending the memory; false, and nothing new starts, while a
    // send is under way.
    bool RequestSend();
    bool IsSending() const;

    // Takes in what arrived since the last call. Call it often.
    void Poll();

    std::vector<std::uint8_t> GetMemory() const;

private:
    struct Connection;

    void RunSender();
    void Send(const std::vector<std::uint8_t>& bytes);
    void QueueEverywhere(std::span<const std::uint8_t> bytes);
    bool AnythingQueued() const;
    // Waits until the deadline or a stop; false on a stop.
    bool WaitUntil(std::chrono::steady_clock::time_point deadline);
    void TakeIn(std::span<const std::uint8_t> message, bool damaged);
    void Say(const std::string& line);

    Options m_options;
    Log m_log;
    std::mutex m_logLock;

    mutable std::mutex m_memoryLock;
    std::vector<std::uint8_t> m_memory;

    mutable std::mutex m_connectionsLock;
    std::vector<std::unique_ptr<Connection>> m_connections;

    mutable std::mutex m_senderLock;
    std::condition_variable m_senderWake;
    bool m_sendRequested = false;
    bool m_sending = false;
    bool m_stopping = false;
    std::thread m_sender;
};

} // namespace tarvix
