#pragma once

#include "transport/drivers/MidiDriver.h"
#include "transport/ports/AutoResetEvent.h"
#include "transport/ports/MidiBuffer.h"
#include "transport/ports/SysexMessage.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace tarvix {

using SysexMessageList = std::vector<std::unique_ptr<CSysexMessage>>;

// The message list of a port, held under the port's list lock for as long
// as this object lives.
class CLockedMessages {
public:
    CLockedMessages(std::mutex& mutex, const SysexMessageList& messages)
        : m_lock(mutex), m_messages(messages)
    {
    }
    const SysexMessageList& operator*() const { return m_messages; }
    const SysexMessageList* operator->() const { return &m_messages; }

private:
    std::unique_lock<std::mutex> m_lock;
    const SysexMessageList& m_messages;
};

// What both MIDI ports share: the driver port, its buffers, the SysEx
// message list with its lock, and a worker thread woken by an auto-reset
// event. Every driver call but unpreparing keeps its result as the last
// error.
class CMidiDevice {
public:
    CMidiDevice(IMidiDriver& driver, MidiDirection direction);
    CMidiDevice(const CMidiDevice&) = delete;
    CMidiDevice& operator=(const CMidiDevice&) = delete;
    virtual ~CMidiDevice();

    virtual std::uint32_t GetNumDevs();
    // Index of the first port named exactly so, or -1.
    virtual int FindDevice(const std::string& name);
    virtual bool GetDevName(std::uint32_t index, std::string& name);
    virtual std::string GetLastErrorText();
    // Why the MIDI service lists no ports (one reason a line), or empty.
    std::string GetUnavailableReason() const { return m_driver.GetUnavailableReason(); }
    virtual std::string GetErrorText(MidiResult code);
    virtual bool IsOpen() const;
    virtual bool OpenByName(const std::string& name);
    virtual bool Open(std::uint32_t index) = 0;
    virtual bool Close() = 0;
    virtual bool Reset() = 0;
    virtual bool PrepareBuffer(CMidiBuffer& buffer);
    virtual bool UnprepareBuffer(CMidiBuffer& buffer);

    // Take effect at the next open.
    void SetBufferSize(std::uint32_t size) { m_bufferSize = size; }
    void SetBufferCount(std::uint32_t count) { m_bufferCount = count; }
    std::uint32_t GetBufferSize() const { return m_bufferSize; }
    std::uint32_t GetBufferCount() const { return m_bufferCount; }

    MidiResult GetLastError() const { return m_lastError; }
    CLockedMessages LockMessages() const { return {m_listLock, m_messages}; }
    void FreeMessages();

protected:
    virtual void ThreadProc() = 0;
    // Called for every driver notification after the port has handled it;
    // for an input buffer (LongData) before, while its bytes are still there.
    virtual void OnMessage(MidiCallbackMessage message, MidiHandle handle, MidiHeader* header);

    // Every driver notification for the open port, from the driver's thread.
    virtual void HandleCallback(MidiHandle handle, MidiCallbackMessage message,
                                MidiHeader* header) = 0;

    // Open steps shared by both ports; portEvent is the port's own event.
    bool OpenPort(std::uint32_t index, CAutoResetEvent& portEvent);
    // Frees the buffers, closes the driver port and waits for the close
    // notification.
    bool ClosePort();
    bool ResetPort();
    // Every buffer is free but the lost ones, which never come back.
    bool AreBuffersBack(std::uint32_t lostBuffers);
    // After a reset the driver hands the buffers back, maybe from another
    // thread and a little later; they must not be reused or freed before.
    // False after a bounded wait.
    bool WaitForBuffersBack(std::uint32_t lostBuffers);
    // Open and Close notifications, from the callback.
    void HandleOpenClose(MidiHandle handle, MidiCallbackMessage message);

    void StartWorker();
    void StopWorker();
    bool IsStopping() const { return m_stop; }
    void WakeWorker() { m_wakeUp.Set(); }
    void WaitForWakeUp() { m_wakeUp.Wait(); }
    void WaitForWakeUpFor(std::chrono::milliseconds timeout) { m_wakeUp.WaitFor(timeout); }

    bool Succeeded(MidiResult result);
    IMidiDriver& Driver() const { return m_driver; }
    MidiHandle Handle() const { return m_handle; }
    std::vector<std::unique_ptr<CMidiBuffer>>& Buffers() { return m_buffers; }
    SysexMessageList& Messages() { return m_messages; }
    std::mutex& ListLock() const { return m_listLock; }

private:
    static void Callback(MidiHandle handle, MidiCallbackMessage message, void* instance,
                         MidiHeader* header);

    // The driver stores the handle from its callback; we wait for that
    // rather than trust the handle the open call returns.
    bool WaitForHandle(MidiHandle expected);
    static bool WaitUntil(const std::function<bool()>& condition);
    void RecreateBuffers();
    void FreeBuffers();

    IMidiDriver& m_driver;
    MidiDirection m_direction;
    std::thread m_thread;
    CAutoResetEvent m_wakeUp;
    std::atomic<bool> m_stop{false};
    std::vector<std::unique_ptr<CMidiBuffer>> m_buffers;
    SysexMessageList m_messages;
    mutable std::mutex m_listLock;
    std::atomic<MidiResult> m_lastError{kMidiNoError};
    std::string m_errorText;
    std::uint32_t m_bufferSize = 1024;
    std::uint32_t m_bufferCount = 16;
    std::atomic<MidiHandle> m_handle{nullptr};
};

} // namespace tarvix
