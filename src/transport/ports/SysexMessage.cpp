#include "transport/ports/SysexMessage.h"

#include "model/SysexDumpFormat.h"

#include <algorithm>
#include <atomic>

namespace tarvix {

namespace {
std::atomic<std::uint32_t> g_lastSequence{0};
} // namespace

CSysexMessage::CSysexMessage() : m_sequence(++g_lastSequence) {}

bool CSysexMessage::IsComplete() const
{
    const auto bytes = View();
    return !bytes.empty() && bytes.front() == kSysexStart && bytes.back() == kSysexEnd;
}

bool CSysexMessage::ContainsSysexEnd() const
{
    const auto bytes = View();
    return std::find(bytes.begin(), bytes.end(), kSysexEnd) != bytes.end();
}

} // namespace tarvix
