#include "ui/ports/StatusBarReporter.h"

namespace tarvix {

void CStatusBarReporter::SetStatusText(int pane, const std::string& text)
{
    if (pane != 0 || m_statusBar.isNull())
        return;
    if (text.empty())
        m_statusBar->clearMessage();
    else
        m_statusBar->showMessage(QString::fromStdString(text));
    // Opening a port blocks the event loop; the text must show meanwhile.
    m_statusBar->repaint();
}

} // namespace tarvix
