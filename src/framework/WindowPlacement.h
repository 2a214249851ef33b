#pragma once

#include <array>
#include <cstdint>

class QWidget;

namespace tarvix {

// A top-level window's placement as a fixed-size record, so the store can
// check its size: whether it is maximized and its normal geometry (x, y,
// width, height), five little-endian 32-bit values.
using WindowPlacement = std::array<std::uint8_t, 20>;

WindowPlacement SaveWindowPlacement(const QWidget& window);
// Ignores a record with no size; a window that would open on no screen
// keeps its size but lets the system place it.
void RestoreWindowPlacement(QWidget& window, const WindowPlacement& placement);

} // namespace tarvix
