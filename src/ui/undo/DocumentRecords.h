#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tarvix {

class CMmt8Memory;

// The document cut into its records, each as bytes that hold it exactly:
// the global block, then the 100 parts, then the 100 songs. Two takes
// compare record by record, so a change is found without knowing which
// command made it.
using RecordBytes = std::vector<std::uint8_t>;
using DocumentRecords = std::vector<RecordBytes>;

DocumentRecords TakeRecords(const CMmt8Memory& memory);
// Puts one record of an earlier take back in place.
void RestoreRecord(CMmt8Memory& memory, std::size_t record, const RecordBytes& bytes);

} // namespace tarvix
