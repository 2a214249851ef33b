#pragma once

#include "transport/transfer/SysexTransfer.h"
#include "transport/transfer/TransferView.h"

#include <chrono>
#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace tarvix::test {

// Plays the progress dialog: ticks as its timer would, records what it
// would show, and lets the test act (or cancel) before each tick.
class ScriptedView : public ITransferView {
public:
    struct Frame {
        std::string text;
        std::uint32_t range = 0;
        std::uint32_t position = 0;
    };

    void ReportMessage(const std::string& text) override { reported.push_back(text); }

    bool RunProgress(CSysexTransfer& transfer) override
    {
        shown = true;
        start = {transfer.GetText(), transfer.GetProgressRange(), transfer.GetProgressPosition()};
        for (int tick = 0; tick < 2000; ++tick) {
            if (beforeTick && !beforeTick(tick))
                return false;
            if (transfer.Tick())
                return true;
            frames.push_back(
                {transfer.GetText(), transfer.GetProgressRange(), transfer.GetProgressPosition()});
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return false;
    }

    // False is the user's Cancel.
    std::function<bool(int tick)> beforeTick;
    std::vector<std::string> reported;
    bool shown = false;
    Frame start;
    std::vector<Frame> frames;
};

} // namespace tarvix::test
