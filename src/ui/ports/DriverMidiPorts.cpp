#include "ui/ports/DriverMidiPorts.h"

#include "framework/MessageBox.h"
#include "settings/MidiPortSettings.h"
#include "settings/Settings.h"
#include "transport/drivers/MidiDriver.h"
#include "transport/ports/MidiIn.h"
#include "transport/ports/MidiOut.h"

#include <QStatusBar>

namespace tarvix {

CDriverMidiPorts::CDriverMidiPorts(std::unique_ptr<IMidiDriver> driver, const CSettings& settings)
    : m_driver(std::move(driver)), m_settings(settings),
      m_input(std::make_unique<CMidiIn>(*m_driver)), m_output(std::make_unique<CMidiOut>(*m_driver))
{
}

CDriverMidiPorts::~CDriverMidiPorts()
{
    // The ports' workers and the driver's callbacks end before the driver goes.
    CloseDevices();
    m_input.reset();
    m_output.reset();
}

void CDriverMidiPorts::OpenDevices()
{
    const PortSettings settings = PortSettingsFor(m_settings.Values());
    QStatusBar* statusBar = m_status.GetStatusBar();
    QWidget* owner = statusBar != nullptr ? statusBar->window() : nullptr;
    OpenMidiDevices(*m_input, *m_output, settings, &m_status, [owner](const std::string& text) {
        CMessageBox::Report(owner, QString::fromStdString(text));
    });
    m_inputName = m_input->IsOpen() ? QString::fromStdString(settings.inDevice) : QString();
    m_outputName = m_output->IsOpen() ? QString::fromStdString(settings.outDevice) : QString();
}

void CDriverMidiPorts::CloseDevices()
{
    CloseMidiDevices(*m_input, *m_output);
    m_inputName.clear();
    m_outputName.clear();
}

bool CDriverMidiPorts::IsInputOpen() const
{
    return m_input->IsOpen();
}
bool CDriverMidiPorts::IsOutputOpen() const
{
    return m_output->IsOpen();
}
QString CDriverMidiPorts::InputName() const
{
    return m_inputName;
}
QString CDriverMidiPorts::OutputName() const
{
    return m_outputName;
}

} // namespace tarvix
