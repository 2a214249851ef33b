#!/usr/bin/python3
"""The outside reader and writer of the MIDI file tests: Debian's mido.

  mido_peer.py make FOLDER   writes sample files FOLDER/NAME.mid, each with
                             FOLDER/NAME.txt, mido's listing of it
  mido_peer.py list FILE     prints mido's listing of FILE
  mido_peer.py notes FILE    prints the notes of FILE as a sequencer shows them
  mido_peer.py play FILE     prints what a player makes of FILE (below)
  mido_peer.py tone FILE BPM BEATS
                             writes a file of one note (piano, middle C,
                             velocity 100) lasting BEATS beats at BPM

The listing is one line per event, as the C++ tests print theirs:
  header FORMAT TRACKS DIVISION / track / DELTA channel STATUS DATA..
  / DELTA sysex STATUS DATA.. / DELTA meta TYPE DATA..
with bytes as two lower-case hex digits. SysEx data are listed as they stand
in the file after the length: mido drops the closing F7, the listing puts it
back.

The notes are one line per note, by start: START LENGTH CHANNEL NOTE VELOCITY
(absolute ticks), each note-off ending the earliest open note of its channel
and note number, as most sequencers pair them; a note never ended has the
length "open". Each track starts with a line "track".

The play summary: "seconds S" (the playing time mido computes, to the
microsecond), the first track's time signatures, tempi (BPM) and markers
as "TICK time_signature N/D", "TICK tempo BPM", "TICK marker TEXT", then per
track "track NAME end TICK channels C.. sysex N empty-sysex N" (channels
counted from 1, in the order first heard).
"""
import os
import random
import sys

import mido


def hex_bytes(values):
    return "".join(" %02x" % value for value in values)


def meta_data(message):
    raw = message.bytes()  # FF, type, variable-length length, data
    index = 2
    while raw[index] & 0x80:
        index += 1
    return raw[1], raw[index + 1:]


def listing(midi):
    lines = ["header %d %d %d" % (midi.type, len(midi.tracks), midi.ticks_per_beat)]
    for track in midi.tracks:
        lines.append("track")
        for message in track:
            if message.is_meta:
                meta_type, data = meta_data(message)
                lines.append("%d meta%s" % (message.time, hex_bytes([meta_type] + data)))
            elif message.type == "sysex":
                data = [0xF0] + list(message.data) + [0xF7]
                lines.append("%d sysex%s" % (message.time, hex_bytes(data)))
            else:
                lines.append("%d channel%s" % (message.time, hex_bytes(message.bytes())))
    return "\n".join(lines) + "\n"


def notes(midi):
    lines = []
    for track in midi.tracks:
        lines.append("track")
        found = []
        open_notes = {}
        now = 0
        for message in track:
            now += message.time
            if message.type == "note_on" and message.velocity > 0:
                note = [now, "open", message.channel, message.note, message.velocity]
                found.append(note)
                open_notes.setdefault((message.channel, message.note), []).append(note)
            elif message.type in ("note_on", "note_off"):
                waiting = open_notes.get((message.channel, message.note))
                if waiting:
                    note = waiting.pop(0)
                    note[1] = now - note[0]
        lines.extend("%d %s %d %d %d" % tuple(note) for note in found)
    return "\n".join(lines) + "\n"


def play(midi):
    lines = ["seconds %.6f" % midi.length]
    now = 0
    for message in midi.tracks[0]:
        now += message.time
        if message.type == "time_signature":
            lines.append("%d time_signature %d/%d" % (now, message.numerator, message.denominator))
        elif message.type == "set_tempo":
            lines.append("%d tempo %.3f" % (now, mido.tempo2bpm(message.tempo)))
        elif message.type == "marker":
            lines.append("%d marker %s" % (now, message.text))
    for track in midi.tracks:
        now = 0
        channels = []
        sysex = empty = 0
        for message in track:
            now += message.time
            if message.type == "sysex":
                sysex += 1
                empty += len(message.data) == 0
            elif not message.is_meta and message.channel + 1 not in channels:
                channels.append(message.channel + 1)
        lines.append("track %s end %d channels %s sysex %d empty-sysex %d" % (
            track.name or "-", now, ",".join(map(str, channels)) or "-", sysex, empty))
    return "\n".join(lines) + "\n"


def tone(path, bpm, beats):
    midi = mido.MidiFile(type=1, ticks_per_beat=96)
    track = mido.MidiTrack()
    track.append(mido.MetaMessage("set_tempo", tempo=mido.bpm2tempo(bpm)))
    track.append(mido.Message("program_change", program=0))
    track.append(mido.Message("note_on", note=60, velocity=100))
    track.append(mido.Message("note_off", note=60, velocity=64, time=96 * beats))
    midi.tracks.append(track)
    midi.save(path)


