#pragma once

namespace tarvix {

// Every command of the program keeps its historical number, so that menus,
// keys, toolbar and routing all speak of the same command by one value.
enum CommandId : int {
    kCmdNone = 0,

    kCmdInit = 57600,
    kCmdOpen = 57601,
    kCmdSave = 57603,
    kCmdSaveAs = 57604,
    kCmdRecentFirst = 57616,
    kCmdRecentLast = 57631,
    kCmdCopy = 57634,
    kCmdCut = 57635,
    kCmdPaste = 57637,
    kCmdSelectAll = 57642,
    kCmdUndo = 57643,
    kCmdAbout = 57664,
    kCmdExit = 57665,
    kCmdNextPane = 57680,
    kCmdPrevPane = 57681,

    kCmdReceive = 33010,
    kCmdSend = 33011,
    kCmdImport = 33012,
    kCmdExport = 33013,
    kCmdRename = 33020,
    kCmdDelete = 33021,
    kCmdInsertStep = 33022,
    kCmdPartBeats = 33023,
    kCmdTrackChannel = 33024,
    kCmdSongTempo = 33025,
    kCmdOptions = 33030,
    kCmdMidiFileDump = 33031,
    kCmdAssign = 33040,
    kCmdIncrement = 33041,
    kCmdDecrement = 33042,
    kCmdPianoRoll = 33050,
    kCmdSongView = 33051,
};

} // namespace tarvix
