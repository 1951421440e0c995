# run.sh PACKAGES SOURCES: installs the packages of a folder in a bare Debian 12, runs the tests of SOURCES/debian/tests
# there, and purges them, which must leave nothing. The root is thrown away; what debootstrap made is kept for the next
# run in build/bare-debian-12.tar.
set -euo pipefail
packages=$(realpath "$1")
sources=$(realpath "$2")
cd "$(dirname "$0")/../../.."
bare=$PWD/build/bare-debian-12.tar
root=$(mktemp -d /var/tmp/tavo-package.XXXXXX)

finish() {
    ! mountpoint -q "$root/proc" || umount "$root/proc"
    rm -rf --one-file-system "$root"
}
trap finish EXIT

# Debian's archives, as this machine reaches them: address, suite, component.
archives() {
    apt-get indextargets --format '$(REPO_URI) $(RELEASE) $(COMPONENT)' 'Created-By: Packages' 'Origin: Debian' | sort -u
}

make_bare() {
    local mirror folder
    [ -n "$(archives)" ] || apt-get -qq update
    mirror=$(archives | awk '$2 == "bookworm" && $3 == "main" { print $1; exit }')
    if [ -z "$mirror" ]; then
        echo "apt knows no archive of Debian 12" >&2
        exit 1
    fi
    echo "A bare Debian 12, once"
    debootstrap --variant=minbase bookworm "$root" "$mirror" >"$packages/debootstrap.log"
    # apt fetches as a user of its own.
    chmod 755 "$root"
    tar -C "$root" -cf "$bare.new" .
    mv "$bare.new" "$bare"
}

# inside COMMAND ...
inside() {
    chroot "$root" env -i HOME=/root PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive \
        ${http_proxy:+"http_proxy=$http_proxy"} ${https_proxy:+"https_proxy=$https_proxy"} "$@"
}

# Lets apt there reach the archives as it does on this machine.
connect() {
    archives | sed 's/^/deb /' >"$root/etc/apt/sources.list"
    for folder in /etc/apt/apt.conf.d /etc/ssl/certs /usr/local/share/ca-certificates; do
        if [ -d "$folder" ]; then
            mkdir -p "$root$folder"
            cp -rL "$folder/." "$root$folder"
        fi
    done
    inside apt-get -qq update
}

if [ -e "$bare" ]; then
    tar -C "$root" -xf "$bare"
    chmod 755 "$root"
else
    make_bare
fi
connect
mount -t proc proc "$root/proc"

echo "Installed by themselves"
mkdir "$root/packages"
cp "$packages"/*.deb "$root/packages"
rm -f "$root"/packages/*-dbgsym_*
names=$(for file in "$root"/packages/*.deb; do dpkg-deb -f "$file" Package; done)
inside sh -c 'apt-get -qq -y --no-install-recommends install /packages/*.deb' >"$packages/install.log" 2>&1 || {
    cat "$packages/install.log" >&2
    exit 1
}
[ "$(inside tavo --sim relay get power)" = off ]

echo "debian/tests"
status=0
rm -rf "$packages/autopkgtest"
autopkgtest --no-built-binaries --output-dir "$packages/autopkgtest" "$root"/packages/*.deb "$sources//" -- \
    chroot "$root" >"$packages/autopkgtest.log" 2>&1 || status=$?
cat "$packages/autopkgtest/summary" || true
if [ "$status" -ne 0 ]; then
    tail -n 60 "$packages/autopkgtest.log" >&2
    echo "autopkgtest ends with status $status" >&2
    exit 1
fi

echo "Purged"
# shellcheck disable=SC2086
inside dpkg -L $names | grep -v -x '/\.' | sort -u >"$packages/installed-files"
# shellcheck disable=SC2086
inside apt-get -qq -y purge $names >"$packages/purge.log" 2>&1
left=$(
    while IFS= read -r file; do
        # Folders may be those of other packages too.
        if [ -e "$root$file" ] && ! inside dpkg -S "$file" >/dev/null 2>&1; then
            echo "$file"
        fi
    done <"$packages/installed-files"
    rm -r "$root/packages"
    find "$root" -xdev -mindepth 1 \( -path "$root/tmp" -o -path "$root/var/tmp" \) -prune -o -name '*tavo*' -print
    inside dpkg -l | grep -F -w -e "$names" || true
)
if [ -n "$left" ]; then
    printf 'Left behind:\n%s\n' "$left" >&2
    exit 1
fi
