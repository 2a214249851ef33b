#pragma once

#include <QValidator>

class QLineEdit;

namespace tarvix {

// What the device's display can show of a name: plain ASCII from the space
// to '}', without the backslash (its display shows other signs for '\', '~'
// and DEL), 14 characters at most. A typed or pasted letter with an accent
// becomes its plain letter, any other character is refused, as it is typed,
// so the field never holds what the device would not show.
class CDeviceNameValidator : public QValidator {
    Q_OBJECT
public:
    using QValidator::QValidator;

    State validate(QString& input, int& position) const override;

    static bool IsShown(QChar character);
    // The text as the field keeps it: accents taken off, other characters
    // the device cannot show left out.
    static QString Shown(const QString& text);
};

// A name field: the validator and the length limit.
void ApplyDeviceNameRules(QLineEdit& field);

} // namespace tarvix
