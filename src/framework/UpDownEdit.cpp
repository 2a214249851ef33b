#include "framework/UpDownEdit.h"

#include <QLineEdit>

#include <algorithm>

namespace tarvix {

CUpDownEdit::CUpDownEdit(QWidget* parent) : QAbstractSpinBox(parent)
{
    connect(lineEdit(), &QLineEdit::textChanged, this, &CUpDownEdit::textChanged);
}

void CUpDownEdit::SetRange(int minimum, int maximum)
{
    m_minimum = std::min(minimum, maximum);
    m_maximum = std::max(minimum, maximum);
    updateGeometry();
}

void CUpDownEdit::SetValue(int value)
{
    SetText(QString::number(value));
}

void CUpDownEdit::SetText(const QString& text)
{
    lineEdit()->setText(text);
}

std::optional<int> CUpDownEdit::Value() const
{
    bool ok = false;
    const int value = text().trimmed().toInt(&ok, 10);
    if (!ok)
        return std::nullopt;
    return value;
}

std::optional<int> CUpDownEdit::ValueInRange() const
{
    const std::optional<int> value = Value();
    if (!value || *value < m_minimum || *value > m_maximum)
        return std::nullopt;
    return value;
}

QString CUpDownEdit::SelectedText() const
{
    return lineEdit()->selectedText();
}

void CUpDownEdit::SelectForCorrection()
{
    selectAll();
    setFocus(Qt::OtherFocusReason);
}

void CUpDownEdit::stepBy(int steps)
{
    // Text that is no number steps from the bottom of the range.
    const long long current = Value().value_or(m_minimum);
    const long long next = std::clamp(current + steps, static_cast<long long>(m_minimum),
                                      static_cast<long long>(m_maximum));
    SetValue(static_cast<int>(next));
    selectAll();
}

QSize CUpDownEdit::sizeHint() const
{
    // The base class holds no values, so it leaves room for none: add the
    // range's widest number, as a spin box would.
    const QString low = QString::number(m_minimum);
    const QString high = QString::number(m_maximum);
    QSize size = QAbstractSpinBox::sizeHint();
    size.rwidth() += fontMetrics().horizontalAdvance(low.size() > high.size() ? low : high);
    return size;
}

QValidator::State CUpDownEdit::validate(QString&, int&) const
{
    return QValidator::Acceptable;
}

QAbstractSpinBox::StepEnabled CUpDownEdit::stepEnabled() const
{
    const std::optional<int> value = Value();
    StepEnabled enabled = StepNone;
    if (!value || *value < m_maximum)
        enabled |= StepUpEnabled;
    if (!value || *value > m_minimum)
        enabled |= StepDownEnabled;
    return enabled;
}

} // namespace tarvix
