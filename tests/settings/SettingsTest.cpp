#include "SettingsStoreTest.h"

#include "settings/Settings.h"

#include <fstream>
#include <vector>

namespace tarvix {
namespace {

using testing::SettingsStoreTest;

void ExpectDefaults(const SettingValues& v)
{
    const std::vector<std::uint32_t> flags = {v.loadDeviceOnStart,     v.loadLastFileOnStart,
                                              v.showToolBarButtonText, v.showMidiNoteName,
                                              v.showMidiProgramName,   v.showMidiControllerName};
    EXPECT_EQ(flags, (std::vector<std::uint32_t>{0, 0, 0, 1, 1, 1}));
    const std::vector<std::uint32_t> numbers = {
        v.midiInBufSize,   v.midiInBufNumber, v.midiOutBufSize, v.midiOutBufNumber,
        v.midiOutSyxDelay, v.midiOutBufDelay, v.fixedFontSize};
    EXPECT_EQ(numbers, (std::vector<std::uint32_t>{256, 64, 256, 64, 100, 10, 10}));
    EXPECT_EQ(v.midiInDevice + v.midiOutDevice, "");
    EXPECT_EQ(v.fixedFontName, "Courier");
}

TEST(SettingsTest, ExitSaveOrderIsTheLoadOrderWithoutTheFontValues)
{
    std::vector<std::string> loaded;
    std::vector<std::string> saved;
    for (const SettingDefinition& setting : SettingDefinitions()) {
        loaded.emplace_back(setting.name);
        if (setting.savedAtExit)
            saved.emplace_back(setting.name);
    }
    const std::vector<std::string> exitOrder = {
        "LoadDeviceOnStart", "LoadLastFileOnStart", "ShowToolBarButtonText",
        "ShowMidiNoteName",  "ShowMidiProgramName", "ShowMidiControllerName",
        "MidiInDevice",      "MidiInBufSize",       "MidiInBufNumber",
        "MidiOutDevice",     "MidiOutBufSize",      "MidiOutBufNumber",
        "MidiOutSyxDelay",   "MidiOutBufDelay",
    };
    EXPECT_EQ(saved, exitOrder);
    std::vector<std::string> loadOrder = exitOrder;
    loadOrder.insert(loadOrder.end(), {"FixedFontName", "FixedFontSize"});
    EXPECT_EQ(loaded, loadOrder);
}

TEST_F(SettingsStoreTest, FirstRunLeavesAllSixteenDefaultsInTheStore)
{
    ExpectDefaults(CSettings::Defaults());
    ExpectDefaults(CSettings(m_key).Values());
    EXPECT_EQ(StoredNames().size(), 16);
    EXPECT_EQ(Stored("FixedFontName").toString(), "Courier");
    ExpectDefaults(CSettings(m_key).Values());
}

TEST_F(SettingsStoreTest, StoredValuesOutsideTheirRangeAreIgnoredUntilSave)
{
    Plant("MidiInBufSize", 10u);
    Plant("MidiInBufNumber", 1024u); // highest accepted
    Plant("MidiOutBufSize", 64u);    // lowest accepted
    Plant("MidiOutSyxDelay", 1001u);
    Plant("ShowMidiNoteName", 2u);
    Plant("ShowMidiProgramName", 0u);
    Plant("MidiInDevice", QString(256, QLatin1Char('p')));
    Plant("MidiOutDevice", QString("Loopback out"));
    Plant("FixedFontSize", 4000000000u); // no range at all

    const CSettings settings(m_key);
    const SettingValues& values = settings.Values();
    EXPECT_EQ(values.midiInBufSize, 256u);
    EXPECT_EQ(values.midiInBufNumber, 1024u);
    EXPECT_EQ(values.midiOutBufSize, 64u);
    EXPECT_EQ(values.midiOutSyxDelay, 100u);
    EXPECT_EQ(values.showMidiNoteName, 1u);
    EXPECT_EQ(values.showMidiProgramName, 0u);
    EXPECT_EQ(values.midiInDevice, "");
    EXPECT_EQ(values.midiOutDevice, "Loopback out");
    EXPECT_EQ(values.fixedFontSize, 4000000000u);

    // Out-of-range numbers stay in the store until the exit save.
    EXPECT_EQ(Stored("MidiInBufSize").toString(), "10");
    ASSERT_TRUE(settings.Save());
    EXPECT_EQ(Stored("MidiInBufSize").toString(), "256");
    EXPECT_EQ(Stored("ShowMidiNoteName").toString(), "1");
    Plant("FixedFontSize", 0u);
    EXPECT_EQ(CSettings(m_key).Values().fixedFontSize, 0u);
}

TEST_F(SettingsStoreTest, OnlySaveWritesAndNeverTheFontValues)
{
    CSettings settings(m_key);
    SettingValues& values = settings.Values();
    values.loadLastFileOnStart = 1;
    values.midiOutDevice = "Port 2";
    values.fixedFontName = "Terminal";
    values.fixedFontSize = 12;
    EXPECT_EQ(CSettings(m_key).Values().midiOutDevice, ""); // not before Save

    Plant("FixedFontName", QString("Lucida Console"));
    Remove("FixedFontSize");
    ASSERT_TRUE(settings.Save());
    EXPECT_EQ(Stored("FixedFontName").toString(), "Lucida Console");
    EXPECT_FALSE(StoredNames().contains("FixedFontSize"));
    const CSettings reloaded(m_key);
    EXPECT_EQ(reloaded.Values().loadLastFileOnStart, 1u);
    EXPECT_EQ(reloaded.Values().midiOutDevice, "Port 2");
    EXPECT_EQ(reloaded.Values().fixedFontName, "Lucida Console");
}

TEST(SettingsTest, UnwritableStoreLoadsDefaultsAndSaveReportsFailure)
{
    testing::TempDir dir;
    std::ofstream(dir.File("file")) << "not a folder";
    const CSettingsKey key = CSettingsKey::InFile(dir.File("file") + "/Tarvix.ini");
    std::uint32_t value = 0;
    EXPECT_NE(key.ReadDwordValue("MidiInBufSize", value, 256), kSettingsSuccess);
    const CSettings settings(key);
    ExpectDefaults(settings.Values());
    EXPECT_FALSE(settings.Save());
}

} // namespace
} // namespace tarvix
