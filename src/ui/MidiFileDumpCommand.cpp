#include "ui/MidiFileDumpCommand.h"

#include "framework/MessageBox.h"
#include "midifile/MidiDumpSink.h"
#include "midifile/MidiFileDump.h"
#include "midifile/MidiFileException.h"
#include "ui/MidiFileRequest.h"
#include "ui/TrackDumpView.h"

#include <QCoreApplication>

#include <string>

namespace tarvix {

void CMidiFileDumpCommand::Run(QWidget* parent, const CTrackDumpView& view)
{
    const QString path = CFileDialog::GetOpenFileName(
        parent, MidiFileRequest(QCoreApplication::translate("CMidiFileDumpCommand", "Open")));
    if (path.isEmpty())
        return;
    std::string report;
    try {
        CMidiDumpSink sink;
        sink.SetShown(true, true, true);
        DumpMidiFile(path.toStdString(), sink);
        report = sink.GetTextView();
    } catch (const CMidiFileException& exception) {
        CMessageBox::Report(parent, QString::fromStdString(exception.GetMessage()));
        return;
    }
    view.ShowText(parent, QString::fromLatin1(kTitle), report);
}

} // namespace tarvix
