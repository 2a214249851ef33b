#include "support/TempDir.h"

#include <atomic>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>
#ifdef _WIN32
#include <process.h>
#else
#include <unistd.h>
#endif

namespace tarvix::testing {

namespace {
long ProcessId()
{
#ifdef _WIN32
    return _getpid();
#else
    return ::getpid();
#endif
}

std::filesystem::path TempRoot()
{
    if (const char* root = std::getenv("TARVIX_TEST_TMP"); root && *root)
        return root;
    return std::filesystem::temp_directory_path() / "tarvix-tests";
}
} // namespace

TempDir::TempDir()
{
    static std::atomic<unsigned> counter{0};
    const auto root = TempRoot();
    std::filesystem::create_directories(root);
    m_path = root / ("t" + std::to_string(ProcessId()) + "-" + std::to_string(counter++));
    std::filesystem::remove_all(m_path);
    std::filesystem::create_directories(m_path);
}

TempDir::~TempDir()
{
    std::error_code ignored;
    std::filesystem::permissions(m_path, std::filesystem::perms::owner_all,
                                 std::filesystem::perm_options::add, ignored);
    std::filesystem::remove_all(m_path, ignored);
}

std::string TempDir::File(const std::string& name) const
{
    return Utf8Path(m_path / PathFromUtf8(name));
}

std::string Utf8Path(const std::filesystem::path& path)
{
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

std::filesystem::path PathFromUtf8(const std::string& utf8)
{
    return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
}

std::vector<std::uint8_t> ReadAllBytes(const std::string& path)
{
    std::ifstream in(PathFromUtf8(path), std::ios::binary);
    if (!in)
        throw std::runtime_error("cannot read " + path);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

void WriteAllBytes(const std::string& path, const std::vector<std::uint8_t>& bytes)
{
    std::ofstream out(PathFromUtf8(path), std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes.data()),
              static_cast<std::streamsize>(bytes.size()));
    if (!out)
        throw std::runtime_error("cannot write " + path);
}

} // namespace tarvix::testing
