#include "framework/FileDialog.h"

#include <QFileDialog>

#include <deque>

namespace tarvix {

namespace {
struct Script {
    std::deque<QString> names;
    bool unattended = false;
    FileDialogRequest last;
};

Script& TheScript()
{
    static Script script;
    return script;
}

QString Run(QWidget* parent, const FileDialogRequest& request, QFileDialog::AcceptMode mode)
{
    Script& script = TheScript();
    script.last = request;
    if (!script.names.empty()) {
        QString name = script.names.front();
        script.names.pop_front();
        return name;
    }
    if (script.unattended)
        return {};

    QFileDialog dialog(parent, request.caption, request.initialPath, request.filter);
    dialog.setAcceptMode(mode);
    dialog.setFileMode(mode == QFileDialog::AcceptOpen ? QFileDialog::ExistingFile
                                                       : QFileDialog::AnyFile);
    dialog.setDefaultSuffix(request.defaultSuffix);
    if (!request.initialPath.isEmpty())
        dialog.selectFile(request.initialPath);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return {};
    return dialog.selectedFiles().constFirst();
}
} // namespace

QString CFileDialog::GetOpenFileName(QWidget* parent, const FileDialogRequest& request)
{
    return Run(parent, request, QFileDialog::AcceptOpen);
}

QString CFileDialog::GetSaveFileName(QWidget* parent, const FileDialogRequest& request)
{
    return Run(parent, request, QFileDialog::AcceptSave);
}

void CFileDialog::SetNextFileName(const QString& path)
{
    TheScript().names.push_back(path);
}
void CFileDialog::SetUnattended(bool unattended)
{
    TheScript().unattended = unattended;
}
FileDialogRequest CFileDialog::LastRequest()
{
    return TheScript().last;
}
void CFileDialog::ResetScript()
{
    TheScript() = Script{};
}

} // namespace tarvix
