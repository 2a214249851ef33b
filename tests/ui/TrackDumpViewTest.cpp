// The text view: the cut of an over-long text, the window's make-up, the
// track listing, the font, and the MIDI File Dump command around it.
#include "EditorTestBase.h"

#include "framework/DialogRunner.h"
#include "framework/FileDialog.h"
#include "framework/MessageBox.h"
#include "framework/TextReportDialog.h"
#include "midifile/MidiDumpSink.h"
#include "midifile/MidiFileDump.h"
#include "midifile/MidiFileException.h"
#include "model/TrackListing.h"
#include "settings/Settings.h"
#include "ui/ListPane.h"
#include "ui/TrackDumpView.h"
#include "ui/TreePane.h"

#include <QFontDatabase>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>

namespace tarvix::testing {
namespace {

TEST(TextReportDialogTest, ATextBeyondTheCapacityIsCutOneHundredBeforeIt)
{
    const QString tooLong = QStringLiteral("\r\n<<Text is too long to display>>\r\n");
    const QString text(1001, QLatin1Char('a'));
    EXPECT_EQ(CTextReportDialog::FitText(text, 1000), QString(900, QLatin1Char('a')) + tooLong);
    // The field is asked for one more than the text: a text of exactly the
    // capacity still fits.
    EXPECT_EQ(CTextReportDialog::FitText(text.left(1000), 1000), text.left(1000));
    EXPECT_EQ(CTextReportDialog::FitText(text, 50), tooLong);
}

TEST(TextReportDialogTest, AResizableWindowWithNoButtonThatEscCloses)
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    CTextReportDialog dialog(QStringLiteral("Report"), QStringLiteral("one\r\ntwo\r\n"), font);
    dialog.show();
    QApplication::setActiveWindow(&dialog);
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Report"));
    EXPECT_TRUE(dialog.isSizeGripEnabled());
    EXPECT_EQ(dialog.minimumSize(), dialog.size());
    QPlainTextEdit& field = dialog.TextField();
    EXPECT_TRUE(field.isReadOnly());
    EXPECT_EQ(field.toPlainText(), QStringLiteral("one\ntwo\n"));
    EXPECT_EQ(dialog.focusWidget(), &field);
    EXPECT_FALSE(field.textCursor().hasSelection());
    auto* cancel = dialog.findChild<QPushButton*>(QStringLiteral("cancelButton"));
    ASSERT_NE(cancel, nullptr);
    EXPECT_FALSE(cancel->isVisible());
    QTest::keyClick(&field, Qt::Key_Escape);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(dialog.result(), QDialog::Rejected);

    CTextReportDialog empty(QStringLiteral("Report"), {}, font);
    EXPECT_EQ(empty.ShownText(), QStringLiteral("<<Empty>>\r\n"));
}

class TrackDumpViewTest : public EditorTest {
protected:
    // Runs the command or activation, catching the text window it opens.
    template <typename Action> void CaptureReport(Action action)
    {
        title.clear();
        text.clear();
        CDialogRunner::SetNextResponder([this](QDialog& dialog) {
            auto& report = dynamic_cast<CTextReportDialog&>(dialog);
            title = report.windowTitle();
            text = report.ShownText();
            font = report.TextField().font();
            return int(QDialog::Rejected);
        });
        action();
    }

