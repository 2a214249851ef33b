#include "ui/edit/TrackChannelDialog.h"

#include "model/Mmt8Limits.h"
#include "ui/edit/DialogParts.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include <algorithm>

namespace tarvix {

CTrackChannelDialog::CTrackChannelDialog(std::uint32_t channel, QWidget* parent)
    : QDialog(parent), m_channels(new QComboBox(this))
{
    setObjectName(QStringLiteral("trackChannelDialog"));
    setWindowTitle(QStringLiteral("Track channel"));
    setModal(true);

    m_channels->setObjectName(QStringLiteral("channelList"));
    m_channels->addItem(QStringLiteral("Unchanged"));
    for (unsigned number = 1; number <= kMaxTrackChannel; ++number)
        m_channels->addItem(QString::number(number));
    m_channels->setCurrentIndex(channel <= kMaxTrackChannel ? static_cast<int>(channel) : 0);
    auto* label = new QLabel(QStringLiteral("Track channel:"), this);
    label->setBuddy(m_channels);

    auto* row = new QHBoxLayout;
    row->addWidget(label);
    row->addWidget(m_channels);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(row);
    layout->addWidget(CreateOkCancelButtons(*this));
    m_channels->setFocus(Qt::OtherFocusReason);
}

std::uint32_t CTrackChannelDialog::Channel() const
{
    return static_cast<std::uint32_t>(std::max(m_channels->currentIndex(), 0));
}

} // namespace tarvix
