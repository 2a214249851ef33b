#pragma once

#include "framework/FileDialog.h"

namespace tarvix {

// A file dialog for Standard MIDI Files: .mid files, under the caption
// given, starting at initialPath (none: where the dialog last was).
inline FileDialogRequest MidiFileRequest(const QString& caption, const QString& initialPath = {})
{
    return {caption, initialPath, QStringLiteral("MIDI Files (*.mid)"), QStringLiteral("mid")};
}

} // namespace tarvix
