#pragma once

#include "model/Mmt8Limits.h"

#include <cstdint>
#include <span>
#include <string>

namespace tarvix {

class CMidiIn;
class CMidiOut;
class ITransferView;

// Which complete message ends a receive.
enum class AwaitedSysex : std::uint8_t {
    None = 0,     // the transfer does not receive
    Mmt8Dump = 1, // identified as "Alesis MMT8"
};

inline constexpr const char* kDefaultTransferPrompt = "Received 0 bytes\n";
inline constexpr const char* kReceiveDumpPrompt =
    "To start MIDI dump transfer on Alesis MMT8 hold down [TAPE] button, press and release "
    "[PAGE DOWN], then press [RECORD] ...\n";

// One SysEx transfer to and from the device. It decides what the progress
// display shows and when the transfer is over; the view only calls Tick()
// on its own 100 ms timer and shows the text and progress.
class CSysexTransfer {
public:
    CSysexTransfer(CMidiIn& input, CMidiOut& output, ITransferView& view,
                   std::uint32_t progressMaximum = kMmt8MemoryCapacity,
                   std::string prompt = kDefaultTransferPrompt);

    // Starts receiving, then sends the bytes if any and shows the progress
    // until the awaited message has arrived. True only when it did (or, with
    // AwaitedSysex::None, when everything went out: its last byte could
    // have left the cable). An output port that fails mid-send ends the
    // transfer with a message and false.
    bool RunTransfer(AwaitedSysex awaited, std::span<const std::uint8_t> bytes = {});
    // Queues the bytes as their F0..F7 messages. Without a receive, a send
    // that is over within 100 ms shows no progress at all.
    bool SendBytes(std::span<const std::uint8_t> bytes);

    // True when the transfer is over and the view should close.
    bool Tick();

    const std::string& GetText() const { return m_text; }
    // The progress runs from 0 to this.
    std::uint32_t GetProgressRange() const { return m_progressRange; }
    std::uint32_t GetProgressPosition() const;

private:
    // The dialog's life: its start, the view, and its end (OK or cancel).
    bool ShowProgress();
    bool UpdateSend();
    void UpdateReceive();
    void SetProgress(std::uint32_t range, std::uint32_t position);

    CMidiIn& m_input;
    CMidiOut& m_output;
    ITransferView& m_view;
    const std::uint8_t* m_sendBytes = nullptr;
    std::uint32_t m_sendSize = 0;
    std::uint32_t m_progressMaximum;
    AwaitedSysex m_awaited = AwaitedSysex::None;
    std::string m_prompt;
    std::string m_text;
    std::uint32_t m_progressRange = 0;
    std::uint32_t m_progressPosition = 0;
    // Why a send ended early; shown once the progress has closed.
    std::string m_failure;
};

} // namespace tarvix
