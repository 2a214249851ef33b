#include "transport/drivers/MidiService.h"

#include "transport/drivers/MidiErrorText.h"

#include <utility>

namespace tarvix {

namespace {

std::size_t Slot(MidiDirection direction)
{
    return direction == MidiDirection::Input ? 0 : 1;
}

} // namespace

CMidiService::CMidiService(std::vector<std::unique_ptr<IMidiDriver>> backends)
    : m_backends(std::move(backends))
{
}

CMidiService::~CMidiService() = default;

IMidiDriver* CMidiService::FindBackend(const std::string& name) const
{
    for (const auto& backend : m_backends) {
        if (backend->GetName() == name) {
            return backend.get();
        }
    }
    return nullptr;
}

std::string CMidiService::GetName() const
{
    std::string name;
    for (const auto& backend : m_backends) {
        name += (name.empty() ? "" : "+") + backend->GetName();
    }
    return name;
}

std::uint32_t CMidiService::GetNumDevs(MidiDirection direction)
{
    std::vector<std::uint32_t> counts;
    std::uint32_t total = 0;
    for (const auto& backend : m_backends) {
        counts.push_back(backend->GetNumDevs(direction));
        total += counts.back();
    }
    const std::lock_guard lock(m_mutex);
    m_counts[Slot(direction)] = std::move(counts);
    return total;
}

CMidiService::Place CMidiService::Locate(MidiDirection direction, std::uint32_t index)
{
    bool counted = false;
    {
        const std::lock_guard lock(m_mutex);
        counted = !m_counts[Slot(direction)].empty();
    }
    if (!counted) {
        GetNumDevs(direction);
    }
    const std::lock_guard lock(m_mutex);
    const std::vector<std::uint32_t>& counts = m_counts[Slot(direction)];
    for (std::size_t i = 0; i < counts.size() && i < m_backends.size(); ++i) {
        if (index < counts[i]) {
            return {m_backends[i].get(), index};
        }
        index -= counts[i];
    }
    return {};
}

MidiResult CMidiService::GetDevName(MidiDirection direction, std::uint32_t index, std::string& name)
{
    const Place place = Locate(direction, index);
    if (place.backend == nullptr) {
        return kMidiBadDeviceId;
    }
    std::string portName;
    const MidiResult result = place.backend->GetDevName(direction, place.index, portName);
    if (result == kMidiNoError) {
        name = place.backend->GetName() + kPrefixSeparator + portName;
    }
    return result;
}

MidiResult CMidiService::Open(MidiDirection direction, std::uint32_t index, MidiCallback callback,
                              void* instance, MidiHandle& handle)
{
    const Place place = Locate(direction, index);
    if (place.backend == nullptr) {
        return kMidiBadDeviceId;
    }
    MidiHandle opened = nullptr;
    const MidiResult result =
        place.backend->Open(direction, place.index, callback, instance, opened);
    if (result == kMidiNoError) {
        const std::lock_guard lock(m_mutex);
        m_owners[opened] = place.backend;
        handle = opened;
    }
    return result;
}

IMidiDriver* CMidiService::Target(MidiHandle handle) const
{
    const std::lock_guard lock(m_mutex);
    const auto it = m_owners.find(handle);
    return it == m_owners.end() ? nullptr : it->second;
}

void CMidiService::Closed(MidiHandle handle)
{
    const std::lock_guard lock(m_mutex);
    m_owners.erase(handle);
}

std::string CMidiService::GetErrorText(MidiResult result) const
{
    return GetMidiErrorText(result);
}

std::string CMidiService::GetUnavailableReason() const
{
    if (m_backends.empty()) {
        return "No MIDI backend is built into this program.";
    }
    std::string reasons;
    for (const auto& backend : m_backends) {
        const std::string reason = backend->GetUnavailableReason();
        if (!reason.empty()) {
            reasons +=
                (reasons.empty() ? "" : "\n") + backend->GetName() + kPrefixSeparator + reason;
        }
    }
    return reasons;
}

} // namespace tarvix
