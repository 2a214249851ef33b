#pragma once

#include <QString>

namespace tarvix {

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
};

// Stands in until the transport's ports are wired to the window: both
// ports stay closed.
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
