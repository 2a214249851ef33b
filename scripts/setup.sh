#!/usr/bin/env bash
# Installs the Debian packages Tarvix needs to build and test, when they are
# missing. Safe to run again: with everything present it changes nothing.
set -euo pipefail

packages=(
    cmake ninja-build g++            # the build
    clang-14 libclang-rt-14-dev      # sanitizers and libFuzzer
    clang-format-14                  # scripts/check-format.sh
    libgtest-dev libgmock-dev        # unit tests
    libbenchmark-dev                 # bench/
    qt6-base-dev                     # QtCore settings store (and later the editor)
    libqt6svg6                       # the editor's SVG icons
    python3-mido midicsv             # outside peers for the MIDI file tests
    timidity freepats                # plays the exported songs to audio in the MIDI file tests
    libasound2-dev libjack-jackd2-dev pkg-config  # ALSA and JACK MIDI backends
    jackd2                           # a real JACK server for the MIDI driver and e2e tests
    xvfb xauth xdotool imagemagick   # scripts/screenshot.sh: the editor on a virtual screen
    qemu-system-x86 busybox-static   # scripts/alsa-vm.sh: a VM with a real ALSA sequencer
    a2jmidid                         # ... and a JACK bridge to it, refused for sends
    pipewire pipewire-jack alsa-utils # bench/jack-routes.sh: PipeWire's JACK, aconnect
    dpkg-dev librsvg2-bin            # scripts/package.sh: dependencies (dpkg-shlibdeps), PNG icons
    desktop-file-utils appstream     # ... validating the desktop entry and the metainfo
    shared-mime-info groff-base file # ... the file type, the man pages, the icons' sizes
)

missing=()
for package in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed"; then
        missing+=("$package")
    fi
done

if [ ${#missing[@]} -eq 0 ]; then
    echo "setup: all build and test packages are installed"
    exit 0
fi

echo "setup: installing ${missing[*]}"
as_root=()
if [ "$(id -u)" -ne 0 ]; then
    if command -v sudo >/dev/null 2>&1; then
        as_root=(sudo)
    else
        echo "setup: need root (or sudo) to install: ${missing[*]}" >&2
        exit 1
    fi
fi
export DEBIAN_FRONTEND=noninteractive
"${as_root[@]}" apt-get update -q
"${as_root[@]}" apt-get install -y -q --no-install-recommends "${missing[@]}"
