#include "ui/clipboard/ClipboardFormats.h"

namespace tarvix {

QString ClipboardMimeType(ClipboardKind kind)
{
#if defined(Q_OS_WIN)
    return QStringLiteral("application/x-qt-windows-mime;value=\"%1\"")
        .arg(QString::fromLatin1(ClipboardFormatFor(kind)));
#else
    switch (kind) {
    case ClipboardKind::Parts: return QStringLiteral("application/x-tarvix-parts");
    case ClipboardKind::Tracks: return QStringLiteral("application/x-tarvix-tracks");
    case ClipboardKind::Songs: return QStringLiteral("application/x-tarvix-songs");
    case ClipboardKind::Steps: return QStringLiteral("application/x-tarvix-steps");
    }
    return {};
#endif
}

std::optional<ClipboardKind> ClipboardKindFor(Pane pane, NodeKind kind)
{
    const bool list = pane == Pane::List;
    if (pane == Pane::None)
        return std::nullopt;
    switch (kind) {
    case NodeKind::AllParts: return ClipboardKind::Parts;
    case NodeKind::Part: return list ? ClipboardKind::Tracks : ClipboardKind::Parts;
    case NodeKind::AllSongs: return ClipboardKind::Songs;
    case NodeKind::Song: return list ? ClipboardKind::Steps : ClipboardKind::Songs;
    case NodeKind::None: break;
    }
    return std::nullopt;
}

} // namespace tarvix
