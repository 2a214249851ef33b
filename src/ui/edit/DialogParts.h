#pragma once

#include <QString>

#include <string>

class QDialog;
class QDialogButtonBox;

namespace tarvix {

// OK and Cancel at the foot of an edit dialog; OK goes through the
// dialog's accept(), where a dialog checks its values.
QDialogButtonBox* CreateOkCancelButtons(QDialog& dialog);

// A part or song as the dialogs list it: "%02u %s", number and name.
QString NumberedName(int number, const std::string& name);

} // namespace tarvix
