#pragma once

class QWidget;

namespace tarvix {

class CMmt8Memory;
class IMidiPorts;

// Receive: waits, with the progress dialog, for the dump the user starts on
// the device and loads it into the document. True when a dump loaded and
// replaced the document; false when the input port is closed, the user
// cancelled or nothing that came loaded, the document then untouched. The
// save-changes question is the caller's, before.
bool RunReceiveCommand(QWidget* parent, IMidiPorts& ports, CMmt8Memory& memory);

// Send: the document's dump to the device. A send that is over at once
// shows no dialog. True once everything went out.
bool RunSendCommand(QWidget* parent, IMidiPorts& ports, const CMmt8Memory& memory);

} // namespace tarvix
