#pragma once

#include "cli/CliCommand.h"

#include <memory>

namespace tarvix::cli {

// Commands that read or write a .syx document, one file each.
std::unique_ptr<ICliCommand> MakeMemoryCommand();
std::unique_ptr<ICliCommand> MakePartsCommand();
std::unique_ptr<ICliCommand> MakeTracksCommand();
std::unique_ptr<ICliCommand> MakeSongsCommand();
std::unique_ptr<ICliCommand> MakeStepsCommand();
std::unique_ptr<ICliCommand> MakeListCommand();
std::unique_ptr<ICliCommand> MakeNewCommand();
std::unique_ptr<ICliCommand> MakeRewriteCommand();

} // namespace tarvix::cli
