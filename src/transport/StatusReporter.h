#pragma once

#include <string>

namespace tarvix {

// Where the ports report what they are doing ("Opening Midi Input device")
// and where their open state shows: the editor's status bar, a terminal,
// or nothing (a null reporter). Whoever opens the ports passes one in.
class IStatusReporter {
public:
    virtual ~IStatusReporter();
    // Text for a pane of the status bar; pane 0 is the message pane.
    virtual void SetStatusText(int pane, const std::string& text) = 0;
};

} // namespace tarvix
