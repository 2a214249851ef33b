#include "transport/transfer/TransferView.h"

namespace tarvix {

// Anchors the interface's virtual table in one object file.
ITransferView::~ITransferView() = default;

} // namespace tarvix
