#pragma once

namespace tarvix {

// Where the window keeps its own values in the settings store.
inline constexpr const char* kPlacementValue = "MainFramePlacement";
inline constexpr const char* kSplitterValue = "SplitterPosition";
inline constexpr const char* kRecentFilesKey = "Recent Document List";
inline constexpr int kDefaultSplitterPosition = 240;

// The Options dialog's MIDI page and its port name fields.
inline constexpr int kOptionsGeneralPage = 0;
inline constexpr int kOptionsMidiPage = 1;
inline constexpr int kMidiInPortControl = 2711;
inline constexpr int kMidiOutPortControl = 2721;

} // namespace tarvix
