#pragma once

#include <string>

namespace tarvix {

class CSysexTransfer;

// What shows a transfer to the user: the editor's progress dialog, or the
// command line's progress bar.
class ITransferView {
public:
    virtual ~ITransferView();

    // A failure, shown modally in the editor.
    virtual void ReportMessage(const std::string& text) = 0;

    // Runs until the transfer is over or the user cancels: every 100 ms it
    // calls transfer.Tick() and shows GetText() and the progress. Returns
    // true when Tick() said the transfer is over, false on cancel.
    virtual bool RunProgress(CSysexTransfer& transfer) = 0;
};

} // namespace tarvix
