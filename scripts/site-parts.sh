# Functions that set up a host for the rehearsal and for the scenarios: a name, mail directories, the mail system as its
# packages leave it, other packages' programs. Sourced by shells inside a view; $BUILD is the build directory.
# shellcheck shell=bash

DATA=/var/opt/tern.harbor
PROGRAMS=/opt/tern.harbor
OWNER=mailtern
PATIENCE=300    # seconds that wait_for waits at most

# name_host LINE...: names the host mail.example.com; the lines are added to /etc/hosts.
name_host() {
    hostname mail
    echo mail >/etc/hostname
    ip address add 192.0.2.25/32 dev lo
    # Written in place: /etc/hosts may be a mount point, which cannot be replaced.
    printf '%s\n' "127.0.0.1 localhost" "$@" "192.0.2.25 mail.example.com mail" >/etc/hosts
}

make_maildrop_directory() {
    install -d -g mail -m 2775 /var/mail
    [ -e /var/spool/mail ] || ln -s ../mail /var/spool/mail
}

# Makes the configuration file and the directories, except the mailbox directory, which Install can make.
make_mail_system() {
    local directory
    printf '%s\n' DomainName=example.com TernHarbor="$DATA" ProgramDir="$PROGRAMS" MailboxDir="$DATA/mailboxes" \
        MailUserName="$OWNER" >/etc/tern.harbor.conf
    for directory in "" /config /control /messages /deferred; do
        install -d -o "$OWNER" -g "$OWNER" -m 750 "$DATA$directory"
    done
}

# make_programs <<END: makes stand-ins for other packages' programs; the input becomes the server program.
make_programs() {
    mkdir -p "$PROGRAMS/bin"
    cat >"$PROGRAMS/tern.harbor"
    printf '#!/bin/sh\ncat >/dev/null\n' >"$PROGRAMS/bin/sendmail"
    chmod 755 "$PROGRAMS/tern.harbor" "$PROGRAMS/bin/sendmail"
}

# make_database TEXT-FILE NAME: makes a database in the config directory from a text for tools/make_database.
make_database() {
    "$BUILD/tools/make_database" "$1" "$DATA/config/$2"
    give_to_owner "$DATA/config/$2"
}

# give_to_owner FILE...: sets the owner and mode of the mail system's files.
give_to_owner() {
    chown "$OWNER:$OWNER" "$@"
    chmod 640 "$@"
}

# unpack_packages FOLDER: unpacks its packages without running their scripts: nothing is started or configured.
unpack_packages() {
    local package
    for package in "$1"/*.deb; do
        # dpkg-deb --extract would replace the link /lib by a directory.
        dpkg-deb --fsys-tarfile "$package" | tar --extract --keep-directory-symlink --directory=/
    done
    ldconfig
}

# wait_for COMMAND...: waits until it succeeds. The limit only ends a hung test.
wait_for() {
    local _
    for _ in $(seq $((PATIENCE * 20))); do
        if ("$@") >/dev/null 2>&1; then return; fi    # a subshell, so that an "exit" in it ends only this try
        sleep 0.05
    done
    echo "waited in vain for: $*" >&2
    return 1
}

# listening PORT
listening() { ss -Hltn "sport = :$1" | grep -q .; }
# silent PORT: nothing listens there.
silent() { ! listening "$1"; }
