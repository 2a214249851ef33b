#pragma once

#include <array>
#include <cstdint>

class QRect;
class QWidget;

namespace tarvix {

// A top-level window's placement as a fixed-size record, so the store can
// check its size: whether it is maximized and its normal geometry (x, y,
// width, height), five little-endian 32-bit values.
using WindowPlacement = std::array<std::uint8_t, 20>;

WindowPlacement SaveWindowPlacement(const QWidget& window);
// Whether the title bar above a window of this normal geometry lies
// entirely on the screens' available areas.
bool IsTitleBarOnScreen(const QWidget& window, const QRect& normal);
// Ignores a record with no size. The position is taken only when the
// window's whole title bar would be on the screens, so the window can
// always be grabbed and moved; otherwise it keeps the size and the system
// places it (a screen unplugged, or a scale changed since).
void RestoreWindowPlacement(QWidget& window, const WindowPlacement& placement);

} // namespace tarvix
