// Writes the big benchmark file: tarvix-make-big-midi OUT.mid [MEGABYTES]
// (10 by default), for comparing the dump with other programs.
#include "BigMidiFile.h"

#include "midifile/MidiFileException.h"
#include "midifile/MidiFileStream.h"

#include <charconv>
#include <cstdio>
#include <cstring>

int main(int argc, char** argv)
{
    using namespace tarvix;
    std::uint32_t megabytes = 10;
    const char* last = argc == 3 ? argv[2] + std::strlen(argv[2]) : nullptr;
    if (argc < 2 || argc > 3 ||
        (argc == 3 && (std::from_chars(argv[2], last, megabytes).ptr != last || megabytes == 0 ||
                       megabytes > 1000))) {
        std::fputs("Usage: tarvix-make-big-midi OUT.mid [MEGABYTES (1-1000)]\n", stderr);
        return 2;
    }
    try {
        CMidiFile file = bench::MakeBigMidiFile(megabytes * 1024 * 1024);
        CMidiFileStream stream;
        stream.Open(argv[1], CMidiFileStream::kModeWrite);
        file.Persist(stream);
        const auto size = static_cast<unsigned long>(stream.GetWrittenBytes().size());
        stream.Close();
        std::printf("%s: %lu bytes\n", argv[1], size);
    } catch (const CMidiFileException& exception) {
        std::fputs(exception.GetMessage().c_str(), stderr);
        return 1;
    }
    return 0;
}
