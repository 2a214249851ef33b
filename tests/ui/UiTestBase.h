#pragma once

#include "model/Mmt8Memory.h"
#include "support/TempDir.h"
#include "ui/Application.h"
#include "ui/MainFrame.h"
#include "ui/MidiPorts.h"
#include "ui/PendingCommands.h"

#include <gtest/gtest.h>

#include <QMenu>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <ostream>

class QAction;

// Readable QStrings in test failures.
inline void PrintTo(const QString& text, std::ostream* out)
{
    *out << '"' << text.toStdString() << '"';
}

namespace tarvix::testing {

// Ports whose open state a test sets.
class CFakePorts : public IMidiPorts {
public:
    void OpenDevices() override { ++opened; }
    void CloseDevices() override { ++closed; }
    bool IsInputOpen() const override { return !inputName.isEmpty(); }
    bool IsOutputOpen() const override { return !outputName.isEmpty(); }
    QString InputName() const override { return inputName; }
    QString OutputName() const override { return outputName; }

    QString inputName;
    QString outputName;
    int opened = 0;
    int closed = 0;
};

// Writes down every hook the window reaches, one line each.
class CRecordingCommands : public IPendingCommands {
public:
    void Receive() override { log << QStringLiteral("Receive"); }
    void Send() override { log << QStringLiteral("Send"); }
    void ShowOptions(int page, int focusControl) override;
    void MidiFileDump() override { log << QStringLiteral("MidiFileDump"); }
    void PaneCommand(CommandId id, const PaneCommandContext& context) override;
    bool ClipboardHasRecords(Pane, NodeKind) const override { return clipboardHasRecords; }
    void ShowTrackDump(int part, int track) override;
    bool EditSongStep(int song, int step) override;

    QStringList log;
    bool clipboardHasRecords = false;
    bool confirmStepEdit = false;
};

// Starts the real application with its window offscreen, settings in a
// file of the test's own, every dialog answered by script (an unexpected
// message box is answered Cancel, a file dialog cancelled, any other
// dialog rejected).
class UiTest : public ::testing::Test {
protected:
    UiTest();
    ~UiTest() override;

    void Start(const QStringList& arguments = {});
    // Ends the application as the program does: the window stores its state
    // and the settings are saved.
    void Stop();

    CMainFrame& Frame() { return m_app->Frame(); }
    CMmt8Memory& Memory() { return m_app->Document(); }
    QAction* FindAction(const char* objectName);
    void TriggerAction(const char* objectName);
    bool IsEnabled(const char* objectName);
    // Runs the events queued, as the message loop would between inputs.
    static void ProcessEvents();
    // The texts of the menu's items, in order.
    static QStringList ActionTexts(const QMenu& menu);
    // Runs the event loop until the condition holds; false after a long while.
    static bool WaitUntil(const std::function<bool()>& condition);

    // A .syx file of the document in the test's folder.
    QString WriteSyx(const char* name, const CMmt8Memory& memory);
    QString SettingsPath() const { return QString::fromStdString(m_dir.File("settings.ini")); }
    QString TempFile(const char* name) const { return QString::fromStdString(m_dir.File(name)); }

    TempDir m_dir;
    // The ports' state the application starts with.
    CFakePorts m_portSetup;
    CFakePorts* m_ports = nullptr;
    CRecordingCommands* m_commands = nullptr;
    std::unique_ptr<CApplication> m_app;
};

// A document with recognisable contents: part 3 "Bass line" of 4 beats
// with two events on track 2 (channel 5); song 7 "Verse", tempo 96, steps
// playing parts 3 (all tracks), 12 (tracks 1 3 5) and 0 (none).
void FillSampleDocument(CMmt8Memory& memory);

} // namespace tarvix::testing
