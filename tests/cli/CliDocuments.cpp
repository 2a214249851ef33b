#include "CliDocuments.h"

#include "demo/DemoDocument.h"
#include "io/ByteBuffer.h"
#include "model/DeviceImage.h"
#include "model/Mmt8Memory.h"
#include "model/SysexDump.h"
#include "model/SysexDumpFormat.h"
#include "model/SysexPacking.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

namespace tarvix::testing {

namespace {
constexpr int kFilledParts = 10;
// A part's header and its eight end marks.
constexpr std::uint32_t kEmptyPartSize = 98;
constexpr std::uint32_t kTimedEventSize = 7;
constexpr std::uint32_t kUntimedEventSize = 5;

void AddNote(CMmt8Track& track, std::uint16_t time, bool timed)
{
    auto note = std::make_unique<CMmt8NoteEvent>();
    note->time = time;
    note->timed = timed ? 1 : 0;
    note->data1 = 60;
    note->data2 = 100;
    note->duration = 1;
    AppendEvent(track, std::move(note));
}
} // namespace

std::vector<std::uint8_t> DemoDump()
{
    CMmt8Memory demo;
    demo::BuildDemoDocument(demo);
    return DumpOf(demo);
}

std::string SaveDump(const CMmt8Memory& memory, const TempDir& folder, const std::string& name)
{
    const std::string path = folder.File(name);
    WriteAllBytes(path, DumpOf(memory));
    return path;
}

void LoadDump(CMmt8Memory& memory, const std::string& path)
{
    std::string error;
    EXPECT_TRUE(LoadSyxFile(memory, path, error)) << error;
}

void BuildDocumentOfSize(CMmt8Memory& memory, std::uint32_t size)
{
    memory.InitMemory();
    const std::uint32_t eventBytes = size - memory.GetMemorySize() - kFilledParts * kEmptyPartSize;
    // Up to six 5-byte untimed events make any remainder a multiple of 7.
    std::uint32_t untimed = 0;
    while ((eventBytes - untimed * kUntimedEventSize) % kTimedEventSize != 0)
        ++untimed;
    const std::uint32_t timed = (eventBytes - untimed * kUntimedEventSize) / kTimedEventSize;
    for (int part = 0; part < kFilledParts; ++part) {
        const std::uint32_t count =
            timed / kFilledParts + (std::uint32_t(part) < timed % kFilledParts ? 1 : 0);
        memory.SetPartBeats(part, count / kClocksPerBeat + 1);
        CMmt8Track& track = memory.Part(part).tracks[0];
        for (std::uint32_t i = 0; i < count; ++i) {
            AddNote(track, static_cast<std::uint16_t>(i), true);
            for (std::uint32_t j = 0; part == 0 && i == 0 && j < untimed; ++j)
                AddNote(track, 0, false);
        }
    }
}

std::vector<std::uint8_t> DumpSharingPartZero(const CMmt8Memory& memory)
{
    CByteBuffer image;
    std::string error;
    EXPECT_TRUE(BuildImage(memory, image, error)) << error;
    std::uint8_t* table = image.GetData(); // the part table opens the image
    for (int part = 1; part < kPartCount; ++part)
        std::copy_n(table, 2, table + 2 * part);
    std::vector<std::uint8_t> dump(kDumpHeader.begin(), kDumpHeader.end());
    const auto packed = PackSysexData(image.View());
    dump.insert(dump.end(), packed.begin(), packed.end());
    dump.push_back(kDumpTrailingByte);
    dump.push_back(kSysexEnd);
    return dump;
}

std::vector<std::string> Lines(const std::string& text)
{
    std::vector<std::string> lines;
    std::size_t start = 0;
    for (std::size_t end = text.find('\n'); end != std::string::npos;
         end = text.find('\n', start)) {
        lines.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    EXPECT_EQ(start, text.size()) << "text does not end with a line end";
    return lines;
}

} // namespace tarvix::testing
