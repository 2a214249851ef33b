#include "support/MidiCallbackRecorder.h"

namespace tarvix::test {

void MidiCallbackRecorder::Callback(MidiHandle handle, MidiCallbackMessage message, void* instance,
                                    MidiHeader* header)
{
    auto* self = static_cast<MidiCallbackRecorder*>(instance);
    Call call{handle, message, header, {}};
    if (message == MidiCallbackMessage::LongData && header != nullptr) {
        call.bytes.assign(header->data, header->data + header->bytesRecorded);
    }
    {
        const std::lock_guard lock(self->m_mutex);
        self->m_calls.push_back(call);
    }
    if (self->onCall) {
        self->onCall(call);
    }
    self->m_changed.notify_all();
}

std::vector<MidiCallbackRecorder::Call> MidiCallbackRecorder::Calls() const
{
    const std::lock_guard lock(m_mutex);
    return m_calls;
}

std::vector<MidiCallbackRecorder::Call>
MidiCallbackRecorder::Calls(MidiCallbackMessage message) const
{
    std::vector<Call> calls;
    const std::lock_guard lock(m_mutex);
    for (const Call& call : m_calls) {
        if (call.message == message) {
            calls.push_back(call);
        }
    }
    return calls;
}

std::vector<MidiCallbackRecorder::Call> MidiCallbackRecorder::CallsSince(std::size_t first) const
{
    const std::lock_guard lock(m_mutex);
    if (first >= m_calls.size()) {
        return {};
    }
    return {m_calls.begin() + static_cast<std::ptrdiff_t>(first), m_calls.end()};
}

std::vector<std::uint8_t> MidiCallbackRecorder::Received() const
{
    std::vector<std::uint8_t> bytes;
    const std::lock_guard lock(m_mutex);
    for (const Call& call : m_calls) {
        bytes.insert(bytes.end(), call.bytes.begin(), call.bytes.end());
    }
    return bytes;
}

bool MidiCallbackRecorder::WaitFor(
    const std::function<bool(const MidiCallbackRecorder&)>& condition,
    std::chrono::milliseconds timeout) const
{
    // The condition reads the calls under the lock itself, so it is checked
    // unlocked; the short wait covers a change between check and wait.
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    while (!condition(*this)) {
        if (std::chrono::steady_clock::now() >= deadline) {
            return false;
        }
        std::unique_lock lock(m_mutex);
        m_changed.wait_for(lock, std::chrono::milliseconds(10));
    }
    return true;
}

} // namespace tarvix::test
