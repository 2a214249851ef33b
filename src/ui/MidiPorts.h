#pragma once

#include <QString>

class QStatusBar;

namespace tarvix {

class CMidiIn;
class CMidiOut;

// What the frame needs of the two MIDI ports: open them at start-up, close
// them at shut-down, and tell which are open under which name.
class IMidiPorts {
public:
    virtual ~IMidiPorts() = default;

    virtual void OpenDevices() = 0;
    virtual void CloseDevices() = 0;
    virtual bool IsInputOpen() const = 0;
    virtual bool IsOutputOpen() const = 0;
    virtual QString InputName() const = 0;
    virtual QString OutputName() const = 0;

    // Where opening the devices shows what it is doing; the frame's status
    // bar from before the first open.
    virtual void SetStatusBar(QStatusBar* /*statusBar*/) {}
    // The transport's ports, for the transfers and the Options dialog's
    // port lists; null where there are none behind this object.
    virtual CMidiIn* InputPort() { return nullptr; }
    virtual CMidiOut* OutputPort() { return nullptr; }
};

// Two ports that stay closed, for a window that runs without MIDI.
class CClosedMidiPorts : public IMidiPorts {
public:
    void OpenDevices() override {}
    void CloseDevices() override {}
    bool IsInputOpen() const override { return false; }
    bool IsOutputOpen() const override { return false; }
    QString InputName() const override { return {}; }
    QString OutputName() const override { return {}; }
};

} // namespace tarvix
