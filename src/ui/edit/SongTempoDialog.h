#pragma once

#include "ui/edit/NumberDialog.h"

#include <cstdint>

namespace tarvix {

// Set song tempo: beats per minute, 20 to 255.
class CSongTempoDialog : public CNumberDialog {
    Q_OBJECT
public:
    CSongTempoDialog(std::uint32_t tempo, QWidget* parent = nullptr);

    std::uint32_t Tempo() const { return static_cast<std::uint32_t>(Value()); }
};

} // namespace tarvix
