#include "midifile/MidiFileStream.h"

#include "io/FileStream.h"
#include "midifile/MidiFileException.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>

namespace tarvix {

namespace {
constexpr std::uint64_t kMaxSize = std::numeric_limits<std::uint32_t>::max();
} // namespace

bool CMidiFileStream::Open(const std::string& path, int mode)
{
    if (mode != kModeRead && mode != kModeWrite)
        return false;
    Reset();
    if (mode == kModeRead) {
        ReadFile(path);
        m_view = m_bytes;
    } else {
        m_path = path;
    }
    m_mode = mode;
    return true;
}

void CMidiFileStream::OpenBytes(std::span<const std::uint8_t> bytes)
{
    Reset();
    m_view = bytes.first(std::min<std::size_t>(bytes.size(), kMaxSize));
    m_mode = kModeRead;
}

void CMidiFileStream::OpenMemoryForWriting()
{
    Reset();
    m_mode = kModeWrite;
}

void CMidiFileStream::Close()
{
    const bool writeFile = m_mode == kModeWrite && !m_path.empty();
    const std::string path = std::move(m_path);
    const std::vector<std::uint8_t> bytes = std::move(m_bytes);
    Reset();

    std::string error;
    if (writeFile &&
        !WriteFileReplacing(path, bytes.data(), static_cast<std::uint32_t>(bytes.size()), error))
        throw CMidiFileException(error);
}

void CMidiFileStream::Reset()
{
    m_mode = 0;
    m_path.clear();
    m_bytes.clear();
    m_view = {};
    m_position = 0;
}

// One read of the whole file: a 10 MB file costs one system call, not ten
// million.
void CMidiFileStream::ReadFile(const std::string& path)
{
    CFileStream file;
    std::string error;
    if (!file.Open(path, error, platform::FileAccess::Read, platform::FileShare::Read,
                   platform::FileDisposition::OpenExisting))
        throw CMidiFileException(error);
    const std::uint32_t size = file.Seek(0, platform::SeekMethod::End, error);
    if (size == CFileStream::kSeekFailed ||
        file.Seek(0, platform::SeekMethod::Begin, error) == CFileStream::kSeekFailed)
        throw CMidiFileException(error);

    Resize(size);
    std::uint32_t total = 0;
    while (total < size) {
        std::uint32_t done = 0;
        if (!file.Read(m_bytes.data() + total, size - total, error, &done))
            throw CMidiFileException(error);
        if (done == 0)
            break; // the file shrank since it was measured
        total += done;
    }
    m_bytes.resize(total);
}

void CMidiFileStream::Resize(std::size_t size)
{
    if (size > kMaxSize)
        throw CMidiFileException(CMidiFileException::kNotEnoughMemory);
    try {
        m_bytes.resize(size);
    } catch (const std::bad_alloc&) {
        throw CMidiFileException(CMidiFileException::kNotEnoughMemory);
    }
}

std::uint32_t CMidiFileStream::Read(std::uint8_t* bytes, std::uint32_t count)
{
    const std::uint32_t done = std::min(count, GetRemaining());
    if (done != 0)
        std::memcpy(bytes, m_view.data() + m_position, done);
    m_position += done;
    return done;
}

bool CMidiFileStream::Seek(std::int32_t distance)
{
    if (m_mode != kModeRead)
        return false;
    const std::int64_t target = std::int64_t{m_position} + distance;
    const auto size = static_cast<std::int64_t>(m_view.size());
    if (target < 0) {
        m_position = static_cast<std::uint32_t>(size);
        return false;
    }
    m_position = static_cast<std::uint32_t>(std::min(target, size));
    return true;
}

void CMidiFileStream::Write(const void* bytes, std::uint32_t count)
{
    if (m_mode != kModeWrite || count == 0)
        return;
    const std::size_t end = std::size_t{m_position} + count;
    if (end > m_bytes.size())
        Resize(end);
    std::memcpy(m_bytes.data() + m_position, bytes, count);
    m_position = static_cast<std::uint32_t>(end);
}

void CMidiFileStream::SeekTo(std::uint32_t position)
{
    if (m_mode != kModeWrite)
        return;
    m_position = static_cast<std::uint32_t>(std::min<std::size_t>(position, m_bytes.size()));
}

} // namespace tarvix
