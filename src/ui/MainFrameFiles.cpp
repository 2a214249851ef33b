// The frame's file commands: Init, Open, Save, Save As, the recent files
// and the question before the document is replaced.
#include "ui/MainFrame.h"

#include "framework/DialogRunner.h"
#include "framework/FileDialog.h"
#include "framework/MessageBox.h"
#include "framework/RecentFileList.h"
#include "model/Mmt8Memory.h"
#include "model/SysexDump.h"
#include "settings/Settings.h"
#include "ui/AboutDialog.h"
#include "ui/FrameKeys.h"
#include "ui/SettingsKeyStore.h"

#include <QFileInfo>

#include <memory>
#include <string>

namespace tarvix {

namespace {
FileDialogRequest SyxFileRequest(const QString& caption, const QString& currentPath)
{
    return {caption, currentPath, QStringLiteral("SysEx Files (*.syx);;All Files (*)"),
            QStringLiteral("syx")};
}

// The name without its folder, whichever separator the path uses.
QString FileTitle(const QString& path)
{
    const qsizetype slash =
        std::max(path.lastIndexOf(QLatin1Char('/')), path.lastIndexOf(QLatin1Char('\\')));
    return path.mid(slash + 1);
}
} // namespace

bool CMainFrame::OpenFile(const QString& path, const QString& title)
{
    // Loaded aside and put in place only once whole: a file that fails to
    // load must not cost the user the document they have.
    auto loaded = std::make_unique<CMmt8Memory>();
    std::string error;
    if (!LoadSyxFile(*loaded, path.toStdString(), error)) {
        CMessageBox::Report(this, QString::fromStdString(error));
        return false;
    }
    m_context.memory = std::move(*loaded);
    m_context.memory.modified = 0;
    m_history.Clear();
    SetCurrentFile(path, title);
    RefreshViews();
    return true;
}

void CMainFrame::SetCurrentFile(const QString& path, const QString& title)
{
    m_currentPath = path;
    m_currentTitle = title;
    UpdateTitle();
}

bool CMainFrame::QuerySaveChanges()
{
    if (m_context.memory.modified == 0)
        return true;
    const auto answer = CMessageBox::Report(
        this, tr("The parts and songs have been changed.\nDo you want to save the changes?"),
        QString::fromLatin1("Tarvix"), QMessageBox::Question,
        QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, QMessageBox::Yes);
    if (answer == QMessageBox::No)
        return true;
    // Going on after a save that failed or was cancelled would lose the changes.
    return answer == QMessageBox::Yes && Save();
}

void CMainFrame::OnInit()
{
    if (!QuerySaveChanges())
        return;
    m_context.memory.InitMemory();
    m_context.memory.modified = 0;
    SetCurrentFile({}, {});
    RefreshViews();
}

void CMainFrame::OnOpen()
{
    const QString path =
        CFileDialog::GetOpenFileName(this, SyxFileRequest(tr("Open"), m_currentPath));
    if (path.isEmpty() || !QuerySaveChanges())
        return;
    OpenDocumentFile(path);
}

bool CMainFrame::OpenDocumentFile(const QString& path)
{
    if (!OpenFile(path, FileTitle(path)))
        return false;
    RememberFile(path);
    return true;
}

bool CMainFrame::Save()
{
    if (m_currentPath.isEmpty())
        return SaveAs();
    return SaveTo(m_currentPath);
}

bool CMainFrame::SaveAs()
{
    const QString path =
        CFileDialog::GetSaveFileName(this, SyxFileRequest(tr("Save As"), m_currentPath));
    return !path.isEmpty() && SaveTo(path);
}

bool CMainFrame::SaveTo(const QString& path)
{
    std::string error;
    if (!SaveSyxFile(m_context.memory, path.toStdString(), error)) {
        CMessageBox::Report(this, QString::fromStdString(error));
        return false;
    }
    m_context.memory.modified = 0;
    m_history.MarkClean();
    SetCurrentFile(path, FileTitle(path));
    RememberFile(path);
    RequestUpdate();
    return true;
}

void CMainFrame::OnRecentFile(CommandId id)
{
    const QString path = m_recentFiles->EntryFor(id);
    if (path.isEmpty() || !QuerySaveChanges())
        return;
    if (OpenFile(path, FileTitle(path))) {
        RememberFile(path);
    } else {
        m_recentFiles->Remove(path);
        CSettingsKeyStore store(m_settings.GetKey());
        m_recentFiles->Write(store, QString::fromLatin1(kRecentFilesKey));
    }
}

void CMainFrame::RememberFile(const QString& path)
{
    m_recentFiles->Add(path);
    CSettingsKeyStore store(m_settings.GetKey());
    m_recentFiles->Write(store, QString::fromLatin1(kRecentFilesKey));
}

void CMainFrame::OnAbout()
{
    CAboutDialog dialog(this);
    CDialogRunner::Exec(dialog);
}

} // namespace tarvix
