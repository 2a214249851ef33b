#include "transport/ports/MidiDevice.h"

#include "transport/ports/ThreadPriority.h"

#include <algorithm>
#include <chrono>

namespace tarvix {

namespace {
constexpr std::size_t kMaxErrorText = 255;
// The waits for the driver are yield loops, as the driver's callbacks may
// come from any thread. A driver that never sends a notification or never
// returns a buffer must not hang the program: after this long a wait gives
// up and the call fails.
constexpr auto kNotificationTimeout = std::chrono::seconds(5);
} // namespace

CMidiDevice::CMidiDevice(IMidiDriver& driver, MidiDirection direction)
    : m_driver(driver), m_direction(direction)
{
}

CMidiDevice::~CMidiDevice() = default;

std::uint32_t CMidiDevice::GetNumDevs()
{
    return m_driver.GetNumDevs(m_direction);
}

int CMidiDevice::FindDevice(const std::string& name)
{
    const std::uint32_t count = GetNumDevs();
    for (std::uint32_t index = 0; index < count; ++index) {
        std::string candidate;
        if (GetDevName(index, candidate) && candidate == name)
            return static_cast<int>(index);
    }
    return -1;
}

bool CMidiDevice::GetDevName(std::uint32_t index, std::string& name)
{
    return Succeeded(m_driver.GetDevName(m_direction, index, name));
}

std::string CMidiDevice::GetLastErrorText()
{
    return GetErrorText(m_lastError);
}

std::string CMidiDevice::GetErrorText(MidiResult code)
{
    m_errorText = m_driver.GetErrorText(code);
    if (m_errorText.size() > kMaxErrorText)
        m_errorText.resize(kMaxErrorText);
    return m_errorText;
}

bool CMidiDevice::IsOpen() const
{
    return m_handle.load() != nullptr;
}

bool CMidiDevice::OpenByName(const std::string& name)
{
    const int index = FindDevice(name);
    if (index < 0) {
        m_lastError = kMidiBadDeviceId;
        return false;
    }
    return Open(static_cast<std::uint32_t>(index));
}

bool CMidiDevice::PrepareBuffer(CMidiBuffer& buffer)
{
    buffer.flags = 0;
    return Succeeded(m_driver.PrepareHeader(m_handle, buffer));
}

bool CMidiDevice::UnprepareBuffer(CMidiBuffer& buffer)
{
    // Not kept as the last error: unpreparing mostly cleans up after a
    // failed call, whose code is the one the user is to see.
    if (m_driver.UnprepareHeader(m_handle, buffer) != kMidiNoError)
        return false;
    buffer.flags = 0;
    return true;
}

void CMidiDevice::FreeMessages()
{
    std::lock_guard lock(m_listLock);
    m_messages.clear();
}

void CMidiDevice::OnMessage(MidiCallbackMessage, MidiHandle, MidiHeader*) {}

void CMidiDevice::Callback(MidiHandle handle, MidiCallbackMessage message, void* instance,
                           MidiHeader* header)
{
    static_cast<CMidiDevice*>(instance)->HandleCallback(handle, message, header);
}

bool CMidiDevice::OpenPort(std::uint32_t index, CAutoResetEvent& portEvent)
{
    if (IsOpen())
        Close();
    MidiHandle handle = nullptr;
    if (!Succeeded(m_driver.Open(m_direction, index, &CMidiDevice::Callback, this, handle)))
        return false;
    if (!WaitForHandle(handle)) {
        m_driver.Close(handle);
        m_handle = nullptr;
        m_lastError = kMidiError;
        return false;
    }
    RecreateBuffers();
    portEvent.Reset();
    StartWorker();
    return true;
}

bool CMidiDevice::ClosePort()
{
    FreeBuffers();
    if (!IsOpen())
        return true;
    if (!Succeeded(m_driver.Close(m_handle)))
        return false;
    if (!WaitForHandle(nullptr)) {
        m_handle = nullptr;
        m_lastError = kMidiError;
        return false;
    }
    return true;
}

bool CMidiDevice::ResetPort()
{
    if (!IsOpen())
        return Succeeded(kMidiInvalidHandle);
    return Succeeded(m_driver.Reset(m_handle));
}

bool CMidiDevice::AreBuffersBack(std::uint32_t lostBuffers)
{
    const auto free = std::count_if(m_buffers.begin(), m_buffers.end(),
                                    [](const auto& buffer) { return buffer->IsFree(); });
    return static_cast<std::size_t>(free) + lostBuffers >= m_buffers.size();
}

bool CMidiDevice::WaitForBuffersBack(std::uint32_t lostBuffers)
{
    return WaitUntil([this, lostBuffers] { return AreBuffersBack(lostBuffers); });
}

void CMidiDevice::HandleOpenClose(MidiHandle handle, MidiCallbackMessage message)
{
    if (message == MidiCallbackMessage::Open)
        m_handle = handle;
    else if (message == MidiCallbackMessage::Close)
        m_handle = nullptr;
}

void CMidiDevice::StartWorker()
{
    StopWorker();
    m_wakeUp.Reset();
    m_stop = false;
    m_thread = std::thread([this] {
        RaiseCurrentThreadPriority();
        ThreadProc();
    });
    std::this_thread::yield();
}

void CMidiDevice::StopWorker()
{
    // The worker blocks only on its own event and its delays, so joining it
    // cannot hang for longer than one delay.
    if (m_thread.joinable()) {
        m_stop = true;
        m_wakeUp.Set();
        m_thread.join();
        m_stop = false;
    }
    m_wakeUp.Reset();
}

bool CMidiDevice::Succeeded(MidiResult result)
{
    m_lastError = result;
    return result == kMidiNoError;
}

bool CMidiDevice::WaitForHandle(MidiHandle expected)
{
    return WaitUntil([this, expected] { return m_handle.load() == expected; });
}

bool CMidiDevice::WaitUntil(const std::function<bool()>& condition)
{
    const auto deadline = std::chrono::steady_clock::now() + kNotificationTimeout;
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= deadline)
            return false;
        std::this_thread::yield();
    }
    return true;
}

void CMidiDevice::RecreateBuffers()
{
    FreeBuffers();
    m_buffers.reserve(m_bufferCount);
    for (std::uint32_t i = 0; i < m_bufferCount; ++i)
        m_buffers.push_back(std::make_unique<CMidiBuffer>(m_bufferSize));
}

void CMidiDevice::FreeBuffers()
{
    for (auto& buffer : m_buffers) {
        if ((buffer->flags & kMidiHeaderPrepared) != 0)
            UnprepareBuffer(*buffer);
    }
    m_buffers.clear();
}

} // namespace tarvix
