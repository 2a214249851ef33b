#pragma once

#include "transport/transfer/TransferView.h"

#include <QDialog>
#include <QTimer>

class QLabel;
class QProgressBar;
class QPushButton;

namespace tarvix {

// The modal progress of a SysEx transfer: three lines of text, a bar and
// Cancel. Every 100 ms it lets the transfer look at the ports and shows
// what it says; it closes itself with OK once the transfer is over.
class CMidiProgressDlg : public QDialog, public ITransferView {
    Q_OBJECT
public:
    static constexpr int kTickMilliseconds = 100;
    static constexpr int kStatusTextId = 2801;
    static constexpr int kProgressBarId = 2802;

    explicit CMidiProgressDlg(QWidget* parent);

    void ReportMessage(const std::string& text) override;
    // Shown through the dialog runner, so that tests can step it.
    bool RunProgress(CSysexTransfer& transfer) override;

    QString StatusText() const;
    int ProgressMaximum() const;
    int ProgressValue() const;
    QPushButton* CancelButton() const { return m_cancel; }

private:
    void OnTick();
    void ShowTransfer();

    QLabel* m_text = nullptr;
    QProgressBar* m_progress = nullptr;
    QPushButton* m_cancel = nullptr;
    QTimer m_timer;
    CSysexTransfer* m_transfer = nullptr;
};

} // namespace tarvix
