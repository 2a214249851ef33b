#pragma once

#include "ui/CommandId.h"

#include <QObject>
#include <QPointer>

#include <map>
#include <optional>

namespace tarvix {

class CMainFrame;
class CMmt8Memory;
class CPianoRollWindow;
class CSongViewWindow;

// The piano roll and song windows of the main window: opened by their
// commands for the part or song the panes point at, one window per part or
// song, and drawn again whenever the list is (every edit, paste, load or
// undo redraws the list, so the windows follow the document from there).
class CViewWindows : public QObject {
    Q_OBJECT
public:
    CViewWindows(CMainFrame& frame, const CMmt8Memory& memory);

    // The part a piano roll would show: the current part, the first part
    // selected in the part list, or the part of the first selected step.
    std::optional<int> PianoRollTarget() const;
    // The song a song window would show: the current song or the first
    // song selected in the song list.
    std::optional<int> SongViewTarget() const;

    // Runs the View menu's commands.
    void Execute(CommandId id);
    CPianoRollWindow* OpenPianoRoll(int part);
    CSongViewWindow* OpenSongView(int song);
    CPianoRollWindow* PianoRoll(int part) const;
    CSongViewWindow* SongView(int song) const;

private:
    void RequestRefresh();
    void RefreshAll();
    void SelectStepInList(int song, int step);
    void ShowListSelection();

    CMainFrame& m_frame;
    const CMmt8Memory& m_memory;
    std::map<int, QPointer<CPianoRollWindow>> m_pianoRolls;
    std::map<int, QPointer<CSongViewWindow>> m_songViews;
    bool m_refreshPosted = false;
};

} // namespace tarvix
