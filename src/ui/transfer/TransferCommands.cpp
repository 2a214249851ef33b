#include "ui/transfer/TransferCommands.h"

#include "model/Mmt8Memory.h"
#include "transport/transfer/DumpTransfer.h"
#include "ui/MidiPorts.h"
#include "ui/transfer/MidiProgressDlg.h"

#include <memory>
#include <vector>

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
    // Received into a document of its own and put in place only when a dump
    // loaded: a failed load leaves the user's document as it was.
    auto received = std::make_unique<CMmt8Memory>();
    std::vector<std::uint8_t> loadedBytes;
    if (!ReceiveDump(*input, *output, *received, dialog, &loadedBytes) || loadedBytes.empty())
        return false;
    memory = std::move(*received);
    return true;
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
