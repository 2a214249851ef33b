#include "ui/transfer/TransferCommands.h"

#include "transport/transfer/DumpTransfer.h"
#include "ui/MidiPorts.h"
#include "ui/transfer/MidiProgressDlg.h"

namespace tarvix {

bool RunReceiveCommand(QWidget* parent, IMidiPorts& ports, CMmt8Memory& memory)
{
    CMidiProgressDlg dialog(parent);
    CMidiIn* input = ports.InputPort();
    CMidiOut* output = ports.OutputPort();
    if (input == nullptr || output == nullptr) {
        dialog.ReportMessage("Midi Input device is not open\n");
        return false;
    }
    return ReceiveDump(*input, *output, memory, dialog);
}

bool RunSendCommand(QWidget* parent, IMidiPorts& ports, const CMmt8Memory& memory)
{
    CMidiProgressDlg dialog(parent);
    CMidiIn* input = ports.InputPort();
    CMidiOut* output = ports.OutputPort();
    if (input == nullptr || output == nullptr) {
        dialog.ReportMessage("Midi Output device is not open\n");
        return false;
    }
    return SendDump(*input, *output, memory, dialog);
}

} // namespace tarvix
