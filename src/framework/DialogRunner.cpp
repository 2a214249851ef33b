#include "framework/DialogRunner.h"

#include <QDialog>

#include <deque>

namespace tarvix {

namespace {
struct Script {
    std::deque<CDialogRunner::Responder> next;
    CDialogRunner::Responder unattended;
};

Script& TheScript()
{
    static Script script;
    return script;
}
} // namespace

int CDialogRunner::Exec(QDialog& dialog)
{
    Script& script = TheScript();
    if (!script.next.empty()) {
        Responder responder = std::move(script.next.front());
        script.next.pop_front();
        return responder(dialog);
    }
    if (script.unattended)
        return script.unattended(dialog);
    return dialog.exec();
}

void CDialogRunner::SetNextResponder(Responder responder)
{
    TheScript().next.push_back(std::move(responder));
}

void CDialogRunner::SetUnattendedResponder(Responder responder)
{
    TheScript().unattended = std::move(responder);
}

void CDialogRunner::ResetScript()
{
    TheScript() = Script{};
}

} // namespace tarvix
