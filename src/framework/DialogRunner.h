#pragma once

#include <functional>

class QDialog;

namespace tarvix {

// Runs the program's own modal dialogs. A test installs a responder that
// gets the dialog instead of the user (it may read and fill its controls)
// and returns the result exec() would have returned.
class CDialogRunner {
public:
    using Responder = std::function<int(QDialog&)>;

    static int Exec(QDialog& dialog);
    // Answers the next dialog only.
    static void SetNextResponder(Responder responder);
    // Answers every dialog without a queued responder; empty shows them.
    static void SetUnattendedResponder(Responder responder);
    static void ResetScript();
};

} // namespace tarvix
