#pragma once

#include "cli/CliCommand.h"

#include <memory>

namespace tarvix::cli {

// Commands that talk to the device over MIDI ports, one file each.
std::unique_ptr<ICliCommand> MakePortsCommand();
std::unique_ptr<ICliCommand> MakeReceiveCommand();
std::unique_ptr<ICliCommand> MakeSendCommand();
std::unique_ptr<ICliCommand> MakeDeviceCommand();

} // namespace tarvix::cli
