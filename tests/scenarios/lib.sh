# What scenarios share: the host that every one of them starts from, and words for their scripts. Read by
# "run-scenario" before a scenario's own scripts, inside the view; $BUILD is the build directory.
# shellcheck shell=bash

. "$(dirname "${BASH_SOURCE[0]}")/../../scripts/site-parts.sh"
SCREEN=/tmp/scenario/screen
RECORDS=/var/lib/tern.harbor-install/runs

# --- the host ---------------------------------------------------------------------------------------------------

# The same small host wherever the tests run: its name, its logins, its mail directories, no mail programs.
make_host() {
    cat >/etc/passwd <<-'END'
	root:x:0:0:root:/root:/bin/bash
	daemon:x:1:1:daemon:/usr/sbin:/usr/sbin/nologin
	bin:x:2:2:bin:/bin:/usr/sbin/nologin
	sys:x:3:3:sys:/dev:/usr/sbin/nologin
	mail:x:8:8:mail:/var/mail:/usr/sbin/nologin
	nobody:x:65534:65534:nobody:/nonexistent:/usr/sbin/nologin
	mailtern:x:150:150:Mail system:/var/opt/tern.harbor:/usr/sbin/nologin
	anna:x:1001:1001:Anna Berg,Room 4,,:/home/anna:/bin/bash
	bruno:x:1002:1002:Bruno Keller,,,:/home/bruno:/bin/bash
	END
    cat >/etc/group <<-'END'
	root:x:0:
	daemon:x:1:
	bin:x:2:
	sys:x:3:
	adm:x:4:
	tty:x:5:
	mail:x:8:
	shadow:x:42:
	utmp:x:43:
	users:x:100:
	nogroup:x:65534:
	mailtern:x:150:
	anna:x:1001:
	bruno:x:1002:
	END
    sed 's/:.*/:*:19000:0:99999:7:::/' /etc/passwd >/etc/shadow
    sed 's/:.*/:*::/' /etc/group >/etc/gshadow
    chmod 644 /etc/passwd /etc/group
    chmod 640 /etc/shadow /etc/gshadow
    printf '%s: files\n' passwd group shadow gshadow hosts services >/etc/nsswitch.conf
    printf '%s\n' 'smtp 25/tcp mail' 'finger 79/tcp' 'http 80/tcp www' 'pop3 110/tcp pop-3' >/etc/services
    name_host "::1 localhost ip6-localhost"

    rm -rf /etc/inetd.conf* /usr/lib/sendmail* /usr/sbin/sendmail /etc/sendmail.cf /usr/etc \
        /var/spool/mqueue /var/mail /var/spool/mail "$DATA" "$PROGRAMS" "${RECORDS%/*}"
    install -d -m 700 "$RECORDS"
    make_home anna
    make_home bruno
    make_maildrop_directory
}

# make_home LOGIN: an empty home directory.
make_home() {
    rm -rf "/home/${1:?}"
    mkdir -p "/home/$1"
    chown "$1:$1" "/home/$1"
    chmod 755 "/home/$1"
}

# add_login LOGIN ID FULL-NAME: a further login, with a home directory.
add_login() {
    echo "$1:x:$2:$2:$3:/home/$1:/bin/bash" >>/etc/passwd
    echo "$1:x:$2:" >>/etc/group
    make_home "$1"
}

# The mail system as its packages leave it, ready for Install.
make_site() {
    make_mail_system
    install -d -o "$OWNER" -g "$OWNER" -m 750 "$DATA/mailboxes"
    # The module databases that come with the mail system.
    database WWW-Server "/Config Socket: 80"
    database Dispatch "/Config EmailConfig: yes"
    # A stand-in for the server program: a line at its start, then it stays, and notes each SIGHUP in a file.
    make_programs <<-'END'
	#!/bin/sh
	echo "tern.harbor: ready."
	trap 'echo SIGHUP >>/run/tern.harbor.signals' HUP
	while :; do sleep 1; done
	END
}

# make_runs: the directory for records, as the package makes it.
make_runs() { install -d -m 700 /var/lib/tern.harbor-install/runs; }

# database NAME LINE...: a database in the config directory, from lines as tools/make_database reads them.
database() {
    local name=$1
    shift
    printf '%s\n' "$@" >/tmp/scenario/database
    make_database /tmp/scenario/database "$name"
}

# make_accounts: the account database, with the special accounts in it.
make_accounts() {
    "$BUILD/tests/run_steps" SetupSpecialAccounts </dev/null >/dev/null
    forget_runs    # what is prepared is no run
}

# add_account UID ADDRESS: a further account in it.
add_account() {
    accounts "INSERT INTO accounts (uid) VALUES ('$1');
        INSERT INTO fields SELECT id, 'SMTP-Address', 0, '$2' FROM accounts WHERE uid = '$1';
        INSERT INTO addresses SELECT lower('$2'), id FROM accounts WHERE uid = '$1'"
}