    QString title;
    QString text;
    QFont font;
};

TEST_F(TrackDumpViewTest, ActivatingATrackListsItsEvents)
{
    StartEditor();
    FillSampleDocument(Memory());
    Frame().Tree().SelectNode({NodeKind::Part, 3});
    ProcessEvents();
    CaptureReport([this] { Frame().List().ActivateRow(1, -1); });
    EXPECT_EQ(title, QStringLiteral("MMT8 Track Dump"));
    EXPECT_EQ(text, QString::fromStdString(ListTrack(Memory().Part(3).tracks[1])));
    EXPECT_EQ(text.count(QStringLiteral("\r\n")), 4);

    CaptureReport([this] { Frame().List().ActivateRow(0, -1); });
    EXPECT_EQ(text, QStringLiteral("Time Ch Type Data\r\n----------------------------\r\n"));
    EXPECT_EQ(Memory().modified, 0);
}

TEST_F(TrackDumpViewTest, TheFontIsTheSettingsOrTheSystemsFixedFont)
{
    StartEditor();
    SettingValues& values = m_app->Settings().Values();
    values.fixedFontName = "DejaVu Sans Mono";
    values.fixedFontSize = 13;
    const CTrackDumpView view(m_app->Settings());
    EXPECT_EQ(view.FixedFont().family(), QStringLiteral("DejaVu Sans Mono"));
    EXPECT_EQ(view.FixedFont().pointSize(), 13);

    values.fixedFontName = "No Such Font At All";
    const QFont system = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    EXPECT_EQ(view.FixedFont().family(), system.family());
    Frame().Tree().SelectNode({NodeKind::Part, 0});
    ProcessEvents();
    CaptureReport([this] { Frame().List().ActivateRow(0, -1); });
    EXPECT_EQ(font.family(), system.family());
}

TEST(TrackDumpViewTextTest, ReportTextsAreDecodedWithoutLosingBytes)
{
    EXPECT_EQ(CTrackDumpView::DecodeText("Gr\xC3\xBC\xC3\x9F"), QStringLiteral("Grüß"));
    EXPECT_EQ(CTrackDumpView::DecodeText("Gr\xFC\xDF"), QStringLiteral("Grüß"));
    EXPECT_EQ(CTrackDumpView::DecodeText(std::string_view("ab\0cd", 5)), QStringLiteral("ab"));
}

TEST_F(TrackDumpViewTest, MidiFileDumpShowsTheReportOfTheChosenFile)
{
    const std::string path = m_dir.File("song.mid");
    WriteAllBytes(path,
                  {'M', 'T', 'h', 'd', 0,  0, 0,    6,  0,   0,    0,    1,  0, 96, 'M',  'T',  'r',
                   'k', 0,   0,   0,   12, 0, 0x90, 60, 100, 0x60, 0x80, 60, 0, 0,  0xFF, 0x2F, 0});
    StartEditor();
    CFileDialog::SetNextFileName(QString::fromStdString(path));
    CaptureReport([this] { TriggerAction("toolsMidiFileDump"); });
    EXPECT_EQ(CFileDialog::LastRequest().filter, QStringLiteral("MIDI Files (*.mid)"));
    EXPECT_EQ(CFileDialog::LastRequest().defaultSuffix, QStringLiteral("mid"));
    EXPECT_EQ(title, QStringLiteral("MIDI File Dump"));
    CMidiDumpSink sink;
    DumpMidiFile(path, sink);
    EXPECT_EQ(text, QString::fromStdString(std::string(sink.GetTextView())));
    EXPECT_TRUE(text.startsWith(QStringLiteral("\r\nDumping file: %1\r\n\r\nHeader\r\n")
                                    .arg(QString::fromStdString(path))));
    EXPECT_TRUE(text.contains(QStringLiteral("End of track\r\n")));
}

TEST_F(TrackDumpViewTest, AFileThatCannotBeReadIsReportedInAMessageBox)
{
    const std::string missing = m_dir.File("missing.mid");
    std::string expected;
    try {
        CMidiDumpSink sink;
        DumpMidiFile(missing, sink);
    } catch (const CMidiFileException& exception) {
        expected = exception.GetMessage();
    }
    ASSERT_FALSE(expected.empty());
    while (!expected.empty() && (expected.back() == '\n' || expected.back() == '\r'))
        expected.pop_back();

    StartEditor();
    int opened = 0;
    CDialogRunner::SetUnattendedResponder([&](QDialog&) {
        ++opened;
        return int(QDialog::Rejected);
    });
    CFileDialog::SetNextFileName(QString::fromStdString(missing));
    TriggerAction("toolsMidiFileDump");
    EXPECT_EQ(CMessageBox::LastText(), QString::fromStdString(expected));
    EXPECT_EQ(CMessageBox::LastIcon(), QMessageBox::Critical);
    EXPECT_EQ(opened, 0);

    // Cancelling the file dialog does nothing at all.
    const int shown = CMessageBox::ShownCount();
    TriggerAction("toolsMidiFileDump");
    EXPECT_EQ(CMessageBox::ShownCount(), shown);
    EXPECT_EQ(opened, 0);
}

} // namespace
} // namespace tarvix::testing
