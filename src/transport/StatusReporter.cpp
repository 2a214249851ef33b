#include "transport/StatusReporter.h"

namespace tarvix {

// Anchors the interface's virtual table in one object file.
StatusReporter::~StatusReporter() = default;

} // namespace tarvix
