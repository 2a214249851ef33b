#include "ui/ContextMenus.h"

namespace tarvix {

namespace {
const ContextMenuItem kCopy{"&Copy", kCmdCopy};
const ContextMenuItem kPaste{"&Paste", kCmdPaste};
const ContextMenuItem kSelectAll{"Select &all", kCmdSelectAll};
const ContextMenuItem kDelete{"&Delete", kCmdDelete};
const ContextMenuItem kImport{"I&mport...", kCmdImport};
const ContextMenuItem kExport{"E&xport...", kCmdExport};
const ContextMenuItem kAssign{"A&ssign...", kCmdAssign};
const ContextMenuItem kBeats{"&Beats...", kCmdPartBeats};
const ContextMenuItem kChannel{"C&hannel...", kCmdTrackChannel};
const ContextMenuItem kTempo{"&Tempo...", kCmdSongTempo};
const ContextMenuItem kIncrement{"I&ncrement", kCmdIncrement};
const ContextMenuItem kDecrement{"D&ecrement", kCmdDecrement};
const ContextMenuItem kInsert{"&Insert", kCmdInsertStep};
const ContextMenuItem kRename{"&Rename", kCmdRename};
const ContextMenuItem kPianoRoll{"Pian&o roll", kCmdPianoRoll};
const ContextMenuItem kSongView{"Son&g arrangement", kCmdSongView};

// Index: node kind - 1.
const ContextMenuLayout kTreeMenus[] = {
    {"P1_AllParts", {kCopy, kPaste, kDelete, kImport, kExport}},
    {"P1_OnePreset", {kCopy, kPaste, kDelete, kImport, kExport, kRename, kPianoRoll}},
    {"P1_AllSongs", {kCopy, kPaste, kDelete, kImport, kExport}},
    {"P1_OneSong", {kCopy, kPaste, kDelete, kImport, kExport, kRename, kSongView}},
};

const ContextMenuLayout kListMenus[] = {
    {"P2_PartList",
     {kCopy, kPaste, kSelectAll, kDelete, kImport, kExport, kAssign, kBeats, kPianoRoll}},
    {"P2_TrackList", {kCopy, kPaste, kSelectAll, kDelete, kImport, kExport, kChannel, kPianoRoll}},
    {"P2_SongList", {kCopy, kPaste, kSelectAll, kDelete, kImport, kExport, kTempo, kSongView}},
    {"P2_StepList",
     {kCopy, kPaste, kSelectAll, kIncrement, kDecrement, kInsert, kDelete, kImport, kExport,
      kPianoRoll, kSongView}},
};
} // namespace

const ContextMenuLayout* FindContextMenu(Pane pane, NodeKind kind)
{
    const int slot = static_cast<int>(kind) - 1;
    if (slot < 0 || slot > 3 || pane == Pane::None)
        return nullptr;
    return pane == Pane::Tree ? &kTreeMenus[slot] : &kListMenus[slot];
}

} // namespace tarvix
