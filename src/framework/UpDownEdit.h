#pragma once

#include <QAbstractSpinBox>

#include <optional>

namespace tarvix {

// A number field with up and down arrows that, unlike QSpinBox, lets the
// user type anything: the arrows step within the range, and the dialog
// checks the text when it is confirmed, so a refused value can be reported
// in words instead of silently corrected.
class CUpDownEdit : public QAbstractSpinBox {
    Q_OBJECT
public:
    explicit CUpDownEdit(QWidget* parent = nullptr);

    void SetRange(int minimum, int maximum);
    void SetValue(int value);
    void SetText(const QString& text);
    // The text as a whole integer, or nothing.
    std::optional<int> Value() const;
    // The same, but only when it lies within the range.
    std::optional<int> ValueInRange() const;
    QString SelectedText() const;
    // After a refused value: the whole text selected and the focus here.
    void SelectForCorrection();

    void stepBy(int steps) override;
    QSize sizeHint() const override;

signals:
    void textChanged(const QString& text);

protected:
    QValidator::State validate(QString& input, int& pos) const override;
    StepEnabled stepEnabled() const override;

private:
    int m_minimum = 0;
    int m_maximum = 99;
};

} // namespace tarvix
