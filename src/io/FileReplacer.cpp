#include "io/FileMessages.h"
#include "io/FileStream.h"

#include <random>

namespace tarvix {

namespace {

constexpr int kNameAttempts = 100;

// The new file lies next to the target so that the final rename stays on one
// file system and is atomic; CreateNew makes a stray file of the same name
// impossible to overwrite.
bool CreateTemporaryFile(const std::string& target, CFileStream& file, std::string& error)
{
    std::random_device seed;
    std::mt19937 random(seed());
    std::uniform_int_distribution<std::uint32_t> digit(0, 15);
    for (int attempt = 0; attempt < kNameAttempts; ++attempt) {
        std::string name = target + ".tmp";
        for (int i = 0; i < 8; ++i)
            name += "0123456789abcdef"[digit(random)];
        if (file.Open(name, error, platform::FileAccess::Write, platform::FileShare::None,
                      platform::FileDisposition::CreateNew))
            return true;
        if (file.GetLastError() != platform::kErrorFileExists)
            return false;
    }
    return false;
}

} // namespace

// Every message names the file the user asked for, not the temporary one
// they never chose.
bool WriteFileReplacing(const std::string& path, const void* bytes, std::uint32_t count,
                        std::string& error)
{
    CFileStream file;
    if (!CreateTemporaryFile(path, file, error)) {
        error = file.FormatError(file_messages::kWrite, path);
        return false;
    }

    const std::string temporary = file.GetFileName();
    const bool written = file.Write(bytes, count, error) && file.Flush();
    if (!written)
        error = file.FormatError(file_messages::kWrite, path);
    file.Close();

    if (written) {
        platform::ErrorCode code = 0;
        if (platform::ReplaceFile(temporary, path, code))
            return true;
        file.SetError(code);
        error = file.FormatError(file_messages::kWrite, path);
    }
    platform::RemoveFile(temporary);
    return false;
}

} // namespace tarvix
