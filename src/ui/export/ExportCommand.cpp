#include "ui/export/ExportCommand.h"

#include "framework/MessageBox.h"
#include "midifile/MidiExport.h"
#include "midifile/MidiFile.h"
#include "ui/MidiFileRequest.h"
#include "ui/import/PaneSelection.h"

#include <QCoreApplication>

#include <optional>
#include <string>

namespace tarvix {

void CExportCommand::Run(QWidget* parent, const CMmt8Memory& memory,
                         const PaneCommandContext& context)
{
    const std::optional<MidiSelection> selection = MidiSelectionFor(context);
    if (!selection)
        return;
    std::string error;
    CMidiFile file;
    if (!BuildExportFile(memory, *selection, file, error)) {
        CMessageBox::Report(parent, QString::fromStdString(error));
        return;
    }
    const QString path = CFileDialog::GetSaveFileName(
        parent, MidiFileRequest(QCoreApplication::translate("CExportCommand", "Export")));
    if (path.isEmpty())
        return;
    if (!RunExport(memory, *selection, path.toStdString(), error))
        CMessageBox::Report(parent, QString::fromStdString(error));
}

} // namespace tarvix
