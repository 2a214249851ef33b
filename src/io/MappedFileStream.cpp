#include "io/FileMessages.h"
#include "io/FileStream.h"

#include <limits>

namespace tarvix {

CMappedFileStream::~CMappedFileStream()
{
    CMappedFileStream::Close();
}

bool CMappedFileStream::Open(const std::string& name, std::string& error,
                             platform::FileAccess access, platform::FileShare share,
                             platform::FileDisposition disposition, std::uint32_t flags)
{
    Close();
    if (!CFileStream::Open(name, error, access, share, disposition, flags))
        return false;

    std::uint64_t size = 0;
    platform::ErrorCode code = 0;
    if (!platform::GetFileSize(GetHandle(), size, code)) {
        SetError(code);
        error = FormatError(file_messages::kOpen, name);
        return false;
    }
    // Nothing to map in an empty file, and the size must fit the 32-bit
    // count that the readers of the view work with.
    if (size == 0 || size > std::numeric_limits<std::uint32_t>::max()) {
        SetError(platform::kErrorInvalidData);
        error = FormatError(file_messages::kOpen, name);
        return false;
    }

    const bool writable = access != platform::FileAccess::Read;
    m_mapping = platform::CreateMapping(GetHandle(), writable, code);
    if (m_mapping == platform::kNoMapping) {
        SetError(code);
        error = FormatError(file_messages::kCreateMapping, name);
        return false;
    }
    m_view = platform::MapView(m_mapping, GetHandle(), size, writable, code);
    if (m_view == nullptr) {
        SetError(code);
        error = FormatError(file_messages::kCreateView, name);
        return false;
    }
    m_fileSize = static_cast<std::uint32_t>(size);
    SetError(0);
    return true;
}

void CMappedFileStream::Close()
{
    if (m_view != nullptr) {
        platform::UnmapView(m_view, m_fileSize);
        m_view = nullptr;
        m_fileSize = 0;
    }
    if (m_mapping != platform::kNoMapping) {
        platform::CloseMapping(m_mapping);
        m_mapping = platform::kNoMapping;
    }
    CFileStream::Close();
}

} // namespace tarvix
