#pragma once

#include <QString>
#include <QStringList>

namespace tarvix {

// The file names of a command line, in order. Tokens are separated by white
// space; one that begins with "-" or "/" is an option and is skipped; one
// that begins with a double quote runs to the next one and names a file only
// when that closing quote is there.
QStringList ParseCommandLine(const QString& text);

// The command line text for arguments the system has already split (argv
// without the program): every argument but a "-" option is quoted, so names
// with spaces, and absolute paths that begin with "/", stay file names.
QString CommandLineFromArguments(const QStringList& arguments);

} // namespace tarvix
