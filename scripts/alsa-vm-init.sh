#!/bin/busybox sh
# init of the VM that scripts/alsa-vm.sh boots (it fills in the @...@
# names): loads the sound modules, puts the host's /usr, /etc and the
# repository (read-only, with a tmpfs over it for what the tests write)
# under a new root, runs the tests labelled alsa there and reports their
# exit status on the console before powering off. /command is what to run.
/bin/busybox --install -s /bin
export PATH=/bin

report() {
    echo "TARVIX-VM-EXIT $1"
    sync
    poweroff -f
}

mount -t proc proc /proc
mount -t sysfs sysfs /sys
mount -t devtmpfs devtmpfs /dev
if grep -q tarvix.probe /proc/cmdline; then
    echo TARVIX-VM-PROBE
    poweroff -f
fi

for module in @MODULES@; do
    modprobe "$module" || {
        echo "alsa-vm guest: cannot load $module"
        report 3
    }
done

share() { # TAG WHERE
    mount -t 9p -o "trans=virtio,version=9p2000.L,msize=262144,cache=loose,ro" "$1" "$2" || {
        echo "alsa-vm guest: cannot mount the host's $1 share"
        report 3
    }
}

root=/newroot
mount -t tmpfs -o size=768m,mode=0755 tmpfs "$root"
mkdir -p "$root/usr" "$root/etc" "$root/proc" "$root/sys" "$root/dev" "$root/tmp" \
    "$root/root" "$root/run" "$root/mnt/repo" "$root/mnt/rw/upper" "$root/mnt/rw/work" \
    "$root@REPO@"
chmod 1777 "$root/tmp"
for link in bin lib lib64 sbin; do
    ln -s "usr/$link" "$root/$link"
done
share usr "$root/usr"
share etc "$root/etc"
share repo "$root/mnt/repo"
mount -t overlay overlay \
    -o "lowerdir=$root/mnt/repo,upperdir=$root/mnt/rw/upper,workdir=$root/mnt/rw/work" \
    "$root@REPO@" || {
    echo "alsa-vm guest: cannot lay a tmpfs over the repository"
    report 3
}
mount -t proc proc "$root/proc"
mount -t sysfs sysfs "$root/sys"
mount -o bind /dev "$root/dev"
mkdir -p "$root/dev/shm"
mount -t tmpfs tmpfs "$root/dev/shm"

echo "== inside the VM: Linux $(uname -r), ALSA: $(cat /proc/asound/version 2>/dev/null)"
cat /proc/asound/cards
ls /dev/snd

cp /command "$root/run/command"
chroot "$root" /usr/bin/env -i HOME=/root TMPDIR=/tmp LANG=C.UTF-8 \
    PATH=/usr/local/bin:/usr/bin:/usr/sbin /bin/bash /run/command
report $?
