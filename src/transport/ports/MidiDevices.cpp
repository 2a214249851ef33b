#include "transport/ports/MidiDevices.h"

#include "model/TextBuilder.h"
#include "transport/StatusReporter.h"
#include "transport/ports/MidiIn.h"
#include "transport/ports/MidiOut.h"

namespace tarvix {

namespace {
void ShowStatus(IStatusReporter* status, const std::string& text)
{
    if (status != nullptr)
        status->SetStatusText(0, text);
}

bool OpenNamed(CMidiDevice& device, const std::string& name, const MessageSink& reportMessage)
{
    if (name.empty() || device.OpenByName(name))
        return true;
    if (reportMessage) {
        reportMessage(FormatText("Can't open device \"%s\", error: %s\n", name.c_str(),
                                 device.GetLastErrorText().c_str()));
    }
    return false;
}
} // namespace

bool OpenMidiDevices(CMidiIn& input, CMidiOut& output, const PortSettings& settings,
                     IStatusReporter* status, const MessageSink& reportMessage)
{
    CloseMidiDevices(input, output);

    input.SetBufferSize(settings.inBufferSize);
    input.SetBufferCount(settings.inBufferCount);
    ShowStatus(status, "Opening Midi Input device");
    const bool inputOpened = OpenNamed(input, settings.inDevice, reportMessage);

    output.SetBufferSize(settings.outBufferSize);
    output.SetBufferCount(settings.outBufferCount);
    output.SetBufferDelay(settings.outBufferDelay);
    output.SetSysexDelay(settings.outSysexDelay);
    ShowStatus(status, "Opening Midi Output device");
    const bool outputOpened = OpenNamed(output, settings.outDevice, reportMessage);

    ShowStatus(status, "");
    return inputOpened && outputOpened;
}

void CloseMidiDevices(CMidiIn& input, CMidiOut& output)
{
    if (input.IsOpen())
        input.Close();
    if (output.IsOpen())
        output.Close();
}

} // namespace tarvix
