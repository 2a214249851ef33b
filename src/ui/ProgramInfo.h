#pragma once

#include "version/Version.h"

namespace tarvix {

// The program's name and version as the window and the About box show them.
// The version numbers come from the build (project VERSION); its third number
// is the build number.
inline constexpr const char* kProductName = "Tarvix";
inline constexpr const char* kApplicationName = "Tarvix";
inline constexpr unsigned kBuildNumber = kVersionPatch;
inline constexpr const char* kLegalCopyright = "Copyright \xC2\xA9 2024 Quillon";
inline constexpr const char* kWebPage = kHomepageUrl;
inline constexpr const char* kMailAddress = "tarvix@quillon.example";

} // namespace tarvix
