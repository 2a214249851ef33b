#include "framework/WindowPlacement.h"

#include <QGuiApplication>
#include <QRegion>
#include <QScreen>
#include <QStyle>
#include <QWidget>

#include <algorithm>

namespace tarvix {

namespace {
void Put(WindowPlacement& record, std::size_t slot, int value)
{
    const auto bits = static_cast<std::uint32_t>(value);
    for (std::size_t i = 0; i < 4; ++i)
        record[slot * 4 + i] = static_cast<std::uint8_t>(bits >> (8 * i));
}

int Get(const WindowPlacement& record, std::size_t slot)
{
    std::uint32_t bits = 0;
    for (std::size_t i = 0; i < 4; ++i)
        bits |= static_cast<std::uint32_t>(record[slot * 4 + i]) << (8 * i);
    return static_cast<int>(bits);
}
} // namespace

WindowPlacement SaveWindowPlacement(const QWidget& window)
{
    const QRect normal =
        window.normalGeometry().isValid() ? window.normalGeometry() : window.geometry();
    WindowPlacement record{};
    Put(record, 0, window.isMaximized() ? 1 : 0);
    Put(record, 1, normal.x());
    Put(record, 2, normal.y());
    Put(record, 3, normal.width());
    Put(record, 4, normal.height());
    return record;
}

bool IsTitleBarOnScreen(const QWidget& window, const QRect& normal)
{
    // The normal geometry is the inside of the frame; the title bar stands
    // above it.
    const int height = std::max(1, window.style()->pixelMetric(QStyle::PM_TitleBarHeight));
    const QRect titleBar(normal.left(), normal.top() - height, normal.width(), height);
    QRegion screens;
    for (const QScreen* screen : QGuiApplication::screens())
        screens += screen->availableGeometry();
    return QRegion(titleBar).subtracted(screens).isEmpty();
}

void RestoreWindowPlacement(QWidget& window, const WindowPlacement& placement)
{
    const QRect normal(Get(placement, 1), Get(placement, 2), Get(placement, 3), Get(placement, 4));
    if (normal.width() <= 0 || normal.height() <= 0 || normal.width() > 100000 ||
        normal.height() > 100000)
        return;
    if (IsTitleBarOnScreen(window, normal))
        window.setGeometry(normal);
    else
        window.resize(normal.size());
    if (Get(placement, 0) == 1)
        window.setWindowState(window.windowState() | Qt::WindowMaximized);
}

} // namespace tarvix
