#include "transport/StatusReporter.h"

namespace tarvix {

// Anchors the interface's virtual table in one object file.
IStatusReporter::~IStatusReporter() = default;

} // namespace tarvix
