#pragma once

class QWidget;

namespace tarvix {

class CTrackDumpView;

// Tools > Midi File Dump: the user picks a Standard MIDI File and reads its
// whole contents as a report; a file that cannot be read is reported in a
// message box.
class CMidiFileDumpCommand {
public:
    static constexpr const char* kTitle = "MIDI File Dump";
    static void Run(QWidget* parent, const CTrackDumpView& view);
};

} // namespace tarvix
