#include "ui/import/ImportCommand.h"

#include "framework/MessageBox.h"
#include "midifile/ImportRequest.h"
#include "midifile/MidiImport.h"
#include "model/Mmt8Memory.h"
#include "settings/Settings.h"
#include "ui/import/MidiImportDialog.h"
#include "ui/import/PaneSelection.h"

#include <optional>
#include <string>

namespace tarvix {

bool CImportCommand::Run(QWidget* parent, CMmt8Memory& memory, const CSettings& settings,
                         const CTrackDumpView& view, const PaneCommandContext& context,
                         const QString& file)
{
    const std::optional<MidiSelection> selection = MidiSelectionFor(context);
    if (!selection)
        return false;
    CMidiImport request;
    std::string error;
    if (!BuildImportRequest(memory, *selection, request, error)) {
        CMessageBox::Report(parent, QString::fromStdString(error));
        return false;
    }
    CMidiImportDialog dialog(request, settings.GetKey(), view, parent);
    if (dialog.Run(file) != QDialog::Accepted || !dialog.HasFile())
        return false;
    CImportPreview preview;
    if (!PreviewImport(request, memory, preview))
        return false;
    if (!preview.warning.empty() &&
        CMessageBox::Report(parent, QString::fromStdString(preview.warning) + "Import anyway?", {},
                            QMessageBox::Question, QMessageBox::Yes | QMessageBox::No,
                            QMessageBox::No) != QMessageBox::Yes)
        return false;
    memory = std::move(preview.result);
    memory.modified = 1;
    return true;
}

} // namespace tarvix
