# Replaces a hosts file whole by the text on standard input, then flushes the system's cache of names.
#
#   bash -c "$this_script" replace-hosts-file FILE SIZE SHA256
#
# SIZE is the length of the text in bytes: with fewer, whoever sent it has died, and the old file stays.
# SHA256 is that of the file from which the text was made, or "none" where there was no file.
#
# Exit status: 0 replaced; 75 (EX_TEMPFAIL) somebody else has changed the file meanwhile; any other, failed. Unless
# it is 0, the file is the old one.
#
# A file that is a mount point (as in containers) can't be renamed over and is written in place. If that fails half way
# and what was there can't be put back either, a copy of it stays: FILE.stillgate.*.old.

export PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C
umask 022
trap '' TERM INT HUP # once begun, a write comes to its end

hosts=$(readlink -m -- "$1") size=$2 made_from=$3 in_place=

checksum() {
    [ -e "$hosts" ] || { echo none; return; }
    sha256sum <"$hosts" | cut -d ' ' -f 1
}

is_mount_point() {
    cut -d ' ' -f 5 /proc/self/mountinfo | grep -qxF -- "$hosts"
}

ownership() {
    stat -c %u:%g:%a -- "$1"
}

write_in_place() {
    cp -- "$hosts" "$old" || return
    cat -- "$new" >"$hosts" && sync -- "$hosts" && return
    cat -- "$old" >"$hosts" || cmp -s -- "$old" "$hosts" || trap 'rm -f -- "$new"' EXIT
    return 1
}

rename_over() {
    # Without the right to give a file away, renaming would change the owner.
    [ ! -e "$hosts" ] || [ "$(ownership "$new")" = "$(ownership "$hosts")" ] || return
    mv -fT -- "$new" "$hosts"
}

flush_names() {
    if [ -S /run/systemd/resolve/io.systemd.Resolve ]; then
        timeout -s KILL 5 resolvectl flush-caches
    elif [ -S /run/nscd/socket ]; then
        timeout -s KILL 5 nscd -i hosts
    fi
}

if ! new=$(mktemp -- "$hosts.stillgate.XXXXXX"); then
    is_mount_point || exit 1
    new=$(mktemp) || exit 1 # a file of its own in a folder that is read-only
    in_place=yes
fi
old=$new.old
trap 'rm -f -- "$new" "$old"' EXIT

if [ -e "$hosts" ]; then
    cp --attributes-only --preserve=all -- "$hosts" "$new" || exit 1
else
    chmod 0644 -- "$new" || exit 1
fi

cat >"$new" || exit 1
[ "$(stat -c %s -- "$new")" = "$size" ] || exit 1
sync -- "$new" || exit 1
[ "$(checksum)" = "$made_from" ] || exit 75

if [ "$in_place" ] || ! rename_over; then
    is_mount_point && write_in_place || exit 1
fi
sync -- "$(dirname -- "$hosts")"

flush_names
exit 0
