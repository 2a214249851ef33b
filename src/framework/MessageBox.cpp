#include "framework/MessageBox.h"

#include <QApplication>

#include <deque>

namespace tarvix {

namespace {
struct Script {
    std::deque<CMessageBox::Button> answers;
    CMessageBox::Button unattended = QMessageBox::NoButton;
    QString lastText;
    QString lastCaption;
    QMessageBox::Icon lastIcon = QMessageBox::NoIcon;
    CMessageBox::Button lastDefault = QMessageBox::NoButton;
    int shown = 0;
};

Script& TheScript()
{
    static Script script;
    return script;
}
} // namespace

CMessageBox::Button CMessageBox::Report(QWidget* parent, const QString& text,
                                        const QString& caption, QMessageBox::Icon icon,
                                        QMessageBox::StandardButtons buttons, Button defaultButton)
{
    QString shownText = text;
    while (shownText.endsWith(QLatin1Char('\n')) || shownText.endsWith(QLatin1Char('\r')))
        shownText.chop(1);
    if (icon == QMessageBox::NoIcon)
        icon = caption.isEmpty() ? QMessageBox::Critical : QMessageBox::Warning;
    const QString shownCaption =
        caption.isEmpty() ? QApplication::applicationDisplayName() : caption;

    Script& script = TheScript();
    script.lastText = shownText;
    script.lastCaption = shownCaption;
    script.lastIcon = icon;
    script.lastDefault = defaultButton;
    ++script.shown;
    if (!script.answers.empty()) {
        const Button answer = script.answers.front();
        script.answers.pop_front();
        return answer;
    }
    if (script.unattended != QMessageBox::NoButton)
        return script.unattended;

    QMessageBox box(icon, shownCaption, shownText, buttons, parent);
    if (defaultButton != QMessageBox::NoButton)
        box.setDefaultButton(defaultButton);
    return static_cast<Button>(box.exec());
}

void CMessageBox::SetNextAnswer(Button answer)
{
    TheScript().answers.push_back(answer);
}
void CMessageBox::SetUnattendedAnswer(Button answer)
{
    TheScript().unattended = answer;
}
QString CMessageBox::LastText()
{
    return TheScript().lastText;
}
QString CMessageBox::LastCaption()
{
    return TheScript().lastCaption;
}
QMessageBox::Icon CMessageBox::LastIcon()
{
    return TheScript().lastIcon;
}
CMessageBox::Button CMessageBox::LastDefaultButton()
{
    return TheScript().lastDefault;
}
int CMessageBox::ShownCount()
{
    return TheScript().shown;
}
void CMessageBox::ResetScript()
{
    TheScript() = Script{};
}

} // namespace tarvix
