#include "ui/views/ViewWindow.h"

#include "ui/DeviceText.h"

#include <QKeyEvent>

namespace tarvix {

CViewWindow::CViewWindow(QWidget* parent) : QWidget(parent, Qt::Window)
{
    setAttribute(Qt::WA_DeleteOnClose);
}

void CViewWindow::SetNumberedTitle(const QString& what, int number, const std::string& name)
{
    setWindowTitle(QStringLiteral("%1 - %2  %3")
                       .arg(what)
                       .arg(number, 2, 10, QLatin1Char('0'))
                       .arg(FromDeviceText(name)));
}

void CViewWindow::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier) {
        close();
        return;
    }
    QWidget::keyPressEvent(event);
}

} // namespace tarvix
