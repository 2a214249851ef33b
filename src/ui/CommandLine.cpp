#include "ui/CommandLine.h"

#include <QDir>

namespace tarvix {

QStringList FileNamesFromArguments(const QStringList& arguments)
{
    const bool slashOptions = QDir::separator() != QLatin1Char('/');
    QStringList files;
    for (const QString& argument : arguments) {
        if (argument.isEmpty() || argument.startsWith(QLatin1Char('-')) ||
            (slashOptions && argument.startsWith(QLatin1Char('/'))))
            continue;
        files.append(argument);
    }
    return files;
}

} // namespace tarvix
