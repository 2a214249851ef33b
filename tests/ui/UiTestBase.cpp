#include "UiTestBase.h"

#include "framework/DialogRunner.h"
#include "framework/FileDialog.h"
#include "framework/MessageBox.h"
#include "model/SysexDump.h"
#include "settings/SettingsKey.h"

#include <QAction>
#include <QApplication>
#include <QDialog>

#include <chrono>
#include <thread>

namespace tarvix::testing {

void CRecordingCommands::ShowOptions(int page, int focusControl)
{
    log << QStringLiteral("Options %1 %2").arg(page).arg(focusControl);
}

void CRecordingCommands::PaneCommand(CommandId id, const PaneCommandContext& context)
{
    QStringList rows;
    for (int row : context.selectedRows)
        rows << QString::number(row);
    log << QStringLiteral("%1 %2 node %3.%4 rows %5")
               .arg(static_cast<int>(id))
               .arg(context.pane == Pane::Tree ? QStringLiteral("tree") : QStringLiteral("list"))
               .arg(static_cast<int>(context.node.kind))
               .arg(context.node.index)
               .arg(rows.join(QLatin1Char(',')));
}

void CRecordingCommands::ShowTrackDump(int part, int track)
{
    log << QStringLiteral("TrackDump %1 %2").arg(part).arg(track);
}

bool CRecordingCommands::EditSongStep(int song, int step)
{
    log << QStringLiteral("StepProperties %1 %2").arg(song).arg(step);
    return confirmStepEdit;
}

UiTest::UiTest()
{
    CMessageBox::ResetScript();
    CMessageBox::SetUnattendedAnswer(QMessageBox::Cancel);
    CFileDialog::ResetScript();
    CFileDialog::SetUnattended(true);
    CDialogRunner::ResetScript();
    CDialogRunner::SetUnattendedResponder([](QDialog&) { return int(QDialog::Rejected); });
}

UiTest::~UiTest()
{
    Stop();
}

void UiTest::Start(const QStringList& arguments)
{
    auto ports = std::make_unique<CFakePorts>(m_portSetup);
    auto commands = std::make_unique<CRecordingCommands>();
    m_ports = ports.get();
    m_commands = commands.get();
    m_app = std::make_unique<CApplication>(CSettingsKey::InFile(SettingsPath().toStdString()),
                                           std::move(ports), std::move(commands));
    m_app->Start(arguments);
    ProcessEvents();
}

QStringList UiTest::ActionTexts(const QMenu& menu)
{
    QStringList texts;
    for (const QAction* action : menu.actions())
        texts << action->text();
    return texts;
}

bool UiTest::WaitUntil(const std::function<bool()>& condition)
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= deadline)
            return false;
        QApplication::processEvents();
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

void UiTest::Stop()
{
    if (m_app) {
        m_app.reset();
        m_ports = nullptr;
        m_commands = nullptr;
    }
}

QAction* UiTest::FindAction(const char* objectName)
{
    auto* action = Frame().findChild<QAction*>(QString::fromLatin1(objectName));
    EXPECT_NE(action, nullptr) << objectName;
    return action;
}

void UiTest::TriggerAction(const char* objectName)
{
    Frame().UpdateUserInterface();
    QAction* action = FindAction(objectName);
    ASSERT_NE(action, nullptr);
    ASSERT_TRUE(action->isEnabled()) << objectName << " is disabled";
    action->trigger();
    ProcessEvents();
}

bool UiTest::IsEnabled(const char* objectName)
{
    Frame().UpdateUserInterface();
    QAction* action = FindAction(objectName);
    return action && action->isEnabled();
}

void UiTest::ProcessEvents()
{
    for (int i = 0; i < 3; ++i)
        QApplication::processEvents();
}

QString UiTest::WriteSyx(const char* name, const CMmt8Memory& memory)
{
    const std::string path = m_dir.File(name);
    std::string error;
    EXPECT_TRUE(SaveSyxFile(memory, path, error)) << error;
    return QString::fromStdString(path);
}

void FillSampleDocument(CMmt8Memory& memory)
{
    memory.SetPartName(3, "Bass line");
    memory.SetPartBeats(3, 4);
    memory.SetTrackChannel(3, 1, 5);
    for (std::uint32_t time : {0u, 96u}) {
        auto note = std::make_unique<CMmt8NoteEvent>();
        note->time = static_cast<std::uint16_t>(time);
        note->timed = 1;
        note->data1 = 60;
        note->data2 = 100;
        note->duration = 48;
        memory.Part(3).tracks[1].events.push_back(std::move(note));
    }
    memory.SetPartName(12, "Drums");
    memory.SetPartBeats(12, 8);
    memory.SetSongName(7, "Verse");
    memory.SetSongTempo(7, 96);
    memory.AppendStep(7, 3, 0xFF);
    memory.AppendStep(7, 12, 0x15);
    memory.AppendStep(7, 0, 0x00);
}

} // namespace tarvix::testing
