#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace tarvix::testing {

// A fresh directory for one test, removed with everything in it when the
// test ends. Tests never write next to the user's own files.
class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::filesystem::path& Path() const { return m_path; }
    // The path of a file inside the directory, as a string for the APIs under
    // test: UTF-8 like every name in the program, name included.
    std::string File(const std::string& name) const;

private:
    std::filesystem::path m_path;
};

// A path as the program holds names: UTF-8 (std::filesystem's string() is
// the ANSI code page on Windows).
std::string Utf8Path(const std::filesystem::path& path);
std::filesystem::path PathFromUtf8(const std::string& utf8);

std::vector<std::uint8_t> ReadAllBytes(const std::string& path);
void WriteAllBytes(const std::string& path, const std::vector<std::uint8_t>& bytes);

} // namespace tarvix::testing
