#pragma once

#include "transport/ports/MidiDevices.h"

#include <cstdint>
#include <vector>

namespace tarvix {

class CMidiIn;
class CMidiOut;
class CMmt8Memory;
class ITransferView;

// Receives the device's memory dump and loads it. False when the input
// port is closed or the user cancelled; the document is then untouched.
// True when the transfer ended, whether or not a dump loaded.
bool ReceiveDump(CMidiIn& input, CMidiOut& output, CMmt8Memory& memory, ITransferView& view,
                 std::vector<std::uint8_t>* loadedBytes = nullptr);

// Loads the first received message that is a complete dump and loads;
// every one that fails to load is reported. On success the document is
// marked modified and, if asked, the message's bytes are copied out.
bool LoadReceivedDump(const CMidiIn& input, CMmt8Memory& memory, const MessageSink& reportMessage,
                      std::vector<std::uint8_t>* loadedBytes = nullptr);

// Sends the document as its dump; true once it has all gone out.
bool SendDump(CMidiIn& input, CMidiOut& output, const CMmt8Memory& memory, ITransferView& view);

} // namespace tarvix
