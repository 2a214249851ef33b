#pragma once

#include <QStringList>

namespace tarvix {

// The file names among the program's arguments, in order, exactly as the
// system passed them (spaces, quotes and all). An argument that begins with
// "-" is an option and is skipped, and so is one that begins with "/" where
// "/" cannot begin a path (Windows).
QStringList FileNamesFromArguments(const QStringList& arguments);

} // namespace tarvix
