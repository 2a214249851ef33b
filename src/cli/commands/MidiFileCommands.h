#pragma once

#include "cli/CliCommand.h"

#include <memory>

namespace tarvix::cli {

// Commands that read or write a Standard MIDI File, one file each.
std::unique_ptr<CliCommand> MakeDumpCommand();
std::unique_ptr<CliCommand> MakeImportCommand();
std::unique_ptr<CliCommand> MakeExportCommand();

} // namespace tarvix::cli
