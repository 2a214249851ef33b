#pragma once

#include "ui/edit/NumberDialog.h"

#include <cstdint>

namespace tarvix {

// Set part beat count: the number of beats, 0 to 682.
class CPartLengthDialog : public CNumberDialog {
    Q_OBJECT
public:
    CPartLengthDialog(std::uint32_t beats, QWidget* parent = nullptr);

    std::uint32_t Beats() const { return static_cast<std::uint32_t>(Value()); }
};

} // namespace tarvix
