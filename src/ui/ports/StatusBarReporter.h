#pragma once

#include "transport/StatusReporter.h"

#include <QPointer>
#include <QStatusBar>

namespace tarvix {

// The ports' progress texts in the window's status bar. Pane 0's text
// covers the memory pane while it is shown; an empty text uncovers it.
// The other panes belong to the frame, which shows the open ports itself.
class CStatusBarReporter : public IStatusReporter {
public:
    void SetStatusBar(QStatusBar* statusBar) { m_statusBar = statusBar; }
    QStatusBar* GetStatusBar() const { return m_statusBar; }

    void SetStatusText(int pane, const std::string& text) override;

private:
    // The bar goes with the window, before the ports do.
    QPointer<QStatusBar> m_statusBar;
};

} // namespace tarvix
