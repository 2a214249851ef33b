#include "model/SysexDump.h"

#include "io/ByteBuffer.h"
#include "io/FileStream.h"
#include "model/DeviceImage.h"
#include "model/Mmt8Memory.h"
#include "model/SysexDumpFormat.h"
#include "model/SysexPacking.h"
#include "model/SysexParser.h"
#include "model/TextBuilder.h"

#include <algorithm>

namespace tarvix {

namespace {
bool ParseDumps(CMmt8Memory& memory, std::span<const std::uint8_t> buffer)
{
    memory.InitMemory();
    CMmt8SysexParser parser(buffer);
    return parser.IsComplete() && parser.Parse(memory) != 0;
}
} // namespace

bool LoadSysexData(CMmt8Memory& memory, std::span<const std::uint8_t> buffer, std::string& error)
{
    if (ParseDumps(memory, buffer))
        return true;
    error = "Invalid sysex data\n";
    return false;
}

bool LoadSyxFile(CMmt8Memory& memory, const std::string& path, std::string& error)
{
    CMappedFileStream file;
    std::string openError;
    if (!file.Open(path, openError, platform::FileAccess::Read, platform::FileShare::Read,
                   platform::FileDisposition::OpenExisting)) {
        error = FormatText("Can't open file: %s\n", path.c_str());
        return false;
    }
    const bool loaded = ParseDumps(memory, {file.GetView(), file.GetFileSize()});
    file.Close();
    if (!loaded)
        error = FormatText("Invalid sysex file: %s\n", path.c_str());
    return loaded;
}

const char* IdentifySysex(std::span<const std::uint8_t> buffer, bool& isMmt8Dump)
{
    isMmt8Dump = false;
    if (buffer.empty() || buffer.front() != kSysexStart)
        return "invalid";
    if (buffer.size() < kDumpHeader.size() + 1 ||
        !std::equal(kDumpHeader.begin(), kDumpHeader.end(), buffer.begin()))
        return "unknown";
    isMmt8Dump = true;
    return "Alesis MMT8";
}

bool BuildDump(const CMmt8Memory& memory, std::vector<std::uint8_t>& dump, std::string& error)
{
    CByteBuffer image;
    if (!BuildImage(memory, image, error))
        return false;
    const std::vector<std::uint8_t> packed = PackSysexData(image.View());
    dump.clear();
    dump.reserve(packed.size() + kDumpOverhead);
    dump.insert(dump.end(), kDumpHeader.begin(), kDumpHeader.end());
    dump.insert(dump.end(), packed.begin(), packed.end());
    dump.push_back(kDumpTrailingByte);
    dump.push_back(kSysexEnd);
    return true;
}

bool SaveSyxFile(const CMmt8Memory& memory, const std::string& path, std::string& error)
{
    std::vector<std::uint8_t> dump;
    return BuildDump(memory, dump, error) &&
           WriteFileReplacing(path, dump.data(), static_cast<std::uint32_t>(dump.size()), error);
}

} // namespace tarvix
