#pragma once

namespace tarvix {

// The program's name and version as the window and the About box show them.
// Major and minor come from the build (project VERSION); the build number is
// fixed.
inline constexpr const char* kProductName = "Tarvix";
inline constexpr const char* kApplicationName = "Tarvix";
inline constexpr unsigned kVersionMajor = TARVIX_VERSION_MAJOR;
inline constexpr unsigned kVersionMinor = TARVIX_VERSION_MINOR;
inline constexpr unsigned kBuildNumber = 45;
inline constexpr const char* kLegalCopyright = "Copyright \xC2\xA9 2024 Quillon";
inline constexpr const char* kWebPage = "https://quillon.example/tarvix";
inline constexpr const char* kMailAddress = "tarvix@quillon.example";

} // namespace tarvix
