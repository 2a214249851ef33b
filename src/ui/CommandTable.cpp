#include "ui/CommandTable.h"

namespace tarvix {

namespace {
using M = CommandMenu;
using H = CommandHandler;
using R = EnableRule;
constexpr NodeKind kAny = NodeKind::None;
constexpr bool kTool = true;
constexpr bool kNoTool = false;
constexpr bool kSep = true;
constexpr bool kNoSep = false;
// Keypad + and -. Under X11, Qt 6 matches a keypad key's shortcut without its
// keypad mark, so "Num++" alone never fires there; the plain key is bound
// too and catches it (the main keyboard's + and - then also work).
constexpr const char* kKeypadPlus = "Num++; +";
constexpr const char* kKeypadMinus = "Num+-; -";
} // namespace

// The "Crtl+I" and "Crtl+M" hints are the program's own spelling and stay.
const std::vector<CommandInfo>& CommandTable()
{
    static const std::vector<CommandInfo> table = {
        // id, objectName, menu, menu text, keys, toolbar, prompt\ntooltip, handler, enabled, kind,
        // separator after
        {kCmdInit, "fileInit", M::File, "&Init\tCtrl+N", "Ctrl+N", kTool,
         "Initialize all parts and songs\nInit", H::Frame, R::Always, kAny, kNoSep},
        {kCmdOpen, "fileOpen", M::File, "&Open...\tCtrl+O", "Ctrl+O", kTool,
         "Open existing SysEx file\nOpen", H::Frame, R::Always, kAny, kNoSep},
        {kCmdSave, "fileSave", M::File, "&Save\tCtrl+S", "Ctrl+S", kTool,
         "Save all parts and songs in SysEx file\nSave", H::Frame, R::Always, kAny, kNoSep},
        {kCmdSaveAs, "fileSaveAs", M::File, "Save &As...", "", kNoTool,
         "Save all parts and songs in SysEx file with a new name\nSave As", H::Frame, R::Always,
         kAny, kSep},
        {kCmdReceive, "fileReceive", M::File, "&Receive\tCtrl+R", "Ctrl+R", kTool,
         "Receive all parts and songs from Alesis MMT8\nReceive", H::Frame, R::InputOpen, kAny,
         kNoSep},
        {kCmdSend, "fileSend", M::File, "S&end\tCtrl+E", "Ctrl+E", kTool,
         "Send all parts and songs to Alesis MMT8\nSend", H::Frame, R::OutputOpen, kAny, kSep},
        {kCmdImport, "fileImport", M::File, "I&mport...\tCrtl+I", "Ctrl+I", kTool,
         "Import selected parts or songs from Standard MIDI File\nImport", H::ActivePane,
         R::PaneSelection, kAny, kNoSep},
        {kCmdExport, "fileExport", M::File, "E&xport...\tCrtl+M", "Ctrl+M", kTool,
         "Export selected parts or songs into Standard MIDI File\nExport", H::ActivePane,
         R::PaneSelection, kAny, kSep},
        {kCmdRecentFirst, "fileRecentFiles", M::File, kRecentFilesMenuText, "", kNoTool,
         kRecentFilesPrompt, H::Frame, R::Always, kAny, kSep},
        {kCmdExit, "fileExit", M::File, "E&xit", "", kNoTool, "Terminate application\nExit",
         H::Frame, R::Always, kAny, kNoSep},
        {kCmdUndo, "editUndo", M::Edit, kUndoMenuText, "Ctrl+Z; Alt+Backspace", kTool,
         "Undo the last change\nUndo", H::Frame, R::CanUndo, kAny, kNoSep},
        {kCmdRedo, "editRedo", M::Edit, kRedoMenuText, "Ctrl+Y; Ctrl+Shift+Z", kTool,
         "Redo the change last undone\nRedo", H::Frame, R::CanRedo, kAny, kSep},
        {kCmdCopy, "editCopy", M::Edit, "&Copy\tCtrl+C", "Ctrl+C; Ctrl+Ins", kTool,
         "Copy the selection and put it on the clipboard\nCopy", H::ActivePane, R::PaneSelection,
         kAny, kNoSep},
        {kCmdPaste, "editPaste", M::Edit, "&Paste\tCtrl+V", "Ctrl+V; Shift+Ins", kTool,
         "Insert clipboard contents at the current selection\nPaste", H::ActivePane, R::Paste, kAny,
         kSep},
        {kCmdSelectAll, "editSelectAll", M::Edit, "Select &all\tCtrl+A", "Ctrl+A", kNoTool,
         "Select all items in the current view\nSelect All", H::ListPane, R::ListActive, kAny,
         kSep},
        {kCmdAssign, "editAssign", M::Edit, "A&ssign parts to song...", "", kNoTool,
         "Assign selected parts to a song\nAssign", H::ListPane, R::ListKindSelection,
         NodeKind::AllParts, kNoSep},
        {kCmdPartBeats, "editPartBeats", M::Edit, "Set part &beat count...", "", kNoTool,
         "Set part beat count\nBeats", H::ListPane, R::ListKindSelection, NodeKind::AllParts,
         kNoSep},
        {kCmdTrackChannel, "editTrackChannel", M::Edit, "Set track c&hannel...", "", kNoTool,
         "Set track channel number\nChannel", H::ListPane, R::ListKindSelection, NodeKind::Part,
         kNoSep},
        {kCmdSongTempo, "editSongTempo", M::Edit, "Set song &tempo...", "", kNoTool,
         "Set song tempo\nTempo", H::ListPane, R::ListKindSelection, NodeKind::AllSongs, kSep},
        {kCmdIncrement, "editIncrement", M::Edit, "I&ncrement part\tNum +", kKeypadPlus, kNoTool,
         "Increment current step part number\nIncrement", H::ListPane, R::ListKindSelection,
         NodeKind::Song, kNoSep},
        {kCmdDecrement, "editDecrement", M::Edit, "D&ecrement part\tNum -", kKeypadMinus, kNoTool,
         "Decrement current step part number\nDecrement", H::ListPane, R::ListKindSelection,
         NodeKind::Song, kSep},
        {kCmdInsertStep, "editInsertStep", M::Edit, "&Insert step\tIns", "Ins", kNoTool,
         "Insert steps into current song\nInsert", H::ListPane, R::ListKind, NodeKind::Song,
         kNoSep},
        {kCmdDelete, "editDelete", M::Edit, "&Delete item\tDel", "Del", kNoTool,
         "Delete selected parts, songs or steps", H::ActivePane, R::PaneSelection, kAny, kSep},
        {kCmdRename, "editRename", M::Edit, "&Rename\tF2", "F2", kNoTool,
         "Rename selected part or song\nRename", H::TreePane, R::TreeRename, kAny, kNoSep},
        {kCmdPianoRoll, "viewPianoRoll", M::View, "&Piano roll\tCtrl+P", "Ctrl+P", kNoTool,
         "Show the selected part as a piano roll\nPiano roll", H::Frame, R::PianoRollTarget, kAny,
         kNoSep},
        {kCmdSongView, "viewSongArrangement", M::View, "&Song arrangement\tCtrl+G", "Ctrl+G",
         kNoTool, "Show the selected song as blocks along a time line\nSong arrangement", H::Frame,
         R::SongViewTarget, kAny, kNoSep},
        {kCmdMidiFileDump, "toolsMidiFileDump", M::Tools, "&Midi File Dump...", "", kNoTool,
         "Dump Standard MIDI File\nDump", H::Frame, R::Always, kAny, kSep},
        {kCmdOptions, "toolsOptions", M::Tools, "&Options...", "", kTool,
         "Display program options dialog\nOptions", H::Frame, R::Always, kAny, kNoSep},
        {kCmdAbout, "helpAbout", M::Help, "&About Tarvix...", "", kTool,
         "Display program information and version number\nAbout", H::Frame, R::Always, kAny,
         kNoSep},
        // Keys bound to commands nothing handles: they are taken and do nothing.
        {kCmdCut, "editCut", M::None, nullptr, "Shift+Del; Ctrl+X", kNoTool, "", H::Nobody,
         R::Always, kAny, kNoSep},
        {kCmdNextPane, "nextPane", M::None, nullptr, "F6", kNoTool, "", H::Frame, R::Always, kAny,
         kNoSep},
        {kCmdPrevPane, "previousPane", M::None, nullptr, "Shift+F6", kNoTool, "", H::Frame,
         R::Always, kAny, kNoSep},
    };
    return table;
}

const CommandInfo* FindCommand(CommandId id)
{
    for (const CommandInfo& info : CommandTable())
        if (info.id == id)
            return &info;
    return nullptr;
}

const std::vector<CommandId>& ToolbarLayout()
{
    static const std::vector<CommandId> layout = {
        kCmdInit, kCmdNone,   kCmdOpen,   kCmdSave,    kCmdNone, kCmdReceive, kCmdSend,
        kCmdNone, kCmdImport, kCmdExport, kCmdNone,    kCmdCopy, kCmdPaste,   kCmdNone,
        kCmdUndo, kCmdRedo,   kCmdNone,   kCmdOptions, kCmdAbout};
    return layout;
}

const char* MenuTitle(CommandMenu menu)
{
    switch (menu) {
    case CommandMenu::File: return "&File";
    case CommandMenu::Edit: return "&Edit";
    case CommandMenu::Tools: return "&Tools";
    case CommandMenu::Help: return "&Help";
    case CommandMenu::View: return "&View";
    case CommandMenu::None: break;
    }
    return "";
}

} // namespace tarvix