def meta_of_each_kind():
    return [
        mido.MetaMessage("sequence_number", number=258),
        mido.MetaMessage("text", text="ab\x00c"),
        mido.MetaMessage("copyright", text="(c) Tarvix"),
        mido.MetaMessage("track_name", name="Conductor"),
        mido.MetaMessage("instrument_name", name="Piano"),
        mido.MetaMessage("lyrics", text="la"),
        mido.MetaMessage("marker", text="Verse", time=96),
        mido.MetaMessage("cue_marker", text="Cue"),
        mido.MetaMessage("device_name", name="Port A"),
        mido.MetaMessage("channel_prefix", channel=9),
        mido.MetaMessage("midi_port", port=2),
        mido.MetaMessage("set_tempo", tempo=500000),
        mido.MetaMessage("smpte_offset", frame_rate=25, hours=1, minutes=2, seconds=3,
                         frames=4, sub_frames=5),
        mido.MetaMessage("time_signature", numerator=6, denominator=8),
        mido.MetaMessage("key_signature", key="Bbm"),
        mido.MetaMessage("sequencer_specific", data=[0x41, 0x01, 0x02]),
        mido.UnknownMetaMessage(0x60, data=[1, 2, 3]),
    ]


def format0():
    midi = mido.MidiFile(type=0, ticks_per_beat=96)
    track = mido.MidiTrack()
    track.append(mido.MetaMessage("set_tempo", tempo=600000))
    track.append(mido.Message("program_change", channel=9, program=0))
    # Consecutive notes of one status: mido writes them with running status.
    for step in range(8):
        track.append(mido.Message("note_on", channel=9, note=36 + step, velocity=100,
                                  time=48))
        track.append(mido.Message("note_on", channel=9, note=36 + step, velocity=0, time=48))
    track.append(mido.Message("sysex", data=[0x43, 0x10, 0x4C, 0x00, 0x00, 0x7E, 0x00]))
    track.append(mido.Message("note_on", channel=0, note=60, velocity=90))
    track.append(mido.Message("note_off", channel=0, note=60, velocity=64, time=200000))
    midi.tracks.append(track)
    return midi


def format1():
    midi = mido.MidiFile(type=1, ticks_per_beat=480)
    midi.tracks.append(mido.MidiTrack(meta_of_each_kind()))
    track = mido.MidiTrack()
    track.append(mido.MetaMessage("track_name", name="Lead"))
    track.append(mido.Message("control_change", channel=3, control=7, value=100))
    track.append(mido.Message("pitchwheel", channel=3, pitch=-8192, time=10))
    track.append(mido.Message("pitchwheel", channel=3, pitch=8191, time=10))
    track.append(mido.Message("aftertouch", channel=3, value=33, time=10))
    track.append(mido.Message("polytouch", channel=3, note=60, value=5, time=10))
    track.append(mido.Message("note_on", channel=3, note=127, velocity=127, time=0x1FFFFF))
    track.append(mido.Message("note_off", channel=3, note=127, velocity=0, time=0x3FFF))
    midi.tracks.append(track)
    drums = mido.MidiTrack()
    drums.append(mido.Message("sysex", data=list(range(0x00, 0x7F)) * 3))
    drums.append(mido.Message("sysex", data=[]))
    drums.append(mido.Message("note_on", channel=9, note=42, velocity=80, time=5))
    midi.tracks.append(drums)
    return midi


def randomised(seed):
    generator = random.Random(seed)
    value = lambda: generator.randrange(128)
    makers = [
        lambda: mido.Message("note_on", note=value(), velocity=value()),
        lambda: mido.Message("note_off", note=value(), velocity=value()),
        lambda: mido.Message("polytouch", note=value(), value=value()),
        lambda: mido.Message("control_change", control=value(), value=value()),
        lambda: mido.Message("program_change", program=value()),
        lambda: mido.Message("aftertouch", value=value()),
        lambda: mido.Message("pitchwheel", pitch=generator.randrange(-8192, 8192)),
    ]
    midi = mido.MidiFile(type=1, ticks_per_beat=96)
    for _ in range(4):
        track = mido.MidiTrack()
        for _ in range(300):
            kind = generator.randrange(len(makers) + 2)
            if kind < len(makers):
                message = makers[kind]().copy(channel=generator.randrange(16))
            elif kind == len(makers):
                message = mido.Message("sysex", data=[value() for _ in range(value() * 2)])
            else:
                message = mido.MetaMessage("text", text="t%d" % generator.randrange(1000))
            # Every size of delta time the reader takes (65535 it takes for a failure).
            message.time = generator.choice([0, 0, 1, 95, 96, 1000, 70000])
            track.append(message)
        midi.tracks.append(track)
    return midi


def make(folder):
    samples = {"format0": format0(), "format1": format1(),
               "random1": randomised(1), "random2": randomised(2)}
    for name, midi in samples.items():
        path = os.path.join(folder, name + ".mid")
        midi.save(path)
        with open(os.path.join(folder, name + ".txt"), "w") as text:
            text.write(listing(mido.MidiFile(path)))


def main(arguments):
    if len(arguments) == 2 and arguments[0] == "make":
        make(arguments[1])
    elif len(arguments) == 2 and arguments[0] == "list":
        sys.stdout.write(listing(mido.MidiFile(arguments[1])))
    elif len(arguments) == 2 and arguments[0] == "notes":
        sys.stdout.write(notes(mido.MidiFile(arguments[1])))
    elif len(arguments) == 2 and arguments[0] == "play":
        sys.stdout.write(play(mido.MidiFile(arguments[1])))
    elif len(arguments) == 4 and arguments[0] == "tone":
        tone(arguments[1], int(arguments[2]), int(arguments[3]))
    else:
        sys.stderr.write(__doc__)
        return 2
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
