#pragma once

#include "transport/ports/MidiDevices.h"
#include "ui/MidiPorts.h"
#include "ui/ports/StatusBarReporter.h"

#include <memory>

namespace tarvix {

class CMidiIn;
class CMidiOut;
class CSettings;
class IMidiDriver;

// The transport's two ports over a MIDI driver: the system's in the
// program, the Loopback driver in tests. Opening reads the port names and
// buffer settings as they are at that moment, so reopening after the
// Options dialog picks up the user's changes.
class CDriverMidiPorts : public IMidiPorts {
public:
    CDriverMidiPorts(std::unique_ptr<IMidiDriver> driver, const CSettings& settings);
    ~CDriverMidiPorts() override;
    CDriverMidiPorts(const CDriverMidiPorts&) = delete;
    CDriverMidiPorts& operator=(const CDriverMidiPorts&) = delete;

    // Failures to open are reported in a message box, one per port.
    void OpenDevices() override;
    void CloseDevices() override;
    bool IsInputOpen() const override;
    bool IsOutputOpen() const override;
    QString InputName() const override;
    QString OutputName() const override;

    void SetStatusBar(QStatusBar* statusBar) override { m_status.SetStatusBar(statusBar); }
    CMidiIn* InputPort() override { return m_input.get(); }
    CMidiOut* OutputPort() override { return m_output.get(); }

    IMidiDriver& Driver() { return *m_driver; }

private:
    std::unique_ptr<IMidiDriver> m_driver;
    const CSettings& m_settings;
    std::unique_ptr<CMidiIn> m_input;
    std::unique_ptr<CMidiOut> m_output;
    CStatusBarReporter m_status;
    // The names the ports were opened by.
    QString m_inputName;
    QString m_outputName;
};

} // namespace tarvix