# install_packages: puts the programs of the scenario's "packages" file in place.
install_packages() { unpack_packages "$SOURCE/build/packages/$NAME"; }

# make_sendmail: the real one, on a site that reaches no other host; its daemon listens whatever the machine's load is.
make_sendmail() {
    install_packages
    ln -s ../libexec/sendmail/sendmail /usr/lib/sendmail
    m4 /usr/share/sendmail/cf/m4/cf.m4 - >/etc/mail/sendmail.cf <<-'END'
	OSTYPE(`linux')dnl
	FEATURE(`nocanonify')dnl
	FEATURE(`accept_unresolvable_domains')dnl
	FEATURE(`no_default_msa')dnl
	define(`confDONT_PROBE_INTERFACES', `true')dnl
	define(`confDEF_USER_ID', `8:8')dnl
	define(`confQUEUE_LA', `9999')dnl
	define(`confREFUSE_LA', `9999')dnl
	define(`confSERVICE_SWITCH_FILE', `/etc/mail/service.switch-nodns')dnl
	undefine(`ALIAS_FILE')dnl
	DAEMON_OPTIONS(`Family=inet, Name=MTA, Addr=127.0.0.1')dnl
	MAILER(local)dnl
	MAILER(smtp)dnl
	END
}

# make_postfix: starts the real one, whose programs are in place; it reaches no other host.
make_postfix() {
    groupadd postdrop
    useradd --system postfix
    chgrp postdrop /usr/sbin/postdrop /usr/sbin/postqueue
    chmod g+s /usr/sbin/postdrop /usr/sbin/postqueue
    install -d -o postfix /var/lib/postfix
    cp /usr/share/postfix/dynamicmaps.cf /etc/postfix/
    cp /usr/share/postfix/master.cf.dist /etc/postfix/master.cf
    cat >/etc/postfix/main.cf <<-'END'
	compatibility_level = 3.6
	myhostname = mail.example.com
	inet_interfaces = 127.0.0.1
	inet_protocols = ipv4
	alias_maps =
	alias_database =
	maillog_file = /var/log/postfix.log
	END
    postfix start
    wait_for listening 25
}

# answer_file [LINE...]: /root/answers, for Answer: the answers by name of docs/unattended.md, and these lines; and the
# password's file, which they name.
answer_file() { (
    umask 077
    { "$SOURCE/tests/documents/answers" by-name; printf '%s\n' "$@"; } >/root/answers
    echo change-this-now >/root/postmaster-password
); }

# steps STEP...: for "run": those steps alone, started up as Install is, with the scenario's answers.
steps() { "$BUILD/tests/run_steps" "$@" <"$SCENARIO/answers"; }

# findings ABOUT...: for "run": what Check says about these things, process ids masked, and the exit status that it has
# for these. The tests may themselves run in a service's control group, which it would name.
findings() {
    local status
    unshare --cgroup "$BUILD/Check" >/tmp/scenario/findings
    status=$?
    awk -v abouts=" $* " '/^[0-9a-z]/ { shown = index(abouts, " " substr($2, 1, length($2) - 1) " ") } shown' \
        /tmp/scenario/findings | sed -E 's/(process|kill) [0-9]+/\1 ID/' | tee /tmp/scenario/shown
    if [ "$status" = 2 ]; then return 2; fi
    ! grep -q '^problem' /tmp/scenario/shown
}

# check_as_anna: what Check says to a user, who may not be able to reach the build directory.
check_as_anna() {
    install "$BUILD/Check" /tmp/scenario/Check
    setpriv --reuid anna --regid anna --init-groups /tmp/scenario/Check
}

# without_header: a screen from its first line after the header on.
without_header() { sed 1,9d; }

# play STEP... <<END: for a "run" of several dialogues: those steps with the answers that follow, and their exit status.
play() {
    "$BUILD/tests/run_steps" "$@" | without_header
    echo "(status ${PIPESTATUS[0]})"
}

# --- for "run": a dialogue with a program that waits -----------------------------------------------------------

# start COMMAND...: starts it with a pipe as its input, which "answer" and "end_of_input" feed; $PROCESS is its id.
start() {
    mkfifo /tmp/scenario/answers
    env --default-signal=INT,QUIT "$@" </tmp/scenario/answers &
    PROCESS=$!
    exec 9>/tmp/scenario/answers
}

answer() { printf '%s\n' "$@" >&9; }

end_of_input() { exec 9>&-; }

on_screen() { grep -qF -- "$1" "$SCREEN"; }

# finish: waits for the program's end; the scenario's exit status is then the program's.
finish() { wait "$PROCESS"; }

# fault SYSTEM-CALL:error=NAME[:when=N] [STRACE-OPTION...]: runs Install with that fault put in its way.
fault() {
    local inject=$1
    shift
    strace -qq -f -o /tmp/scenario/trace -e "trace=${inject%%:*}" -e "inject=$inject" "$@" "$BUILD/Install"
}

# --- Undo -------------------------------------------------------------------------------------------------------

RUN=20261122T170405Z-4711

# recorded CHANGE...: for "prepare": the record of a whole run, whose changes are objects of JSON without their time.
recorded() {
    install -d -m 700 "${RECORDS%/*}" "$RECORDS"
    rm -f "$RECORDS/$RUN.undone"    # of an earlier one of that name
    { echo '{"format":1}'; printf '{"time":"2026-11-22T17:04:06Z",%s}\n' "$@" '"kind":"end","status":0'; } >"$RECORDS/$RUN"
    chmod 600 "$RECORDS/$RUN"
}

# mask_runs: Undo's output, what differs from run to run masked.
mask_runs() {
    sed -E 's/[0-9]{8}T[0-9]{6}Z-[0-9]+/RUN/g; s/20[0-9]{2}-[0-9-]+ [0-9:]{8}/TIME/; s/[0-9]{20}\.(A[A-C])[0-9]+/STAMP.\1/'
}

checksum() { sha256sum "$1" | cut -d" " -f1; }

# The changes of a run that took everything over from other servers, as the record has them, made on the host: a line
# each. The host before is in /tmp/before.
take_over() {
    mkdir /tmp/before
    chmod 01777 /var/mail
    printf '%s\n' 'smtp stream tcp nowait root /usr/sbin/tcpd in.smtpd' 'echo stream tcp nowait root internal' >/etc/inetd.conf
    echo 'the old sendmail' >/usr/lib/sendmail
    cp -a /etc/inetd.conf /usr/lib/sendmail /tmp/before
    mv /etc/inetd.conf /etc/inetd.conf.bak
    sed 's/^smtp/#smtp/' /etc/inetd.conf.bak >/etc/inetd.conf
    mv /usr/lib/sendmail /usr/lib/sendmail.bak
    ln -s ../../opt/tern.harbor/bin/sendmail /usr/lib/sendmail
    chmod 3777 /var/mail
    rmdir "$DATA/mailboxes"
    install -d -o "$OWNER" -g "$OWNER" -m 770 "$DATA/mailboxes"
    cat <<-END
	"kind":"directory","path":"$DATA/mailboxes/","unfinished":"$DATA/mailboxes.new","access":{"owner":150,"group":150,"mode":"0770","access_list":""}
	"kind":"mode","path":"/var/spool/mail/","before":"1777","after":"3777"
	"kind":"host file","path":"/etc/inetd.conf","backup":"/etc/inetd.conf.bak","mode":"0644","before":"$(checksum /etc/inetd.conf.bak)","after":"$(checksum /etc/inetd.conf)"
	"kind":"signal","signal":"HUP","processes":[{"id":4001,"name":"inetd","user":0,"command":["/usr/sbin/inetd"],"unit":""}]
	"kind":"signal","signal":"TERM","processes":[{"id":4002,"name":"sendmail","user":0,"command":["sendmail: accepting connections"],"unit":""}]
	"kind":"link","path":"/usr/lib/sendmail","link":"../../opt/tern.harbor/bin/sendmail","backup":"/usr/lib/sendmail.bak","before":"$(checksum /usr/lib/sendmail.bak)","old_link":"","old_owner":0,"old_group":0
	"kind":"server","program":"/opt/tern.harbor/tern.harbor"
	END
}

# record_take_over: a host that was taken over, and the record of it.
record_take_over() {
    make_site
    take_over >/tmp/changes
    mapfile -t CHANGES </tmp/changes
    recorded "${CHANGES[@]}"
}

# same_config: the databases are as those in /tmp/before, with owners, modes and all bytes.
same_config() {
    diff -r "$DATA/config" /tmp/before
    is "owners and modes" "$(cd "$DATA/config" && stat -c '%n %U %G %a' -- *)" "$(cd /tmp/before && stat -c '%n %U %G %a' -- *)"
}

# is_as_before: that host is again as it was.
is_as_before() {
    cmp /etc/inetd.conf /tmp/before/inetd.conf
    cmp /usr/lib/sendmail /tmp/before/sendmail
    has_mode /var/mail "root:mail 1777"
    absent "$DATA/mailboxes"
    absent /etc/inetd.conf.bak
    absent /usr/lib/sendmail.bak
}

# --- for "check" ------------------------------------------------------------------------------------------------

fail() { echo "check: $*" >&2; exit 1; }

# is WHAT GOT WANTED
is() { [ "$2" = "$3" ] || fail "$1 is \"$2\", not \"$3\""; }

# has_mode PATH "OWNER:GROUP MODE"
has_mode() { is "$1" "$(stat -c '%U:%G %a' "$1")" "$2"; }

exists() { [ -e "$1" ] || fail "$1 does not exist"; }

absent() { if [ -e "$1" ] || [ -L "$1" ]; then fail "$1 exists"; fi; }

# has_line FILE LINE
has_line() { grep -qxF -- "$2" "$1" || fail "$1 has no line \"$2\""; }

running() { pgrep -x "$1" >/dev/null || fail "$1 does not run"; }

not_running() { ! pgrep -x "$1" >/dev/null || fail "$1 runs"; }

# damage DATABASE PAGE: overwrites a page, which the sqlite3 shell can name, with zeros.
damage() {
    dd if=/dev/zero of="$DATA/config/$1" bs=4096 seek=$(($2 - 1)) count=1 conv=notrunc status=none
}

# setting DATABASE TABLE KEY: the values, separated by commas.
setting() {
    sqlite3 "$DATA/config/$1" "SELECT value FROM settings WHERE path = '$2' AND key = '$3' ORDER BY position" |
        paste -sd,
}

# field UID NAME: the values of an account's field, separated by commas.
field() {
    accounts "SELECT value FROM fields JOIN accounts ON account = id WHERE uid = '$1' AND name = '$2'
        ORDER BY position" | paste -sd,
}

# accounts SQL: what the account database answers.
accounts() { sqlite3 "$DATA/config/MTA-Accounts" "$1"; }

# The queued messages, in their order, what differs from run to run masked and line ends shown (^M is the CR).
show_queue() {
    local file
    for file in "$DATA"/control/* "$DATA"/messages/*; do
        [ -e "$file" ] || continue
        echo "--- ${file#"$DATA/"}"
        cat --show-nonprinting "$file"
    done | sed -E 's/[0-9]{20}/STAMP/g; s/(^---.*\.A[ABC]|NewAccountForm\.)[0-9]+/\1ID/'
}

# The records of runs, what differs from run to run masked.
show_records() {
    cat /var/lib/tern.harbor-install/runs/*[0-9] | sed -E "s,$BUILD,BUILD,g"'; s/"time":"[^"]*"/"time":TIME/; s/[0-9a-f]{64}/CHECKSUM/g
        s/"(id|inode|born|process)":[1-9][0-9]*/"\1":NUMBER/g; s/[0-9]{20}(\.A[ABC])[0-9]+/STAMP\1ID/g'
}

# What stands in the view's upper layers, where every change to the host lands, but for the records of runs.
upper_layers() {
    find /run/view/layers/*/upper -path "*$RECORDS" -prune -o -printf '%p %y %m %U:%G %s %T@\n' | sort
}

# --- the way back -----------------------------------------------------------------------------------------------

# The runs that have a record, the last one first.
records() {
    find "$RECORDS" -type f -name '*Z-*' -printf '%f\n' 2>/dev/null | grep -xE '[0-9TZ]+-[0-9]+' | sort -t- -k1,1r -k2,2nr
}    # where there is no directory, there is no record

# forget_runs: where a scenario has made the host anew, no earlier run has anything to take back.
forget_runs() { rm -rf "${RECORDS:?}"/*; }

# undo [OPTION...]: what Undo says about the last run, without what differs from run to run, and its exit status.
undo() {
    "$BUILD/Undo" --yes "$@" | sed -E 's/[0-9-]{10} [0-9:]{8}/TIME/; s/[0-9]{8}T[0-9]{6}Z-[0-9]+/RUN/
        s/[0-9]{20}(\.A[ABC])[0-9]+/STAMP\1ID/'
    echo "(status ${PIPESTATUS[0]})"
}

# left_by_undo FILE: what an Undo that did not end with status 0 names as left: at its end or, where it had nothing to do, in
# its plan. In the file, its status follows its output.
left_by_undo() {
    awk 'function forget() { count = is_list = 0 }
        /^The run of / { forget() }
        /^Left alone / { forget() }
        /^(This is left |Left alone )/ { is_list = 1 }
        /^$/ { is_list = 0 }
        is_list && /^    / { left[++count] = substr($0, 5) }
        /^Undo.*: status / {
            if (!count) left[++count] = $0
            for (i = 1; i <= count; i++) print "left: " left[i]
            forget()
        }' "$1"
}

# take_back_runs [OPTION...]: those that "remember_host" (run-scenario) did not find, with accounts and messages.
take_back_runs() {
    local run
    for run in $(records | grep -vxF -f /tmp/scenario/records); do
        "$BUILD/Undo" --yes --accounts "$@" "$run" || echo "Undo $run: status $?"
    done
}
