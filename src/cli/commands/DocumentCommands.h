#pragma once

#include "cli/CliCommand.h"

#include <memory>

namespace tarvix::cli {

// Commands that read or write a .syx document, one file each.
std::unique_ptr<CliCommand> MakeMemoryCommand();
std::unique_ptr<CliCommand> MakePartsCommand();
std::unique_ptr<CliCommand> MakeTracksCommand();
std::unique_ptr<CliCommand> MakeSongsCommand();
std::unique_ptr<CliCommand> MakeStepsCommand();
std::unique_ptr<CliCommand> MakeListCommand();
std::unique_ptr<CliCommand> MakeNewCommand();
std::unique_ptr<CliCommand> MakeRewriteCommand();

} // namespace tarvix::cli
