#include "ui/options/OptionsPage.h"

#include <QCoreApplication>
#include <QEvent>

namespace tarvix {

namespace {
const char* const kControlIdProperty = "controlId";

// Posted rather than done at once: the focus is only kept once the sheet
// has finished showing the page.
class CFocusRequest : public QEvent {
public:
    static QEvent::Type EventType()
    {
        static const auto type = static_cast<QEvent::Type>(QEvent::registerEventType());
        return type;
    }
    explicit CFocusRequest(int controlId) : QEvent(EventType()), m_controlId(controlId) {}
    int ControlId() const { return m_controlId; }

private:
    int m_controlId;
};
} // namespace

COptionsPage::COptionsPage(const QString& title, int focusControl, QWidget* parent)
    : QWidget(parent), m_title(title), m_focusControl(focusControl)
{
}

void COptionsPage::Create()
{
    if (m_created)
        return;
    m_created = true;
    FillControls();
    if (m_focusControl != 0) {
        QCoreApplication::postEvent(this, new CFocusRequest(m_focusControl));
        m_focusControl = 0;
    }
}

QWidget* COptionsPage::Control(int controlId) const
{
    for (QWidget* child : findChildren<QWidget*>()) {
        if (child->property(kControlIdProperty).toInt() == controlId)
            return child;
    }
    return nullptr;
}

void COptionsPage::SetControlId(QWidget& control, int controlId)
{
    control.setProperty(kControlIdProperty, controlId);
}

void COptionsPage::customEvent(QEvent* event)
{
    if (event->type() != CFocusRequest::EventType()) {
        QWidget::customEvent(event);
        return;
    }
    if (QWidget* control = Control(static_cast<CFocusRequest*>(event)->ControlId()))
        control->setFocus(Qt::OtherFocusReason);
}

} // namespace tarvix
