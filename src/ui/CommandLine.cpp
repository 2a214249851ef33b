#include "ui/CommandLine.h"

namespace tarvix {

QStringList ParseCommandLine(const QString& text)
{
    QStringList files;
    const auto size = text.size();
    qsizetype pos = 0;
    while (pos < size) {
        if (text[pos].isSpace()) {
            ++pos;
            continue;
        }
        const QChar first = text[pos];
        if (first == QLatin1Char('"')) {
            const qsizetype close = text.indexOf(QLatin1Char('"'), pos + 1);
            if (close < 0)
                break; // unterminated: nothing for this token, and it ends the text
            files.append(text.mid(pos + 1, close - pos - 1));
            pos = close + 1;
            continue;
        }
        qsizetype end = pos;
        while (end < size && !text[end].isSpace())
            ++end;
        if (first != QLatin1Char('-') && first != QLatin1Char('/'))
            files.append(text.mid(pos, end - pos));
        pos = end;
    }
    return files;
}

QString CommandLineFromArguments(const QStringList& arguments)
{
    QStringList tokens;
    for (const QString& argument : arguments) {
        if (argument.startsWith(QLatin1Char('-')))
            tokens.append(argument);
        else
            tokens.append(QLatin1Char('"') + argument + QLatin1Char('"'));
    }
    return tokens.join(QLatin1Char(' '));
}

} // namespace tarvix
