#pragma once

#include "ui/PendingCommands.h"

#include <QObject>
#include <QPoint>
#include <QString>

#include <functional>

class QMimeData;

namespace tarvix {

class CMainFrame;

// Files dragged onto the window from a file manager: a .syx file opens as
// Open would (asking to save changes first) and joins the recent files; a
// .mid file starts the import into the selection it was dropped on: the
// tree item or list row under it, else what the active pane has selected.
class CFileDropHandler : public QObject {
    Q_OBJECT
public:
    using ImportFile = std::function<void(const PaneCommandContext&, const QString& path)>;

    // Watches the window and both panes; lives as long as the window.
    CFileDropHandler(CMainFrame& frame, ImportFile importFile);

    // The first dropped .syx file, else the first .mid file; empty when the
    // drop holds neither.
    static QString DroppedFile(const QMimeData* data);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Drop(QObject* target, QPoint position, const QString& path);
    // Selects what lies under the drop and says where the import goes.
    PaneCommandContext ContextAt(QObject* target, QPoint position);
    void OpenSyx(const QString& path);

    CMainFrame& m_frame;
    ImportFile m_importFile;
};

} // namespace tarvix
