#include "transport/transfer/DumpTransfer.h"

#include "model/Mmt8Memory.h"
#include "model/SysexDump.h"
#include "model/TextBuilder.h"
#include "transport/ports/MidiIn.h"
#include "transport/transfer/SysexTransfer.h"
#include "transport/transfer/TransferView.h"

namespace tarvix {

bool ReceiveDump(CMidiIn& input, CMidiOut& output, CMmt8Memory& memory, ITransferView& view,
                 std::vector<std::uint8_t>* loadedBytes)
{
    CSysexTransfer transfer(input, output, view, kMmt8MemoryCapacity, kReceiveDumpPrompt);
    if (!transfer.RunTransfer(AwaitedSysex::Mmt8Dump))
        return false;
    LoadReceivedDump(
        input, memory, [&view](const std::string& text) { view.ReportMessage(text); }, loadedBytes);
    return true;
}

bool LoadReceivedDump(const CMidiIn& input, CMmt8Memory& memory, const MessageSink& reportMessage,
                      std::vector<std::uint8_t>* loadedBytes)
{
    // A dump with a hole may still end in F7 and even load, as a damaged
    // document: with any byte lost, none is taken.
    if (const std::uint64_t lost = input.GetLostBytes(); lost != 0) {
        if (reportMessage)
            reportMessage(FormatText("%llu bytes were lost while receiving; the dump was not "
                                     "loaded.\n",
                                     static_cast<unsigned long long>(lost)));
        return false;
    }
    // Copied out first: loading and reporting must not hold the list lock.
    std::vector<std::vector<std::uint8_t>> dumps;
    {
        const auto messages = input.LockMessages();
        for (const auto& message : *messages) {
            bool isDump = false;
            IdentifySysex(message->View(), isDump);
            if (message->IsComplete() && isDump)
                dumps.emplace_back(message->View().begin(), message->View().end());
        }
    }
    for (auto& dump : dumps) {
        std::string error;
        if (LoadSysexData(memory, dump, error)) {
            memory.modified = 1;
            if (loadedBytes != nullptr)
                *loadedBytes = std::move(dump);
            return true;
        }
        if (reportMessage)
            reportMessage(FormatText("Can't load sysex message, error: %s\n", error.c_str()));
    }
    return false;
}

bool SendDump(CMidiIn& input, CMidiOut& output, const CMmt8Memory& memory, ITransferView& view)
{
    std::vector<std::uint8_t> dump;
    std::string error;
    if (!BuildDump(memory, dump, error)) {
        view.ReportMessage(error);
        return false;
    }
    CSysexTransfer transfer(input, output, view);
    return transfer.SendBytes(dump);
}

} // namespace tarvix
