#include "transport/transfer/TransferView.h"

namespace tarvix {

// Anchors the interface's virtual table in one object file.
TransferView::~TransferView() = default;

} // namespace tarvix
