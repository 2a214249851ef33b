#pragma once

#include <cstring>
#include <filesystem>
#include <set>
#include <string>

namespace tarvix::testing {

// The sentence the file classes report for verb ("open", "read", ...) and a
// system error code.
inline std::string FileMessage(const std::string& verb, const std::string& name, int code)
{
    return "Can't " + verb + " file \"" + name + "\": " + std::strerror(code) + "\n";
}

inline std::set<std::string> FolderEntries(const std::filesystem::path& folder)
{
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        names.insert(entry.path().filename().string());
    return names;
}

} // namespace tarvix::testing
