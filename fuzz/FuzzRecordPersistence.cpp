// Clipboard records from outside: a read either throws and leaves the record
// alone, or gives a record that writes and reads back unchanged.
#include "FuzzFailure.h"
#include "RecordSelector.h"
#include "SavedForm.h"

#include "io/Stream.h"
#include "model/Mmt8Memory.h"
#include "model/RecordPersistence.h"
#include "support/RandomDocument.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <string>

namespace {
using namespace tarvix;

enum class Expect { Unchanged, AsWritten };

// Records are compared by placing each in a document of its own, so the one
// comparison the tests trust covers every field.
template <typename Record, typename Place>
std::string Compare(const Record& expected, const Record& actual, Place place, Expect expect)
{
    CMmt8Memory a;
    CMmt8Memory b;
    place(a, expected);
    place(b, actual);
    if (expect == Expect::AsWritten)
        fuzzing::MaskEventChannels(a);
    return testing::DescribeDifference(a, b);
}

// readFirst reads the outside bytes; persist writes and reads the copies,
// which for a step must name where the first read put it.
template <typename Record, typename ReadFirst, typename PersistAgain, typename Place>
void CheckRecord(const Record& start, std::span<const std::uint8_t> bytes, ReadFirst readFirst,
                 PersistAgain persist, Place place)
{
    Record first = start;
    CStream input(bytes);
    try {
        readFirst(first, input);
    } catch (const CStreamException&) {
        const std::string difference = Compare(start, first, place, Expect::Unchanged);
        if (!difference.empty())
            fuzzing::FailFuzzCheck("a refused read changed the record: " + difference);
        return;
    }
    CStream output;
    persist(first, output);
    Record second = start;
    CStream again(output.View());
    try {
        persist(second, again);
    } catch (const CStreamException& exception) {
        fuzzing::FailFuzzCheck("the rewritten record does not read: " + exception.GetMessage());
    }
    const std::string difference = Compare(first, second, place, Expect::AsWritten);
    if (!difference.empty())
        fuzzing::FailFuzzCheck("the rewritten record reads differently: " + difference);
}

template <typename Record, typename Place>
void CheckWholeRecord(std::span<const std::uint8_t> bytes, Place place)
{
    const auto persist = [](Record& record, CStream& stream) { Persist(record, stream); };
    CheckRecord(Record{}, bytes, persist, persist, place);
}

void CheckStep(std::uint8_t selector, std::uint8_t index, std::span<const std::uint8_t> bytes)
{
    const CMmt8Song start = fuzzing::MakeStepSong(selector);
    // Past the end the step is appended, so it is found at the old length.
    const int landed = static_cast<int>(std::min<std::size_t>(index, start.steps.size()));
    CheckRecord(
        start, bytes, [index](CMmt8Song& song, CStream& stream) { Persist(song, index, stream); },
        [landed](CMmt8Song& song, CStream& stream) { Persist(song, landed, stream); },
        [](CMmt8Memory& memory, const CMmt8Song& song) { memory.Song(0) = song; });
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace tarvix;
    if (size == 0)
        return 0;
    const std::uint8_t selector = data[0];
    const fuzzing::RecordKind kind = fuzzing::KindOfSelector(selector);
    const std::size_t header = fuzzing::HeaderSize(kind);
    // A stream over no bytes is a writing stream, not an empty read.
    if (size <= header || size - header > std::numeric_limits<std::uint32_t>::max())
        return 0;
    const std::span<const std::uint8_t> bytes(data + header, size - header);

    switch (kind) {
    case fuzzing::RecordKind::Track:
        CheckWholeRecord<CMmt8Track>(bytes, [](CMmt8Memory& memory, const CMmt8Track& track) {
            memory.Part(0).tracks[0] = track;
        });
        break;
    case fuzzing::RecordKind::Part:
        CheckWholeRecord<CMmt8Part>(
            bytes, [](CMmt8Memory& memory, const CMmt8Part& part) { memory.Part(0) = part; });
        break;
    case fuzzing::RecordKind::Song:
        CheckWholeRecord<CMmt8Song>(
            bytes, [](CMmt8Memory& memory, const CMmt8Song& song) { memory.Song(0) = song; });
        break;
    case fuzzing::RecordKind::Step: CheckStep(selector, data[1], bytes); break;
    }
    return 0;
}
