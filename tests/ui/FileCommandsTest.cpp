#include "UiTestBase.h"

#include "framework/DialogRunner.h"
#include "framework/FileDialog.h"
#include "framework/MessageBox.h"
#include "framework/RecentFileList.h"
#include "model/SysexDump.h"
#include "ui/AboutDialog.h"
#include "ui/ListModel.h"
#include "ui/ListPane.h"
#include "version/Version.h"

#include <QDialog>
#include <QDir>
#include <QFile>
#include <QLabel>

namespace tarvix::testing {
namespace {

QByteArray ReadFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

class FileCommandsTest : public UiTest {
protected:
    QString SampleFile(const char* name = "sample.syx")
    {
        CMmt8Memory sample;
        FillSampleDocument(sample);
        return WriteSyx(name, sample);
    }

    void Modify()
    {
        Memory().SetPartName(0, "Changed");
        Memory().SetPartBeats(0, 2); // an empty part keeps no name in the image
        Memory().modified = 1;
        Frame().UpdateUserInterface();
    }
};

TEST_F(FileCommandsTest, TitleShowsTheFileAndTheModifiedMark)
{
    const QString path = SampleFile();
    Start();
    EXPECT_EQ(Frame().windowTitle(), QStringLiteral("Tarvix"));
    CFileDialog::SetNextFileName(path);
    TriggerAction("fileOpen");
    EXPECT_EQ(Frame().windowTitle(), QStringLiteral("Tarvix - ") + path);
    EXPECT_EQ(Frame().CurrentTitle(), QStringLiteral("sample.syx"));
    EXPECT_EQ(Memory().Part(3).name, "Bass line");
    EXPECT_EQ(Memory().modified, 0);
    Modify();
    EXPECT_EQ(Frame().windowTitle(), QStringLiteral("Tarvix - ") + path + QStringLiteral(" *"));

    CMessageBox::SetNextAnswer(QMessageBox::No);
    TriggerAction("fileInit");
    EXPECT_EQ(Frame().windowTitle(), QStringLiteral("Tarvix"));
    EXPECT_TRUE(Frame().CurrentPath().isEmpty());
    EXPECT_EQ(Memory().Part(3).name, "");
    EXPECT_EQ(Memory().modified, 0);
}

TEST_F(FileCommandsTest, OpenDialogAsksForSysExFilesFromTheCurrentFile)
{
    const QString path = SampleFile();
    Start({path});
    TriggerAction("fileOpen"); // cancelled: nothing changes
    const FileDialogRequest request = CFileDialog::LastRequest();
    EXPECT_EQ(request.initialPath, path);
    EXPECT_EQ(request.filter, QStringLiteral("SysEx Files (*.syx);;All Files (*)"));
    EXPECT_EQ(request.defaultSuffix, QStringLiteral("syx"));
    EXPECT_EQ(Frame().CurrentPath(), path);
}

TEST_F(FileCommandsTest, SaveWithoutAFileAsksForANameThenSavesThere)
{
    Start();
    Modify();
    const QString target = TempFile("new.syx");
    CFileDialog::SetNextFileName(target);
    TriggerAction("fileSave");
    EXPECT_EQ(Memory().modified, 0);
    EXPECT_EQ(Frame().CurrentPath(), target);
    EXPECT_EQ(Frame().windowTitle(), QStringLiteral("Tarvix - ") + target);
    EXPECT_EQ(Frame().RecentFiles().Entries(), QStringList{target});

    CMmt8Memory loaded;
    std::string error;
    ASSERT_TRUE(LoadSyxFile(loaded, target.toStdString(), error)) << error;
    EXPECT_EQ(loaded.Part(0).name, "Changed");

    // Save now writes to the current file without asking.
    Modify();
    TriggerAction("fileSave");
    EXPECT_EQ(Memory().modified, 0);
}

TEST_F(FileCommandsTest, AFailedSaveKeepsTheModifiedFlagAndTheOldFile)
{
    const QString folder = TempFile("songs");
    ASSERT_TRUE(QDir().mkpath(folder));
    const QString path = folder + QStringLiteral("/x.syx");
    {
        CMmt8Memory sample;
        FillSampleDocument(sample);
        std::string error;
        ASSERT_TRUE(SaveSyxFile(sample, path.toStdString(), error));
    }
    const QByteArray before = ReadFile(path);
    Start({path});
    Modify();

    CFileDialog::SetNextFileName(TempFile("missing/y.syx"));
    TriggerAction("fileSaveAs");
    EXPECT_TRUE(CMessageBox::LastText().contains(QStringLiteral("No such file or directory")))
        << CMessageBox::LastText().toStdString();
    EXPECT_EQ(Memory().modified, 1);
    EXPECT_EQ(Frame().CurrentPath(), path);
    EXPECT_TRUE(Frame().windowTitle().endsWith(QStringLiteral(" *")));

    // The current file's folder turns into a file: Save fails too, and the
    // file that was saved before is still whole where it went.
    const QString moved = TempFile("moved");
    ASSERT_TRUE(QDir().rename(folder, moved));
    QFile blocker(folder);
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    TriggerAction("fileSave");
    EXPECT_EQ(Memory().modified, 1);
    EXPECT_EQ(ReadFile(moved + QStringLiteral("/x.syx")), before);
}

TEST_F(FileCommandsTest, ChangesAreOfferedForSavingBeforeTheyAreDropped)
{
    Start();
    Modify();
    CMessageBox::SetNextAnswer(QMessageBox::Cancel);
    TriggerAction("fileInit");
    EXPECT_EQ(Memory().Part(0).name, "Changed");
    EXPECT_EQ(CMessageBox::LastIcon(), QMessageBox::Question);

    // Yes saves first; a cancelled save keeps the document.
    CMessageBox::SetNextAnswer(QMessageBox::Yes);
    TriggerAction("fileInit");
    EXPECT_EQ(Memory().Part(0).name, "Changed");

    const QString target = TempFile("kept.syx");
    CMessageBox::SetNextAnswer(QMessageBox::Yes);
    CFileDialog::SetNextFileName(target);
    TriggerAction("fileInit");
    EXPECT_EQ(Memory().Part(0).name, "");
    EXPECT_TRUE(QFile::exists(target));

    // An unmodified document is replaced without a question.
    const int shown = CMessageBox::ShownCount();
    TriggerAction("fileInit");
    EXPECT_EQ(CMessageBox::ShownCount(), shown);
}

TEST_F(FileCommandsTest, CloseStaysOpenWhenTheUserCancels)
{
    Start();
    Modify();
    CMessageBox::SetNextAnswer(QMessageBox::Cancel);
    EXPECT_FALSE(Frame().close());
    EXPECT_TRUE(Frame().isVisible());
    CMessageBox::SetNextAnswer(QMessageBox::No);
    TriggerAction("fileExit");
    EXPECT_FALSE(Frame().isVisible());
}

TEST_F(FileCommandsTest, CommandLineOpensEveryFileInOrder)
{
    const QString first = SampleFile("first.syx");
    CMmt8Memory other;
    other.SetSongName(1, "Second");
    other.SetSongTempo(1, 100);
    other.AppendStep(1, 0, 0xFF);
    // The name reaches the frame as the system passed it: a quote, spaces and
    // letters beyond ASCII are part of it, not separators. Options and empty
    // arguments name no file; an absolute path is no option.
    const QString second = WriteSyx("second \"one\" Süßer Ton.syx", other);
    const QString missing = TempFile("missing.syx");
    ASSERT_TRUE(QDir::isAbsolutePath(missing));
    const int shown = CMessageBox::ShownCount();
    Start({QStringLiteral("-x"), first, QString(), QStringLiteral("--quiet"), missing, second});
    EXPECT_EQ(CMessageBox::ShownCount(), shown + 1);
    EXPECT_TRUE(CMessageBox::LastText().contains(missing)) << CMessageBox::LastText().toStdString();
    EXPECT_EQ(Frame().CurrentPath(), second);
    EXPECT_EQ(Frame().CurrentTitle(), QStringLiteral("second \"one\" Süßer Ton.syx"));
    EXPECT_EQ(Memory().Song(1).name, "Second");
    EXPECT_EQ(Memory().Part(3).name, "");
}

TEST(AboutDialogTest, LinksOnlyWhereTheyLeadSomewhere)
{
    EXPECT_TRUE(LeadsSomewhere(QUrl(QStringLiteral("https://github.com/quillon/tarvix"))));
    EXPECT_TRUE(LeadsSomewhere(QUrl(QStringLiteral("mailto:tarvix@quillon.org"))));
    EXPECT_FALSE(LeadsSomewhere(QUrl(QStringLiteral("https://quillon.example/tarvix"))));
    EXPECT_FALSE(LeadsSomewhere(QUrl(QStringLiteral("mailto:tarvix@quillon.example"))));
    EXPECT_FALSE(LeadsSomewhere(QUrl(QStringLiteral("http://shop.invalid/"))));
    EXPECT_FALSE(LeadsSomewhere(QUrl()));
}

TEST_F(FileCommandsTest, AboutShowsIconVersionBuildAndCopyright)
{
    Start();
    QString version;
    QString copyright;
    CDialogRunner::SetNextResponder([&](QDialog& dialog) {
        version = dialog.findChild<QLabel*>(QStringLiteral("versionText"))->text();
        copyright = dialog.findChild<QLabel*>(QStringLiteral("copyrightText"))->text();
        const QLabel* icon = dialog.findChild<QLabel*>(QStringLiteral("programIcon"));
        EXPECT_TRUE(icon != nullptr && !icon->pixmap().isNull());
        // The maker's addresses are placeholders that lead nowhere: no links.
        EXPECT_EQ(dialog.findChild<QLabel*>(QStringLiteral("webLink")), nullptr);
        EXPECT_EQ(dialog.findChild<QLabel*>(QStringLiteral("mailLink")), nullptr);
        return int(QDialog::Accepted);
    });
    TriggerAction("helpAbout");
    EXPECT_EQ(version, QStringLiteral("Tarvix v%1.%2 (build 45)")
                           .arg(kVersionMajor)
                           .arg(kVersionMinor, 2, 10, QLatin1Char('0')));
    EXPECT_TRUE(copyright.startsWith(QStringLiteral("Copyright")));
}

} // namespace
} // namespace tarvix::testing
