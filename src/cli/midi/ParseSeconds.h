#pragma once

#include <string>

namespace tarvix::cli {

// A time in seconds as the user writes it ("30", "0.5"), at most a day;
// on failure the message names the value.
bool ParseSeconds(const std::string& text, const char* what, bool allowZero, double& seconds,
                  std::string& error);

} // namespace tarvix::cli
