#include "SettingsStoreTest.h"

#include "settings/ImportOptionSettings.h"

namespace tarvix {
namespace {

using testing::SettingsStoreTest;

TEST_F(SettingsStoreTest, ImportOptionsFallBackOnTheirDefaultsOneByOne)
{
    EXPECT_EQ(LoadImportOptions(m_key), MidiImportOptions{});
    EXPECT_EQ(Stored("ImportMarkersAsParts").toUInt(), 1u); // the first read writes defaults

    Plant("ImportSysexEvents", 1);
    Plant("ImportMarkersAsParts", 0);
    Plant("ImportExplodeType0Midi", 2); // neither 0 nor 1
    Plant("ImportAftertouchEvents", "yes");
    MidiImportOptions expected;
    expected.importSysex = 1;
    expected.markersAsParts = 0;
    EXPECT_EQ(LoadImportOptions(m_key), expected);
}

TEST_F(SettingsStoreTest, StoredImportOptionsLoadBackUnderTheirNames)
{
    const MidiImportOptions options{1, 0, 0, 1, 1, 0};
    ASSERT_TRUE(StoreImportOptions(m_key, options));
    EXPECT_EQ(LoadImportOptions(m_key), options);
    EXPECT_EQ(Stored("ImportAftertouchEvents").toUInt(), 1u);
    EXPECT_EQ(Stored("ImportSetStartTimeToZero").toUInt(), 1u);
    EXPECT_EQ(Stored("ImportIgnoreChannelSpec").toUInt(), 1u);
    EXPECT_EQ(Stored("ImportExplodeType0Midi").toUInt(), 0u);
}

} // namespace
} // namespace tarvix
