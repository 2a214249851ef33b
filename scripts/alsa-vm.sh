#!/usr/bin/env bash
# Runs the tests labelled alsa inside a small virtual machine whose kernel
# has a real ALSA sequencer: Debian's own kernel package, its snd-seq-dummy
# (the "Midi Through" client) and snd-virmidi (virtual raw MIDI cards, whose
# /dev/snd/midiC*D* the tests' stand-in device reads and writes at cable
# speed). busybox is init; the host's /usr, /etc and this repository are
# shared read-only over 9p, so the tests built on the host run unchanged;
# what they write goes to a tmpfs laid over the repository. The guest's
# ctest output is printed here and its exit status is this script's.
#
#   scripts/alsa-vm.sh [BUILD_DIR [COMMAND...]]
#
# BUILD_DIR defaults to build/default (built beforehand); COMMAND, run in the
# VM instead of the tests, helps when looking into a failure there. KVM is
# used when it boots this kernel (a short probe: some nested setups hang in
# it), TCG otherwise; TARVIX_VM_ACCEL=kvm or tcg skips the probe. Downloads the
# kernel package once into build/alsa-vm/. A VM that cannot start, or does
# not report back within TARVIX_VM_TIMEOUT seconds (default 900), fails.
set -euo pipefail
cd "$(dirname "$0")/.."
repo=$(pwd -P)
build=$(cd "${1:-build/default}" 2>/dev/null && pwd -P) || {
    echo "alsa-vm: no build folder ${1:-build/default}; build the default preset first" >&2
    exit 1
}
cache="$repo/build/alsa-vm"
shift || true
timeout_seconds=${TARVIX_VM_TIMEOUT:-900}
if [ $# -gt 0 ]; then
    guest_command=$(printf '%q ' "$@")
    what="the command in the VM"
else
    what="the tests in the VM"
    guest_command="ctest --test-dir $(printf '%q' "$build") -L alsa --no-tests=error --output-on-failure --timeout 300"
fi

fail() {
    echo "alsa-vm: $*" >&2
    exit 1
}

for tool in qemu-system-x86_64 apt-get apt-cache dpkg-deb timeout; do
    command -v "$tool" >/dev/null || fail "$tool is missing (scripts/setup.sh installs it)"
done
busybox=/bin/busybox
# The initramfs has no libraries: init must be the static busybox.
if [ ! -x "$busybox" ] || ldd "$busybox" >/dev/null 2>&1; then
    fail "$busybox is missing or not static (scripts/setup.sh installs busybox-static)"
fi
[ -f "$build/CTestTestfile.cmake" ] || fail "$build has no tests; build it first"
case $build in
"$repo"/*) ;;
*) fail "$build is outside $repo, the only folder the VM shares" ;;
esac

# Modules the guest loads, in this order; modprobe adds what each needs.
# snd-dummy, a sound card with no hardware, is for jackd's ALSA backend
# (bench/jack-routes.sh); it comes last so the other cards keep their numbers.
wanted=(virtio_pci 9pnet_virtio 9p overlay snd-seq-dummy snd-virmidi snd-dummy)

# The files of the wanted modules and of those they need, under MODULES.
needed_modules() {
    local module line
    for module in "${wanted[@]}"; do
        line=$(grep -E "/${module//[-_]/[-_]}\.ko(\.[a-z]+)?:" "$1/modules.dep") ||
            fail "the kernel has no module $module"
        printf '%s\n' ${line/:/}
    done | sort -u
}

# The kernel apt would install now: linux-image-amd64 names it. Lists that
# are missing or out of date are fetched once.
kernel_package() {
    apt-cache depends linux-image-amd64 2>/dev/null |
        sed -n 's/^ *Depends: \(linux-image-[0-9].*-amd64\)$/\1/p' | head -n 1
}
download_kernel() { # PACKAGE
    (cd "$cache/download" && apt-get download -q "$1") >"$cache/download.log" 2>&1
}
image=$(kernel_package)
if [ -z "$image" ]; then
    apt-get update -q >/dev/null 2>&1 || true
    image=$(kernel_package)
fi
[ -n "$image" ] || fail "apt knows no linux-image-amd64 (apt-get update did not help)"
version=${image#linux-image-}
kernel_root="$cache/$version"
modules="$kernel_root/lib/modules/$version"

# A kernel unpacked before a module joined the list is unpacked again.
has_modules() {
    [ -f "$modules/modules.dep" ] || return 1
    local file
    for file in $(needed_modules "$modules"); do
        [ -f "$modules/$file" ] || return 1
    done
}
if ! has_modules; then
    echo "== alsa-vm: fetching ${image}-unsigned"
    # Only the kernel in use is kept.
    rm -rf "$cache"/*-amd64 "$cache"/*.partial "$cache/download"
    mkdir -p "$cache/download"
    # apt warns that its sandbox user cannot write into the build folder;
    # that is harmless, so its output is shown only when it fails.
    if ! download_kernel "${image}-unsigned"; then
        apt-get update -q >/dev/null 2>&1 || true
        download_kernel "${image}-unsigned" || {
            cat "$cache/download.log" >&2
            fail "apt-get download ${image}-unsigned failed"
        }
    fi
    dpkg-deb -x "$cache/download"/*.deb "$kernel_root.partial"
    rm -rf "$cache/download"
    "$busybox" depmod -b "$kernel_root.partial" "$version" ||
        fail "depmod failed on the unpacked kernel"
    # Of some 400 MB of modules, a few hundred KB are kept.
    partial_modules="$kernel_root.partial/lib/modules/$version"
    needed_modules "$partial_modules" >"$cache/needed"
    (cd "$partial_modules" && find kernel -name '*.ko*' | grep -vxF -f "$cache/needed" | xargs rm -f)
    mv "$kernel_root.partial" "$kernel_root"
fi

# The initramfs: busybox, those modules with what they depend on, and init.
initrd_root="$cache/initrd"
rm -rf "$initrd_root"
mkdir -p "$initrd_root"/{bin,dev,proc,sys,mnt,newroot,lib/modules/"$version"}
cp "$busybox" "$initrd_root/bin/busybox"
cp "$modules/modules.dep" "$modules/modules.alias" "$initrd_root/lib/modules/$version/"
needed_modules "$modules" >"$cache/needed"
for file in $(cat "$cache/needed"); do
    mkdir -p "$initrd_root/lib/modules/$version/$(dirname "$file")"
    cp "$modules/$file" "$initrd_root/lib/modules/$version/$file"
done
sed -e "s|@REPO@|$repo|g" -e "s|@MODULES@|${wanted[*]}|g" \
    scripts/alsa-vm-init.sh >"$initrd_root/init"
chmod +x "$initrd_root/init"
printf "cd %q && %s\n" "$repo" "$guest_command" >"$initrd_root/command"
(cd "$initrd_root" && find . | "$busybox" cpio -o -H newc 2>/dev/null | gzip -1) >"$cache/initrd.gz"

# no_timer_check: under TCG on a busy machine the kernel's check of the
# IO-APIC timer can see too few ticks and panic at boot.
vm() { # SECONDS ACCEL-OPTIONS... -- KERNEL-ARGUMENTS
    local seconds=$1
    shift
    local options=()
    while [ "$1" != -- ]; do
        options+=("$1")
        shift
    done
    shift
    timeout --foreground -k 10 "$seconds" \
        qemu-system-x86_64 "${options[@]}" -m 1024 -smp 2 -nodefaults -no-user-config \
        -display none -monitor none -serial stdio -no-reboot \
        -kernel "$kernel_root/boot/vmlinuz-$version" -initrd "$cache/initrd.gz" \
        -append "console=ttyS0 quiet loglevel=3 panic=-1 no_timer_check rdinit=/init $*" \
        -virtfs "local,path=/usr,mount_tag=usr,security_model=none,readonly=on,multidevs=remap" \
        -virtfs "local,path=/etc,mount_tag=etc,security_model=none,readonly=on,multidevs=remap" \
        -virtfs "local,path=$repo,mount_tag=repo,security_model=none,readonly=on,multidevs=remap" \
        </dev/null 2>&1
}

# KVM only where it really boots the kernel: inside some virtual machines
# /dev/kvm opens but the guest hangs before printing anything. A working KVM
# reaches init within a few seconds.
accel_name=${TARVIX_VM_ACCEL:-}
if [ -z "$accel_name" ]; then
    accel_name=tcg
    if [ -r /dev/kvm ] && [ -w /dev/kvm ]; then
        probe=$(vm 20 -accel kvm -cpu host -- tarvix.probe || true)
        if grep -q '^TARVIX-VM-PROBE' <<<"$probe"; then
            accel_name=kvm
        else
            echo "== alsa-vm: KVM does not boot the kernel on this machine; using TCG"
        fi
    fi
fi
case $accel_name in
kvm) accel=(-accel kvm -cpu host) ;;
tcg) accel=(-accel tcg) ;;
*) fail "TARVIX_VM_ACCEL must be kvm or tcg, not $accel_name" ;;
esac

echo "== alsa-vm: booting Linux $version under ${accel_name^^}, tests from $build"
log="$cache/console.log"
started=$SECONDS
status=0
# The console is the guest's serial port, shown here as it comes and kept in
# a log from which the guest's exit status is read.
vm "$timeout_seconds" "${accel[@]}" -- | tee "$log" || status=$?
elapsed=$((SECONDS - started))

result=$(sed -n 's/^TARVIX-VM-EXIT \([0-9]*\)\r*$/\1/p' "$log" | tail -n 1)
if [ -z "$result" ]; then
    if [ "$status" -eq 124 ]; then
        fail "the VM did not finish within $timeout_seconds s (console: $log)"
    fi
    fail "the VM stopped without reporting a result (QEMU status $status; console: $log)"
fi
if [ "$result" -ne 0 ]; then
    echo "== alsa-vm: $what FAILED (exit $result) after $elapsed s" >&2
    exit 1
fi
echo "== alsa-vm: $what passed; boot and run took $elapsed s"
