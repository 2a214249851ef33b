#include "ui/DeviceNameValidator.h"

#include "model/Mmt8Limits.h"

#include <QLineEdit>

namespace tarvix {

bool CDeviceNameValidator::IsShown(QChar character)
{
    const char16_t code = character.unicode();
    return code >= 0x20 && code <= 0x7D && code != u'\\';
}

QString CDeviceNameValidator::Shown(const QString& text)
{
    QString shown;
    // "é" splits into "e" and a combining accent, which is then left out.
    for (const QChar character : text.normalized(QString::NormalizationForm_KD))
        if (IsShown(character))
            shown += character;
    return shown;
}

QValidator::State CDeviceNameValidator::validate(QString& input, int& position) const
{
    const QString shown = Shown(input);
    if (shown != input) {
        // The cursor stays after what was typed before it.
        position = static_cast<int>(Shown(input.left(position)).size());
        input = shown;
    }
    return input.size() <= static_cast<qsizetype>(kMaxNameLength) ? Acceptable : Invalid;
}

void ApplyDeviceNameRules(QLineEdit& field)
{
    field.setMaxLength(static_cast<int>(kMaxNameLength));
    field.setValidator(new CDeviceNameValidator(&field));
}

} // namespace tarvix
