#pragma once

#include <QString>

class QWidget;

namespace tarvix {

// What an open or save dialog asks for. The filter is in QFileDialog's
// form ("SysEx Files (*.syx);;All Files (*)").
struct FileDialogRequest {
    QString caption;
    QString initialPath;
    QString filter;
    QString defaultSuffix; // without the dot
};

// The program's file dialogs, scriptable for tests like CMessageBox: a
// queued name is returned without showing a dialog, an empty one cancels.
class CFileDialog {
public:
    // The chosen path, or empty when the user cancelled.
    static QString GetOpenFileName(QWidget* parent, const FileDialogRequest& request);
    static QString GetSaveFileName(QWidget* parent, const FileDialogRequest& request);

    static void SetNextFileName(const QString& path);
    // Cancels every dialog that has no queued name instead of showing it.
    static void SetUnattended(bool unattended);
    // The request of the last dialog, shown or scripted.
    static FileDialogRequest LastRequest();
    static void ResetScript();
};

} // namespace tarvix
