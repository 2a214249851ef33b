#pragma once

#include "cli/CliCommand.h"

namespace tarvix::cli {

// The device command as the user sees it (its name, help and options),
// shared by the simulated device and by its stand-in on a system whose MIDI
// service cannot give a program ports of its own.
class CDeviceCommandBase : public ICliCommand {
public:
    static constexpr const char* kDefaultName = "tarvix-device";

    const char* Name() const override { return "device"; }
    const char* Summary() const override;
    const char* Details() const override;
    std::vector<const char*> PositionalNames() const override { return {}; }
    std::vector<OptionSpec> Options() const override;
};

} // namespace tarvix::cli
