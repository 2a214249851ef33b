// A file that fails to load, however it was asked for, changes nothing: the
// document, its file, its modified mark, its history and the views stay,
// and a save afterwards writes the user's parts, not an empty memory.
#include "EditorTestBase.h"

#include "framework/FileDialog.h"
#include "framework/MessageBox.h"
#include "framework/RecentFileList.h"
#include "model/SysexDump.h"
#include "ui/NavigationModel.h"
#include "ui/TreePane.h"

#include <QFile>

#include <string>

namespace tarvix::testing {
namespace {

class FailedLoadTest : public EditorTest {
protected:
    void SetUp() override
    {
        StartEditor();
        CMmt8Memory sample;
        FillSampleDocument(sample);
        m_good = WriteSyx("good.syx", sample);
        m_bad = TempFile("bad.syx");
        QFile file(m_bad);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("\xF0\x00\x00\x0E\x00 not a dump \xF7");
        file.close();
        CFileDialog::SetNextFileName(m_good);
        TriggerAction("fileOpen");
        ASSERT_EQ(Memory().Part(3).name, "Bass line");
    }

    QString PartLabel(int part)
    {
        CNavigationModel& model = Frame().Tree().Model();
        return model.data(model.IndexOf({NodeKind::Part, part})).toString();
    }

    void ExpectReportedAndKept(const QString& title)
    {
        EXPECT_EQ(CMessageBox::LastText(), QStringLiteral("Invalid sysex file: ") + m_bad);
        EXPECT_EQ(CMessageBox::LastIcon(), QMessageBox::Critical);
        EXPECT_EQ(Frame().CurrentPath(), m_good);
        EXPECT_EQ(Frame().windowTitle(), title);
        EXPECT_EQ(Memory().Part(3).beats, 4u);
        EXPECT_EQ(Memory().Song(7).steps.size(), 3u);
    }

    QString m_good;
    QString m_bad;
};

TEST_F(FailedLoadTest, OpenKeepsTheDocumentAndSaveWritesItsParts)
{
    CFileDialog::SetNextFileName(m_bad);
    TriggerAction("fileOpen");
    ExpectReportedAndKept(QStringLiteral("Tarvix - ") + m_good);
    EXPECT_EQ(Memory().modified, 0);
    EXPECT_EQ(PartLabel(3), QStringLiteral("03  Bass line"));
    EXPECT_FALSE(Frame().RecentFiles().Entries().contains(m_bad));

    TriggerAction("fileSave");
    CMmt8Memory saved;
    std::string error;
    ASSERT_TRUE(LoadSyxFile(saved, m_good.toStdString(), error)) << error;
    EXPECT_EQ(saved.Part(3).name, "Bass line");
    EXPECT_EQ(saved.Part(3).tracks[1].events.size(), 2u);
    EXPECT_EQ(saved.Song(7).name, "Verse");
}

TEST_F(FailedLoadTest, ARecentFileKeepsTheChangesTheirMarkAndTheirHistory)
{
    CNavigationModel& model = Frame().Tree().Model();
    model.setData(model.IndexOf({NodeKind::Part, 3}), QStringLiteral("Lead"));
    Frame().RecentFiles().Add(m_bad);
    CMessageBox::SetNextAnswer(QMessageBox::No);
    Frame().ExecuteCommand(kCmdRecentFirst);
    ProcessEvents();
    ExpectReportedAndKept(QStringLiteral("Tarvix - ") + m_good + QStringLiteral(" *"));
    EXPECT_EQ(Memory().Part(3).name, "Lead");
    EXPECT_EQ(Memory().modified, 1);
    EXPECT_FALSE(Frame().RecentFiles().Entries().contains(m_bad));
    TriggerAction("editUndo");
    EXPECT_EQ(PartLabel(3), QStringLiteral("03  Bass line"));
    EXPECT_EQ(Memory().modified, 0);
}

TEST_F(FailedLoadTest, TheCommandLineKeepsTheLastFileThatLoaded)
{
    Frame().ProcessStartup({m_good, m_bad});
    ProcessEvents();
    ExpectReportedAndKept(QStringLiteral("Tarvix - ") + m_good);
}

} // namespace
} // namespace tarvix::testing
