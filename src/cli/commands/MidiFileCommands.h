#pragma once

#include "cli/CliCommand.h"

#include <memory>

namespace tarvix::cli {

// Commands that read or write a Standard MIDI File, one file each.
std::unique_ptr<CliCommand> MakeDumpCommand();

} // namespace tarvix::cli
