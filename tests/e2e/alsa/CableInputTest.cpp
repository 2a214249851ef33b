#include "CableInput.h"

#include <gtest/gtest.h>

#include <numeric>

namespace tarvix::testing {
namespace {

using Clock = CableInput::Clock;

std::vector<std::uint8_t> Counting(std::size_t count)
{
    std::vector<std::uint8_t> bytes(count);
    std::iota(bytes.begin(), bytes.end(), std::uint8_t{0});
    return bytes;
}

TEST(CableInputTest, BytesLeaveAtCableSpeedInTheirOrder)
{
    CableInput input(4096);
    const Clock::time_point start{};
    const auto bytes = Counting(100);
    input.Arrive(bytes.data(), bytes.size(), start);

    input.Drain(start + 9 * CableInput::kByteTime);
    EXPECT_EQ(input.Delivered().size(), 10u); // the first leaves at once
    input.Drain(start + std::chrono::seconds(1));
    EXPECT_EQ(input.Delivered(), bytes);
    EXPECT_EQ(input.Lost(), 0u);
}

TEST(CableInputTest, WhatFindsTheBufferFullIsLostAndTheRestKeepsItsOrder)
{
    CableInput input(64);
    const Clock::time_point start{};
    const auto bytes = Counting(100);
    input.Arrive(bytes.data(), bytes.size(), start);
    EXPECT_EQ(input.Lost(), 36u);

    // Ten byte times later eleven places are free again (the first byte
    // left at once).
    input.Arrive(bytes.data() + 64, 20, start + 10 * CableInput::kByteTime);
    EXPECT_EQ(input.Lost(), 45u);
    input.DrainAll();
    EXPECT_EQ(input.Delivered(), Counting(75));
}

TEST(CableInputTest, AnIdleCableDoesNotSaveUpTimeForLaterBytes)
{
    CableInput input(8);
    const Clock::time_point start{};
    const auto bytes = Counting(8);
    input.Arrive(bytes.data(), 1, start);
    input.Drain(start + std::chrono::seconds(10));

    // After a long pause a burst still fits only the buffer.
    const auto later = start + std::chrono::seconds(20);
    const auto burst = Counting(20);
    input.Arrive(burst.data(), burst.size(), later);
    EXPECT_EQ(input.Lost(), 12u);
    input.Drain(later);
    EXPECT_EQ(input.Delivered().size(), 2u);
}

} // namespace
} // namespace tarvix::testing
