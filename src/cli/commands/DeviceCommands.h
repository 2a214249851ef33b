#pragma once

#include "cli/CliCommand.h"

#include <memory>

namespace tarvix::cli {

// Commands that talk to the device over MIDI ports, one file each.
std::unique_ptr<CliCommand> MakePortsCommand();
std::unique_ptr<CliCommand> MakeReceiveCommand();
std::unique_ptr<CliCommand> MakeSendCommand();
std::unique_ptr<CliCommand> MakeDeviceCommand();

} // namespace tarvix::cli
