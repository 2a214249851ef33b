#pragma once

// The sentences the file classes report, each with the file name and the
// system's text for the error.
namespace tarvix::file_messages {

inline constexpr const char* kOpen = "Can't open file \"%s\": %s\n";
inline constexpr const char* kRead = "Can't read file \"%s\": %s\n";
inline constexpr const char* kWrite = "Can't write file \"%s\": %s\n";
// A write in place that failed and could not put the old bytes back.
inline constexpr const char* kWriteUnrestored =
    "Can't write file \"%s\": %s; its old contents could not be put back.\n";
inline constexpr const char* kSeek = "Can't seek file \"%s\": %s\n";
inline constexpr const char* kCreateMapping = "Can't create mapping for file \"%s\": %s\n";
inline constexpr const char* kCreateView = "Can't create mapping view for file \"%s\": %s\n";

} // namespace tarvix::file_messages
