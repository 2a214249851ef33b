// Whatever loads must rewrite to a dump that loads as the same document,
// less only what an image cannot carry.
#include "FuzzFailure.h"
#include "SavedForm.h"

#include "model/Mmt8Memory.h"
#include "model/SysexDump.h"
#include "support/RandomDocument.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace tarvix;
    // Loading resets a document first, so two kept documents serve every input.
    static CMmt8Memory first;
    static CMmt8Memory second;

    std::string error;
    if (!LoadSysexData(first, std::span<const std::uint8_t>(data, size), error))
        return 0;
    std::vector<std::uint8_t> dump;
    if (!BuildDump(first, dump, error))
        return 0; // refusing to write what the device cannot hold is fine
    if (!LoadSysexData(second, dump, error))
        fuzzing::FailFuzzCheck("the rewritten dump does not load: " + error);
    fuzzing::ToSavedForm(first);
    const std::string difference = testing::DescribeDifference(first, second);
    if (!difference.empty())
        fuzzing::FailFuzzCheck("the rewritten dump loads differently: " + difference);
    return 0;
}
