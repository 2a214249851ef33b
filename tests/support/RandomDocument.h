#pragma once

#include <cstdint>
#include <random>
#include <string>

namespace tarvix {
class CMmt8Memory;
}

namespace tarvix::testing {

struct RandomDocumentOptions {
    int maxParts = 30;
    int maxEventsPerTrack = 40;
    int maxSongs = 20;
    int maxSteps = 255;
};

// Fills a fresh document with random content that a device image can hold:
// every event kind, timed and untimed events, names set with stray spaces,
// songs of up to 255 steps. Songs 0-98 are either empty or have steps,
// since a song without steps gets no record in the image.
void FillRandomDocument(CMmt8Memory& memory, std::mt19937& random,
                        const RandomDocumentOptions& options = {});

// Empty when the two documents hold the same parts, tracks, events and
// songs; otherwise the first difference, worded for a test failure. The
// global block is compared outside its pointer tables, which every write
// lays out anew.
std::string DescribeDifference(const CMmt8Memory& expected, const CMmt8Memory& actual);

} // namespace tarvix::testing
