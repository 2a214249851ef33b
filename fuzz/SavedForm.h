#pragma once

namespace tarvix {
class CMmt8Memory;
}

namespace tarvix::fuzzing {

// A write keeps less than a read can produce, by design: the event encoder
// writes only the low 4 bits of a channel. SysEx events are left alone, as
// their "channel" is a data byte that reads back whole.
void MaskEventChannels(CMmt8Memory& memory);

// The document as a device image carries it: channels masked, no part
// without beats and no song without steps except song 99, which always
// has a record.
void ToSavedForm(CMmt8Memory& memory);

} // namespace tarvix::fuzzing
