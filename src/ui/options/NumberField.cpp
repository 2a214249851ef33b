#include "ui/options/NumberField.h"

#include <algorithm>

namespace tarvix {

namespace {
// Room for any number typed with the digits the field lets in.
constexpr int kTypedMaximum = 999999999;
constexpr int kMaxDigits = 9;
} // namespace

CNumberField::CNumberField(QWidget* parent) : QSpinBox(parent)
{
    setRange(0, kTypedMaximum);
    setCorrectionMode(QAbstractSpinBox::CorrectToPreviousValue);
    setAccelerated(true);
}

void CNumberField::SetValidRange(std::uint32_t min, std::uint32_t max)
{
    m_min = min;
    m_max = max;
}

void CNumberField::SetNumber(std::uint32_t value)
{
    setValue(static_cast<int>(std::min<std::uint32_t>(value, kTypedMaximum)));
}

bool CNumberField::ReadNumber(std::uint32_t& value) const
{
    const QString entry = text().trimmed();
    if (entry.isEmpty() || entry.size() > kMaxDigits)
        return false;
    for (const QChar c : entry) {
        if (c < QLatin1Char('0') || c > QLatin1Char('9'))
            return false;
    }
    const std::uint32_t number = entry.toUInt();
    if (number < m_min || number > m_max)
        return false;
    value = number;
    return true;
}

QString CNumberField::RangeMessage() const
{
    return tr("Please enter an integer between %1 and %2.").arg(m_min).arg(m_max);
}

void CNumberField::stepBy(int steps)
{
    std::uint32_t current = 0;
    if (!ReadNumber(current))
        current = static_cast<std::uint32_t>(std::clamp<long long>(value(), m_min, m_max));
    const long long next = std::clamp<long long>(static_cast<long long>(current) + steps, m_min, m_max);
    setValue(static_cast<int>(next));
    selectAll();
}

QAbstractSpinBox::StepEnabled CNumberField::stepEnabled() const
{
    const auto current = static_cast<long long>(value());
    StepEnabled enabled = StepNone;
    if (current > static_cast<long long>(m_min))
        enabled |= StepDownEnabled;
    if (current < static_cast<long long>(m_max))
        enabled |= StepUpEnabled;
    return enabled;
}

} // namespace tarvix
