#include "ui/TrackDumpView.h"

#include "framework/DialogRunner.h"
#include "framework/TextReportDialog.h"
#include "model/Mmt8Memory.h"
#include "model/TrackListing.h"
#include "settings/Settings.h"

#include <QFontDatabase>
#include <QStringDecoder>

namespace tarvix {

namespace {
// A size nobody could read is taken as no size at all.
constexpr std::uint32_t kLargestPointSize = 400;
} // namespace

void CTrackDumpView::ShowTrack(QWidget* parent, const CMmt8Memory& memory, int part,
                               int track) const
{
    if (!CMmt8Memory::IsPart(part) || !CMmt8Memory::IsTrack(track))
        return;
    const std::string listing =
        ListTrack(memory.Part(part).tracks[static_cast<std::size_t>(track)]);
    ShowText(parent, QString::fromLatin1(kTrackDumpTitle), listing);
}

void CTrackDumpView::ShowText(QWidget* parent, const QString& title, std::string_view text) const
{
    CTextReportDialog dialog(title, DecodeText(text), FixedFont(), parent);
    CDialogRunner::Exec(dialog);
}

QFont CTrackDumpView::FixedFont() const
{
    const SettingValues& values = m_settings.Values();
    const QString name = QString::fromStdString(values.fixedFontName);
    if (name.isEmpty() || !QFontDatabase::hasFamily(name))
        return QFontDatabase::systemFont(QFontDatabase::FixedFont);
    QFont font(name);
    font.setStyleHint(QFont::TypeWriter);
    if (values.fixedFontSize > 0 && values.fixedFontSize <= kLargestPointSize)
        font.setPointSize(static_cast<int>(values.fixedFontSize));
    return font;
}

QString CTrackDumpView::DecodeText(std::string_view text)
{
    // A C string ends at its zero byte.
    text = text.substr(0, text.find('\0'));
    const QByteArrayView bytes(text.data(), static_cast<qsizetype>(text.size()));
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString decoded = utf8.decode(bytes);
    if (!utf8.hasError())
        return decoded;
    return QString::fromLatin1(bytes);
}

} // namespace tarvix
