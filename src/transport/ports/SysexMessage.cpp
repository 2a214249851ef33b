#include "transport/ports/SysexMessage.h"

#include "model/SysexDumpFormat.h"

#include <algorithm>

namespace tarvix {

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
