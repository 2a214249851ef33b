#include "SettingsStoreTest.h"

#include <QByteArray>
#include <QStringList>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace tarvix {
namespace {

using testing::SettingsStoreTest;
using testing::TempDir;

// The user's own settings are never reached from here: the program's store
// is redirected into a temporary folder before any test runs.
const TempDir& ConfigHome()
{
    static const TempDir dir;
    return dir;
}
[[maybe_unused]] const bool kConfigHomeRedirected =
    ::setenv("XDG_CONFIG_HOME", ConfigHome().Path().c_str(), 1) == 0;

#ifdef __linux__
TEST(SettingsKeyTest, ProgramStoreIsTheUsersConfigFileAlone)
{
    const CSettingsKey key = CSettingsKey::ForProgram();
    EXPECT_EQ(key.GetKeyPath(), "Software\\Quillon\\Tarvix");
    ASSERT_EQ(key.WriteDwordValue("MidiOutSyxDelay", 250), kSettingsSuccess);
    EXPECT_TRUE(std::filesystem::exists(ConfigHome().Path() / "Quillon" / "Tarvix.conf"));

    // QSettings would fall back to a vendor-wide file; the registry key has none.
    std::ofstream(ConfigHome().Path() / "Quillon.conf") << "[General]\nMidiOutBufDelay=7\n";
    std::uint32_t value = 0;
    key.ReadDwordValue("MidiOutBufDelay", value, 10);
    EXPECT_EQ(value, 10u);
}
#endif

TEST_F(SettingsStoreTest, DwordReadTakesOnlyWhatMeansA32BitNumber)
{
    std::uint32_t value = 1;
    EXPECT_EQ(m_key.ReadDwordValue("Missing", value, 256), kSettingsSuccess);
    EXPECT_EQ(value, 256u);
    EXPECT_EQ(Stored("Missing").toString(), "256");

    const std::pair<QVariant, std::uint32_t> cases[] = {
        // 7 is the default
        {QString(" 42 "), 42},
        {QString("4294967295"), 4294967295u},
        {QByteArray("\x10\x01\x00\x00", 4), 0x110},
        {QString("4294967296"), 7},
        {QString("-1"), 7},
        {QString("abc"), 7},
        {QByteArray("\x10\x01\x00", 3), 7},
        {QStringList{"1", "2"}, 7},
    };
    for (const auto& [stored, expected] : cases) {
        SCOPED_TRACE(stored.toString().toStdString());
        Plant("Value", stored);
        EXPECT_EQ(m_key.ReadDwordValue("Value", value, 7), kSettingsSuccess);
        EXPECT_EQ(value, expected);
        if (expected == 7) { // an unreadable value is replaced by the default
            EXPECT_EQ(Stored("Value").toString(), "7");
        }
    }
}

TEST_F(SettingsStoreTest, StringOfMoreThan255CharactersOrBinaryReadsAsDefault)
{
    std::string accented; // 255 characters in 510 bytes still fit
    for (int i = 0; i < 255; ++i)
        accented += "\xC3\xA9";
    const std::string tooLong(256, 'x');
    const QVariant cases[] = {QString(255, 'x'), QString::fromStdString(accented),
                              QString::fromStdString(tooLong), QByteArray("Arial")};
    for (const QVariant& stored : cases) {
        Plant("MidiInDevice", stored);
        std::string value;
        m_key.ReadStringValue("MidiInDevice", value, "default");
        const bool fits =
            stored.typeId() == QMetaType::QString && stored.toString() != tooLong.c_str();
        EXPECT_EQ(value, fits ? stored.toString().toStdString() : "default");
        EXPECT_EQ(Stored("MidiInDevice").toString().toStdString(), value);
    }
}

TEST_F(SettingsStoreTest, StringsSurviveTheStoresOwnSyntax)
{
    for (const std::string name :
         {"", "Port 1, Port 2", "  spaced  ", "@ByteArray(x)", "C:\\back \"quoted\"; not a comment",
          "Scarlett 2i2 USB MIDI 1 24:0",
          "Gr\xC3\xBC\xC3\x9F"
          "e"}) {
        ASSERT_EQ(m_key.WriteStringValue("MidiOutDevice", name), kSettingsSuccess);
        std::string value = "unset";
        m_key.ReadStringValue("MidiOutDevice", value, "default");
        EXPECT_EQ(value, name);
    }
}

TEST_F(SettingsStoreTest, BinaryReadNeedsBinaryOfExactlyTheAskedSize)
{
    const std::array<std::uint8_t, 4> position{0xF0, 0x00, 0x00, 0x00};
    ASSERT_EQ(m_key.WriteBinaryValue("SplitterPosition", position), kSettingsSuccess);
    std::array<std::uint8_t, 4> exact{};
    EXPECT_EQ(m_key.ReadBinaryValue("SplitterPosition", exact), kSettingsSuccess);
    EXPECT_EQ(exact, position);

    std::array<std::uint8_t, 5> longer{1, 2, 3, 4, 5};
    EXPECT_EQ(m_key.ReadBinaryValue("SplitterPosition", longer), kSettingsWrongValue);
    EXPECT_EQ(longer, (std::array<std::uint8_t, 5>{1, 2, 3, 4, 5}));

    // Text of the right size is still no binary; a miss is not written back.
    Plant("SplitterPosition", QString("1234"));
    EXPECT_EQ(m_key.ReadBinaryValue("SplitterPosition", exact), kSettingsWrongValue);
    EXPECT_EQ(m_key.ReadBinaryValue("MainFramePlacement", exact), kSettingsWrongValue);
    EXPECT_FALSE(StoredNames().contains("MainFramePlacement"));
}

TEST_F(SettingsStoreTest, SubKeysKeepTheirOwnValues)
{
    m_key.WriteStringValue("Document1", "top");
    m_key.WriteStringValue("Document1", "/a.syx", "Recent Document List");
    m_key.WriteDwordValue("Depth", 2, "Outer\\Inner");
    EXPECT_EQ(Stored("Recent Document List/Document1").toString(), "/a.syx");
    EXPECT_EQ(Stored("Outer/Inner/Depth").toString(), "2");

    std::string text;
    m_key.ReadStringValue("Document1", text, "", "Recent Document List");
    EXPECT_EQ(text, "/a.syx");

    EXPECT_EQ(m_key.DeleteValue("Document1", "Recent Document List"), kSettingsSuccess);
    EXPECT_EQ(m_key.DeleteValue("Document9", "Recent Document List"), kSettingsSuccess);
    EXPECT_FALSE(StoredNames().contains("Recent Document List/Document1"));
    EXPECT_TRUE(StoredNames().contains("Document1"));
}

} // namespace
} // namespace tarvix
