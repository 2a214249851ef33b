#pragma once

#include <QDialog>

#include <cstdint>

class QComboBox;

namespace tarvix {

// Set track channel: "Unchanged" (0) or a channel from 1 to 16.
class CTrackChannelDialog : public QDialog {
    Q_OBJECT
public:
    CTrackChannelDialog(std::uint32_t channel, QWidget* parent = nullptr);

    // The chosen entry's index, which is the channel.
    std::uint32_t Channel() const;

private:
    QComboBox* m_channels;
};

} // namespace tarvix
