#pragma once

#include "cli/CliCommand.h"
#include "midifile/MidiSelection.h"

#include <string>
#include <vector>

namespace tarvix {
class CMmt8Memory;
}

namespace tarvix::cli {

// A command's own options followed by the SELECTION options, mirroring what
// can be selected in the editor: --part N [--tracks 3,6], --parts 3,5,9,
// --all-parts, --song N, --songs 1,4, --all-songs, --steps SONG:1,2.
std::vector<OptionSpec> WithSelectionOptions(std::vector<OptionSpec> options);

// The one selection the arguments give, in the model's numbers (tracks and
// steps from 0). False with the usage message when there is none, more
// than one, or a number out of range. An empty list ("--parts ''") is an
// empty selection, as an empty set of list rows would be.
bool ParseSelection(const ParsedArguments& arguments, MidiSelection& selection, std::string& error);

// Loads the document the selection is made in; its steps must exist in
// their song. kExitSuccess, or the exit code once the failure is printed.
int LoadSelectedDocument(const ICliCommand& command, const std::string& path,
                         const MidiSelection& selection, CMmt8Memory& memory,
                         const CliOutput& output);

// Comma-separated numbers ("3,5,9"); empty text gives no numbers.
bool ParseNumberList(const std::string& text, const char* what, int lowest, int highest,
                     std::vector<int>& values, std::string& error);

} // namespace tarvix::cli
