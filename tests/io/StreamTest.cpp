#include "io/Stream.h"

#include <gtest/gtest.h>

#include <vector>

namespace tarvix {
namespace {

std::string OverrunMessage(std::uint32_t count)
{
    return "CStream::CheckBufferOverrun: buffer overrun, cb=" + std::to_string(count) + "\n";
}

// Runs the read and returns the exception's message, or "" when none was thrown.
template <typename Read> std::string ThrownMessage(Read read)
{
    try {
        read();
    } catch (const CStreamException& e) {
        return e.GetMessage();
    }
    return {};
}

TEST(StreamTest, ConstructionDecidesTheDirection)
{
    const std::uint8_t byte = 1;
    EXPECT_TRUE(CStream().IsWriting());
    EXPECT_TRUE(CStream(nullptr, 0).IsWriting());
    EXPECT_TRUE(CStream(&byte, 0).IsWriting());
    EXPECT_FALSE(CStream(&byte, 1).IsWriting());
    EXPECT_FALSE(CStream(std::span<const std::uint8_t>(&byte, 1)).IsWriting());
}

TEST(StreamTest, WritesLittleEndianWithLengthPrefixes)
{
    CStream stream;
    stream.WriteUInt32(0x12345678);
    stream.WriteByte(0xAB);
    stream.WriteString("hi");
    stream.WriteString(static_cast<const char*>(nullptr));
    CByteBuffer empty;
    stream.WriteBlock(empty);
    const std::vector<std::uint8_t> expected = {0x78, 0x56, 0x34, 0x12, 0xAB, 2, 0, 0, 0, 'h',
                                                'i',  0,    0,    0,    0,    0, 0, 0, 0};
    EXPECT_EQ(std::vector<std::uint8_t>(stream.View().begin(), stream.View().end()), expected);
}

TEST(StreamTest, RoundTripOfEveryKind)
{
    CStream out;
    CByteBuffer block;
    ASSERT_TRUE(block.AppendText(std::string_view("\x00\xff block", 8)));
    out.WriteUInt32(0xFFFFFFFE);
    out.WriteByte(0x80);
    out.WriteString(std::string("text with\0nul", 13));
    out.WriteString("");
    out.WriteBlock(block);
    out.WriteBlock(CByteBuffer());

    CStream in(out.View());
    ASSERT_FALSE(in.IsWriting());
    std::uint32_t number = 0;
    std::uint8_t byte = 0;
    std::string text, emptyText = "x";
    CByteBuffer readBlock, emptyBlock;
    ASSERT_TRUE(readBlock.AppendText(">"));
    in.ReadUInt32(number);
    in.ReadByte(byte);
    in.ReadString(text);
    in.ReadString(emptyText);
    in.ReadBlock(readBlock);
    in.ReadBlock(emptyBlock);

    EXPECT_EQ(number, 0xFFFFFFFEu);
    EXPECT_EQ(byte, 0x80);
    EXPECT_EQ(text, std::string("text with\0nul", 13));
    EXPECT_EQ(emptyText, "");
    // The block is appended behind what the buffer held.
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(readBlock.GetData()), readBlock.GetSize()),
              std::string(">\x00\xff block", 9));
    EXPECT_EQ(emptyBlock.GetSize(), 0u);
    EXPECT_EQ(in.GetPosition(), out.GetBuffer().GetSize());
}

TEST(StreamTest, ThreeByteStream)
{
    const std::uint8_t bytes[] = {1, 2, 3};
    CStream stream(bytes, 3);
    std::uint32_t number = 0;
    EXPECT_EQ(ThrownMessage([&] { stream.ReadUInt32(number); }), OverrunMessage(4));
    EXPECT_EQ(stream.GetPosition(), 0u);

    std::uint8_t byte = 0;
    for (std::uint8_t expected : bytes) {
        stream.ReadByte(byte);
        EXPECT_EQ(byte, expected);
    }
    byte = 99;
    EXPECT_EQ(ThrownMessage([&] { stream.ReadByte(byte); }), OverrunMessage(1));
    EXPECT_EQ(byte, 99);
    EXPECT_EQ(stream.GetPosition(), 3u);
}

TEST(StreamTest, DeclaredLengthPastTheEndThrowsAndReadsNothing)
{
    // A length one past the data, and lengths that would wrap a 32-bit sum.
    for (std::uint32_t length : {3u, 0xFFFFFFFFu, 0xFFFFFFFCu}) {
        CStream out;
        out.WriteByte(0);
        out.WriteUInt32(length);
        out.WriteByte('a');
        out.WriteByte('b');
        CStream in(out.View());
        std::uint8_t skip = 0;
        in.ReadByte(skip);

        std::string text = "old";
        EXPECT_EQ(ThrownMessage([&] { in.ReadString(text); }), OverrunMessage(length));
        EXPECT_EQ(text, "old");
        CByteBuffer block;
        EXPECT_EQ(ThrownMessage([&] { in.ReadBlock(block); }), OverrunMessage(length));
        EXPECT_EQ(block.GetData(), nullptr);
        EXPECT_EQ(in.GetPosition(), 1u);
    }
}

TEST(StreamTest, ResetAndRewind)
{
    CStream stream;
    stream.WriteUInt32(5);
    std::uint32_t number = 0;
    stream.ReadUInt32(number);
    EXPECT_EQ(number, 5u);
    stream.Rewind();
    EXPECT_EQ(stream.GetPosition(), 0u);
    EXPECT_EQ(stream.GetBuffer().GetSize(), 4u);
    stream.Reset();
    EXPECT_EQ(stream.GetBuffer().GetSize(), 0u);
    EXPECT_EQ(stream.GetBuffer().GetCapacity(), 255u);
    std::uint8_t byte = 0;
    EXPECT_THROW(stream.ReadByte(byte), CStreamException);
}

} // namespace
} // namespace tarvix
