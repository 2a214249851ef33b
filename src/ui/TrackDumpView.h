#pragma once

#include <QFont>
#include <QString>

#include <string_view>

class QWidget;

namespace tarvix {

class CMmt8Memory;
class CSettings;

// The read-only text window in the fixed font of the settings: a track's
// event listing, or a finished report (the MIDI file dump, an imported
// track) handed over by its caller.
class CTrackDumpView {
public:
    static constexpr const char* kTrackDumpTitle = "MMT8 Track Dump";

    explicit CTrackDumpView(const CSettings& settings) : m_settings(settings) {}

    // The listing of one track of a part.
    void ShowTrack(QWidget* parent, const CMmt8Memory& memory, int part, int track) const;
    // Text with CR LF line ends, as the report builders write it.
    void ShowText(QWidget* parent, const QString& title, std::string_view text) const;

    // The font named by the settings at their size, or the system's fixed
    // font when there is no such font.
    QFont FixedFont() const;
    // UTF-8 when the bytes are, else one character per byte, so no byte of
    // a file's text is lost.
    static QString DecodeText(std::string_view text);

private:
    const CSettings& m_settings;
};

} // namespace tarvix
