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
    if (kind == NodeKind::None || pane == Pane::None)
        return std::nullopt;
    if (pane == Pane::List)
        return static_cast<ClipboardKind>(static_cast<int>(kind));
    const bool parts = kind == NodeKind::AllParts || kind == NodeKind::Part;
    return parts ? ClipboardKind::Parts : ClipboardKind::Songs;
}

} // namespace tarvix
