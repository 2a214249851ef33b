#include "ui/StatusPanes.h"

#include "model/Mmt8Memory.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QStatusBar>

namespace tarvix {

namespace {
constexpr int kIconSize = 16;

void ShowIcon(QLabel& label, const char* file, bool shown)
{
    label.setPixmap(shown ? QIcon(QString::fromLatin1(file)).pixmap(kIconSize, kIconSize)
                          : QPixmap());
    label.setVisible(shown);
}
} // namespace

CStatusPanes::CStatusPanes(QStatusBar& statusBar) : QObject(&statusBar)
{
    m_memory = MakePane(statusBar, "memoryPane", m_memoryIcon, m_memoryText);
    statusBar.addWidget(m_memory, 1);
    m_input = MakePane(statusBar, "inputPane", m_inputIcon, m_inputText);
    m_output = MakePane(statusBar, "outputPane", m_outputIcon, m_outputText);
    statusBar.addPermanentWidget(m_input);
    statusBar.addPermanentWidget(m_output);
    m_input->installEventFilter(this);
    m_output->installEventFilter(this);
    m_input->hide();
    m_output->hide();
    UpdateWidths();
}

QWidget* CStatusPanes::MakePane(QStatusBar& statusBar, const char* name, QLabel*& icon,
                                QLabel*& text)
{
    auto* pane = new QWidget(&statusBar);
    pane->setObjectName(QString::fromLatin1(name));
    auto* layout = new QHBoxLayout(pane);
    layout->setContentsMargins(2, 0, 2, 0);
    icon = new QLabel(pane);
    icon->setFixedSize(kIconSize, kIconSize);
    icon->hide();
    text = new QLabel(pane);
    text->setObjectName(QString::fromLatin1(name) + QStringLiteral("Text"));
    layout->addWidget(icon);
    layout->addWidget(text, 1);
    return pane;
}

void CStatusPanes::ShowMemory(std::uint32_t usedBytes)
{
    const QString text = QString::fromStdString(GetMemoryText(usedBytes));
    if (text != m_memoryText->text()) {
        m_memoryText->setText(text);
        m_memory->setToolTip(text);
        UpdateWidths();
    }
    ShowIcon(*m_memoryIcon, ":/icons/warning.svg", ExceedsCapacity(usedBytes));
}

void CStatusPanes::ShowPorts(const QString& inputName, const QString& outputName)
{
    m_inputText->setText(inputName);
    ShowIcon(*m_inputIcon, ":/icons/midi-in.svg", !inputName.isEmpty());
    m_input->setVisible(!inputName.isEmpty());
    m_input->setToolTip(inputName);
    m_outputText->setText(outputName);
    ShowIcon(*m_outputIcon, ":/icons/midi-out.svg", !outputName.isEmpty());
    m_output->setVisible(!outputName.isEmpty());
    m_output->setToolTip(outputName);
}

void CStatusPanes::UpdateWidths()
{
    // Room for the icon too, which comes and goes with the warning.
    m_memoryText->setMinimumWidth(
        m_memoryText->fontMetrics().horizontalAdvance(m_memoryText->text()) + 2);
    m_memory->setMinimumWidth(m_memoryText->minimumWidth() + kIconSize + 12);
}

QString CStatusPanes::MemoryText() const
{
    return m_memoryText->text();
}
bool CStatusPanes::IsWarningShown() const
{
    return !m_memoryIcon->isHidden();
}
QString CStatusPanes::InputText() const
{
    return m_inputText->text();
}
QString CStatusPanes::OutputText() const
{
    return m_outputText->text();
}

bool CStatusPanes::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::MouseButtonDblClick) {
        if (watched == m_input)
            emit inputPaneDoubleClicked();
        else if (watched == m_output)
            emit outputPaneDoubleClicked();
    }
    return QObject::eventFilter(watched, event);
}

} // namespace tarvix
