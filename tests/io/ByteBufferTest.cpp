#include "io/ByteBuffer.h"

#include <gtest/gtest.h>

#include <limits>
#include <numeric>
#include <vector>

namespace tarvix {
namespace {

std::vector<std::uint8_t> Ramp(std::size_t count)
{
    std::vector<std::uint8_t> bytes(count);
    std::iota(bytes.begin(), bytes.end(), std::uint8_t{0});
    return bytes;
}

std::uint32_t CapacityAfter(std::uint32_t first, std::uint32_t second)
{
    CByteBuffer buffer;
    EXPECT_TRUE(buffer.Append(Ramp(first)));
    EXPECT_TRUE(buffer.Append(Ramp(second)));
    return buffer.GetCapacity();
}

TEST(ByteBufferTest, GrowthRule)
{
    EXPECT_EQ(CapacityAfter(0, 1), 255u);
    EXPECT_EQ(CapacityAfter(0, 1000), 1000u);
    EXPECT_EQ(CapacityAfter(2048, 1), 2048u + 767u);
    // Growth is added to the size, not the capacity.
    EXPECT_EQ(CapacityAfter(1, 255), 256u);
    EXPECT_EQ(CapacityAfter(255, 1), 510u);
    // A quarter of the capacity only above 1020 bytes.
    EXPECT_EQ(CapacityAfter(1020, 1), 1275u);
    EXPECT_EQ(CapacityAfter(1021, 1), 1021u + 255u + 255u);
    EXPECT_EQ(CapacityAfter(1021, 600), 1621u);
    // Room left: no reallocation.
    EXPECT_EQ(CapacityAfter(1, 254), 255u);
}

TEST(ByteBufferTest, KeepsContentsAcrossGrowth)
{
    CByteBuffer buffer;
    const auto bytes = Ramp(3000);
    for (std::uint8_t byte : bytes)
        ASSERT_TRUE(buffer.AppendByte(byte));
    EXPECT_TRUE(buffer.AppendText("end"));
    ASSERT_EQ(buffer.GetSize(), 3003u);
    EXPECT_TRUE(std::equal(bytes.begin(), bytes.end(), buffer.GetData()));
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(buffer.GetData()) + 3000, 3), "end");
}

TEST(ByteBufferTest, EmptyAppendAllocatesNothing)
{
    CByteBuffer buffer;
    EXPECT_TRUE(buffer.Append(nullptr, 0));
    EXPECT_TRUE(buffer.AppendText(""));
    EXPECT_EQ(buffer.GetData(), nullptr);
    EXPECT_EQ(buffer.GetCapacity(), 0u);
    EXPECT_EQ(buffer.GetSize(), 0u);
}

TEST(ByteBufferTest, CountPastFourGiBFailsAndLeavesBufferUnchanged)
{
    CByteBuffer buffer;
    ASSERT_TRUE(buffer.AppendByte(7));
    const std::uint8_t byte = 1;
    EXPECT_FALSE(buffer.Append(&byte, std::numeric_limits<std::uint32_t>::max()));
    EXPECT_EQ(buffer.GetSize(), 1u);
    EXPECT_EQ(buffer.GetCapacity(), 255u);
    EXPECT_EQ(buffer.GetData()[0], 7);
}

TEST(ByteBufferTest, ClearKeepsStorageFreeReleasesIt)
{
    CByteBuffer buffer;
    ASSERT_TRUE(buffer.AppendText("abc"));
    buffer.Clear();
    EXPECT_EQ(buffer.GetSize(), 0u);
    EXPECT_EQ(buffer.GetCapacity(), 255u);
    ASSERT_NE(buffer.GetData(), nullptr);

    CByteBuffer moved(std::move(buffer));
    EXPECT_EQ(moved.GetCapacity(), 255u);
    EXPECT_EQ(buffer.GetCapacity(), 0u);
    moved.Free();
    EXPECT_EQ(moved.GetData(), nullptr);
    EXPECT_EQ(moved.GetCapacity(), 0u);
    // After Free the next append starts over at the minimum.
    EXPECT_TRUE(moved.AppendByte(1));
    EXPECT_EQ(moved.GetCapacity(), 255u);
}

} // namespace
} // namespace tarvix
