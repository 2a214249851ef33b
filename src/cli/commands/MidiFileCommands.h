#pragma once

#include "cli/CliCommand.h"

#include <memory>

namespace tarvix::cli {

// Commands that read or write a Standard MIDI File, one file each.
std::unique_ptr<ICliCommand> MakeDumpCommand();
std::unique_ptr<ICliCommand> MakeImportCommand();
std::unique_ptr<ICliCommand> MakeExportCommand();

} // namespace tarvix::cli
