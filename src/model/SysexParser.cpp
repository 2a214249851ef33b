#include "model/SysexParser.h"

#include "model/DeviceImage.h"
#include "model/Mmt8Memory.h"
#include "model/SysexDumpFormat.h"
#include "model/SysexPacking.h"

#include <algorithm>

namespace tarvix {

bool CSysexParser::IsComplete() const
{
    return !m_buffer.empty() && m_buffer.front() == kSysexStart && m_buffer.back() == kSysexEnd;
}

int CSysexParser::HandleMessage(std::span<const std::uint8_t>, CMmt8Memory&)
{
    return 1;
}

std::uint32_t CSysexParser::Parse(CMmt8Memory& memory)
{
    std::uint32_t handled = 0;
    std::size_t cursor = 0;
    while (cursor < m_buffer.size() && m_buffer[cursor] == kSysexStart) {
        const auto rest = m_buffer.subspan(cursor);
        const auto end = std::find(rest.begin(), rest.end(), kSysexEnd);
        if (end == rest.end())
            break;
        const auto message = rest.first(static_cast<std::size_t>(end - rest.begin()) + 1);
        if (HandleMessage(message, memory) == 0)
            break;
        handled += static_cast<std::uint32_t>(message.size());
        cursor += message.size();
    }
    return handled;
}

// Bytes 1 and 2 of the maker's id are not checked: the device's own dumps
// always carry them as 00 00, and a dump that differs there still loads.
int CMmt8SysexParser::HandleMessage(std::span<const std::uint8_t> message, CMmt8Memory& memory)
{
    if (message.size() < kDumpHeader.size() || message[3] != kDumpHeader[3] ||
        message[4] != kDumpHeader[4])
        return 0;
    // Everything between the header and the trailing byte is packed image;
    // the trailing byte still lends its bits to a final partial group.
    const std::size_t packedEnd =
        message.size() >= kDumpOverhead ? message.size() - 2 : kDumpHeader.size();
    const auto packed = message.subspan(kDumpHeader.size(), packedEnd - kDumpHeader.size());
    const std::uint8_t trailing = packedEnd < message.size() ? message[packedEnd] : 0;
    const std::vector<std::uint8_t> image = UnpackSysexData(packed, trailing);

    memory.globalBlock.fill(0);
    std::copy_n(image.begin(), std::min(image.size(), memory.globalBlock.size()),
                memory.globalBlock.begin());
    LoadImage(memory, image);
    return 1;
}

} // namespace tarvix
