#pragma once

#include <QSpinBox>

#include <cstdint>

namespace tarvix {

// A number edit with its up-down buttons. The buttons keep to the valid
// range; typing takes any digits, and a value outside the range is only
// refused when the page is left, with a message that names the range.
class CNumberField : public QSpinBox {
    Q_OBJECT
public:
    explicit CNumberField(QWidget* parent = nullptr);

    void SetValidRange(std::uint32_t min, std::uint32_t max);
    std::uint32_t ValidMin() const { return m_min; }
    std::uint32_t ValidMax() const { return m_max; }

    void SetNumber(std::uint32_t value);
    // False for an empty, non-numeric or out-of-range entry.
    bool ReadNumber(std::uint32_t& value) const;
    // What the user is told when ReadNumber fails.
    QString RangeMessage() const;

    void stepBy(int steps) override;

protected:
    StepEnabled stepEnabled() const override;

private:
    std::uint32_t m_min = 0;
    std::uint32_t m_max = 0;
};

} // namespace tarvix
