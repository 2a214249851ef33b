// Writes the note-off benchmark's file: tarvix-make-noteoff-midi OUT.mid,
// for timing an import of it by hand (tarvix-cli import).
#include "NoteOffMidiFile.h"

#include "io/FileStream.h"

#include <cstdio>
#include <string>

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fputs("Usage: tarvix-make-noteoff-midi OUT.mid\n", stderr);
        return 2;
    }
    const std::vector<std::uint8_t> bytes = tarvix::bench::MakeUnmatchedNoteOffFile();
    std::string error;
    if (!tarvix::WriteFileReplacing(argv[1], bytes.data(), static_cast<std::uint32_t>(bytes.size()),
                                    error)) {
        std::fputs(error.c_str(), stderr);
        return 1;
    }
    std::printf("%s: %zu bytes\n", argv[1], bytes.size());
    return 0;
}
