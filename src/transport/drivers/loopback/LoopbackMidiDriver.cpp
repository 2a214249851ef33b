#include "transport/drivers/loopback/LoopbackMidiDriver.h"

#include <algorithm>
#include <utility>

namespace tarvix {

struct LoopbackPort : BufferedMidiPort {
    LoopbackPort(MidiDirection direction, MidiCallback callback, void* instance,
                 LoopbackMidiDevice& device)
        : BufferedMidiPort(direction, callback, instance), m_device(&device)
    {
    }

    LoopbackMidiDevice* m_device;
};

// ---- the device end ----

LoopbackMidiDevice::LoopbackMidiDevice(CLoopbackMidiDriver& driver, std::string name)
    : m_driver(driver), m_name(std::move(name))
{
}

void LoopbackMidiDevice::Feed(const std::uint8_t* data, std::size_t size)
{
    {
        const std::lock_guard lock(m_driver.m_ports.GetMutex());
        if (m_input == nullptr || data == nullptr) {
            return;
        }
        m_driver.m_ports.Receive(*m_input, data, size);
    }
    m_driver.m_ports.Deliver();
}

void LoopbackMidiDevice::Feed(const std::vector<std::uint8_t>& bytes)
{
    Feed(bytes.data(), bytes.size());
}

std::vector<std::uint8_t> LoopbackMidiDevice::TakeReceived()
{
    const std::lock_guard lock(m_driver.m_ports.GetMutex());
    return std::exchange(m_received, {});
}

void LoopbackMidiDevice::SetReceiver(Receiver receiver)
{
    const std::lock_guard lock(m_driver.m_ports.GetMutex());
    m_receiver = std::move(receiver);
}

void LoopbackMidiDevice::SetHoldOutput(bool hold)
{
    const std::lock_guard lock(m_driver.m_ports.GetMutex());
    m_holdOutput = hold;
}

std::size_t LoopbackMidiDevice::ReleaseOutput(std::size_t count)
{
    std::size_t released = 0;
    {
        const std::lock_guard lock(m_driver.m_ports.GetMutex());
        while (m_output != nullptr && released < count && !m_output->m_output.empty()) {
            m_driver.SendFront(*m_output);
            ++released;
        }
    }
    m_driver.m_ports.Deliver();
    return released;
}

std::size_t LoopbackMidiDevice::GetHeldOutputCount() const
{
    const std::lock_guard lock(m_driver.m_ports.GetMutex());
    return m_output == nullptr ? 0 : m_output->m_output.size();
}

void LoopbackMidiDevice::FailOutput(const std::string& reason)
{
    {
        const std::lock_guard lock(m_driver.m_ports.GetMutex());
        if (m_output != nullptr)
            m_driver.m_ports.Fail(*m_output, reason);
    }
    m_driver.m_ports.Deliver();
}

bool LoopbackMidiDevice::IsInputOpen() const
{
    const std::lock_guard lock(m_driver.m_ports.GetMutex());
    return m_input != nullptr;
}

bool LoopbackMidiDevice::IsOutputOpen() const
{
    const std::lock_guard lock(m_driver.m_ports.GetMutex());
    return m_output != nullptr;
}

std::uint64_t LoopbackMidiDevice::GetLostBytes() const
{
    const std::lock_guard lock(m_driver.m_ports.GetMutex());
    return m_input == nullptr ? 0 : m_input->m_input.GetLostBytes();
}

// ---- the driver ----

CLoopbackMidiDriver::CLoopbackMidiDriver(std::string name) : m_name(std::move(name)) {}
CLoopbackMidiDriver::~CLoopbackMidiDriver() = default;

LoopbackMidiDevice& CLoopbackMidiDriver::CreatePort(const std::string& name)
{
    const std::lock_guard lock(m_ports.GetMutex());
    m_devices.push_back(std::unique_ptr<LoopbackMidiDevice>(new LoopbackMidiDevice(*this, name)));
    return *m_devices.back();
}

bool CLoopbackMidiDriver::RemovePort(const std::string& name)
{
    const std::lock_guard lock(m_ports.GetMutex());
    for (const auto& device : m_devices) {
        if (device->m_plugged && device->m_name == name) {
            device->m_plugged = false;
            return true;
        }
    }
    return false;
}

LoopbackMidiDevice* CLoopbackMidiDriver::FindPort(const std::string& name)
{
    const std::lock_guard lock(m_ports.GetMutex());
    for (const auto& device : m_devices) {
        if (device->m_plugged && device->m_name == name) {
            return device.get();
        }
    }
    return nullptr;
}

void CLoopbackMidiDriver::SetUnavailableReason(const std::string& reason)
{
    const std::lock_guard lock(m_ports.GetMutex());
    m_unavailableReason = reason;
}

std::string CLoopbackMidiDriver::GetName() const
{
    return m_name;
}

std::uint32_t CLoopbackMidiDriver::GetNumDevs(MidiDirection /*direction*/)
{
    const std::lock_guard lock(m_ports.GetMutex());
    return static_cast<std::uint32_t>(std::count_if(
        m_devices.begin(), m_devices.end(), [](const auto& device) { return device->m_plugged; }));
}

LoopbackMidiDevice* CLoopbackMidiDriver::PluggedDevice(std::uint32_t index) const
{
    std::uint32_t seen = 0;
    for (const auto& device : m_devices) {
        if (device->m_plugged && seen++ == index) {
            return device.get();
        }
    }
    return nullptr;
}

MidiResult CLoopbackMidiDriver::GetDevName(MidiDirection /*direction*/, std::uint32_t index,
                                           std::string& name)
{
    const std::lock_guard lock(m_ports.GetMutex());
    const LoopbackMidiDevice* device = PluggedDevice(index);
    if (device == nullptr) {
        return kMidiBadDeviceId;
    }
    name = device->m_name;
    return kMidiNoError;
}

MidiResult CLoopbackMidiDriver::Open(MidiDirection direction, std::uint32_t index,
                                     MidiCallback callback, void* instance, MidiHandle& handle)
{
    {
        const std::lock_guard lock(m_ports.GetMutex());
        LoopbackMidiDevice* device = PluggedDevice(index);
        if (device == nullptr) {
            return kMidiBadDeviceId;
        }
        LoopbackPort*& slot =
            direction == MidiDirection::Input ? device->m_input : device->m_output;
        if (slot != nullptr) {
            return kMidiAllocated;
        }
        auto port = std::make_unique<LoopbackPort>(direction, callback, instance, *device);
        slot = port.get();
        handle = port.get();
        m_ports.Insert(std::move(port));
    }
    m_ports.Deliver();
    return kMidiNoError;
}

void CLoopbackMidiDriver::ClosePort(BufferedMidiPort& closed)
{
    auto& port = static_cast<LoopbackPort&>(closed);
    LoopbackMidiDevice& device = *port.m_device;
    (port.m_direction == MidiDirection::Input ? device.m_input : device.m_output) = nullptr;
}

bool CLoopbackMidiDriver::IsSoftwareOnly(MidiHandle /*handle*/)
{
    return true;
}

void CLoopbackMidiDriver::SendFront(LoopbackPort& port)
{
    const std::uint8_t* data = nullptr;
    const std::size_t size = CBufferedMidiPorts::PeekOutput(port, data);
    LoopbackMidiDevice& device = *port.m_device;
    if (device.m_receiver) {
        // A copy, and through the callback queue: the receiver runs without
        // the lock (it may Feed) and still before this buffer's BufferDone.
        m_ports.Post(
            [receiver = device.m_receiver, bytes = std::vector<std::uint8_t>(data, data + size)] {
                receiver(bytes.data(), bytes.size());
            });
    } else {
        device.m_received.insert(device.m_received.end(), data, data + size);
    }
    m_ports.Sent(port, size);
}

void CLoopbackMidiDriver::OutputQueued(BufferedMidiPort& queued)
{
    const std::lock_guard lock(m_ports.GetMutex());
    auto& port = static_cast<LoopbackPort&>(queued);
    while (!port.m_device->m_holdOutput && !port.m_output.empty()) {
        SendFront(port);
    }
}

} // namespace tarvix
