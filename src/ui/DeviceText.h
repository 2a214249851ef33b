#pragma once

#include <QString>

#include <string>

namespace tarvix {

// Names and listings from the document are the device's bytes, not UTF-8.
inline QString FromDeviceText(const std::string& text)
{
    return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace tarvix
