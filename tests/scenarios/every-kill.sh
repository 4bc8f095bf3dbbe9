# What the scenarios undo-killed share: a program is killed before each of its calls that change something, one run for each.
# The host must then be as before, once Undo has ended, and Undo must name what was stopped, and nothing else. Read by their
# "run", after lib.sh. $steps are Install's, and a scenario has at least $points_at_least such calls.
# shellcheck shell=bash disable=SC2154

# Of all that Linux has: tests/changing-calls checks that none is forgotten.
changing_calls=write,writev,pwrite64,pwritev,pwritev2,sendfile,copy_file_range,splice,open,openat,openat2,creat
changing_calls+=,rename,renameat,renameat2,unlink,unlinkat,rmdir,link,linkat,symlink,symlinkat,mkdir,mkdirat,mknod,mknodat
changing_calls+=,chmod,fchmod,fchmodat,?fchmodat2,chown,fchown,lchown,fchownat,utime,utimes,utimensat,futimesat
changing_calls+=,setxattr,lsetxattr,fsetxattr,removexattr,lremovexattr,fremovexattr,truncate,ftruncate,fallocate
changing_calls+=,sendto,sendmsg,kill,tkill,tgkill
failures=0
kills=0
# Without --seccomp-bpf, by which strace 6.1 sends no signal; without -f where a server is left behind, which would be
# waited for.
follow=(-f)
# CALL:error=NAME or CALL:retval=0, put in its way besides.
fault=
# The servers that run before each run, each "NAME ADDRESS PORT" (tests/programs/listener).
servers=()

# kill_points COMMAND...: runs it, and prints "CALL NUMBER" for each such call, counted as strace counts: by process and
# call. What is written to the screen or in memory changes nothing, nor does an open that makes or empties no file, nor signal
# 0, nor a fault.
kill_points() {
    strace -qq "${follow[@]}" -y -o /tmp/trace -e "trace=$changing_calls${fault:+,${fault%%:*}}" \
        -e signal=none ${fault:+-e "inject=$fault"} "$@" >/tmp/screen 2>&1
    awk '
        $1 !~ /^[0-9]+$/ { $0 = "0 " $0 }
        $2 !~ /^[a-z0-9_]+\(/ { next }
        { call = $2; sub(/\(.*/, "", call) }
        { number[$1, call]++ }
        call ~ /^open/ && !/O_CREAT|O_TRUNC/ { next }
        /INJECTED/ { next }
        call == "kill" && /, SIG_0\)/ { next }
        call ~ /^(p?write|sendfile|ftruncate|fallocate)/ && !/^[0-9]+ +[a-z0-9]+\([0-9]+<\/(etc|var|home|usr|opt|srv|root)\// { next }
        { print call, number[$1, call] }' /tmp/trace | sort -u
}

# killed CALL NUMBER COMMAND...: its status is in $status.
killed() {
    local call=$1 number=$2
    shift 2
    # What is not traced gets no fault.
    strace -qq "${follow[@]}" -o /tmp/trace -e "trace=$call,kill${fault:+,${fault%%:*}}" ${fault:+-e "inject=$fault"} \
        -e "inject=$call:signal=KILL:when=$number" "$@" >/tmp/screen 2>&1
    status=$?
    ! grep -q 'killed by SIGKILL' /tmp/trace || kills=$((kills + 1))
} 2>/dev/null    # the shell has its say about a killed process

host_state() { "$SOURCE/tests/scenarios/host-state" >"/tmp/$1"; }

install_steps() { "$BUILD/tests/run_steps" "${steps[@]}" <"$SCENARIO/answers"; }

undo() { "$BUILD/Undo" --yes --accounts >/tmp/undone 2>&1 || echo "Undo: status $?" >>/tmp/undone; }

wrong() {
    echo "$moment: $1"
    cat /tmp/undone
    failures=$((failures + 1))
    [ "$failures" -lt 5 ] || exit 1
}

command_line() { echo "$BUILD/tests/listener $1"; }

runs() { pgrep -xf "$(command_line "$1")" >/dev/null; }

# Those that do not run.
start_servers() {
    local server
    for server in "${servers[@]}"; do
        # shellcheck disable=SC2046,SC2086 # words
        runs "$server" || ($(command_line "$server") </dev/null >/dev/null 2>&1 &)    # no job of this shell, which would tell of its end
        wait_for listening "${server##* }"
    done
}

gone() { ! kill -0 "$1" 2>/dev/null; }    # it complains where there is none, which is awaited

# A server that was told to end takes a moment.
await_ends() {
    local process
    for process in $(sed -nE 's/.*kill\(([0-9]+), SIGTERM\) += 0$/\1/p' /tmp/trace); do wait_for gone "$process"; done
}

# name_of SERVER: the line that names it: with its command line, but where the process was killed that reads them for Install.
name_of() {
    local line="left: ${1%% *} is to be started again by hand"
    if [[ $moment == *" at sendto,"* ]] && grep -qxF "$line" /tmp/left; then
        echo "$line"
    else
        echo "$line; it called itself \"$(command_line "$1")\""
    fi
}

# What Undo names as left must be the servers that do not run.
compare_left() {
    local server
    left_by_undo /tmp/undone | sort -u >/tmp/left
    for server in "${servers[@]}"; do
        runs "$server" || name_of "$server"
    done | sort -u >/tmp/stopped
    cmp -s /tmp/stopped /tmp/left || wrong "what is left is named wrong (< stopped, > named): $(diff /tmp/stopped /tmp/left)"
}

# Every run begins on the host that the last one has left, which is the same where all is well.
compare_host() {
    host_state after
    cmp -s /tmp/before /tmp/after && return
    wrong "the host is not as before (< before, > now): $(diff /tmp/before /tmp/after | grep '^[<>]' | head -n 20)"
    mv /tmp/after /tmp/before
}

# compare MOMENT
compare() {
    moment=$1
    compare_host
    forget_runs
    compare_left
    start_servers
}

# some: of the points that it reads, all, or where it is to be quick, every eighth.
some() { awk -v stride="${TERN_QUICK:+8}" 'NR % (stride ? stride : 1) == 0'; }

# finish_and_undo: what the killed Install began is finished by another; then both runs are taken back, the last one first.
finish_and_undo() {
    local run
    strace -qq "${follow[@]}" -o /tmp/trace -e trace=kill \
        "$BUILD/tests/run_steps" "${steps[@]}" <"$SCENARIO/answers" >/tmp/screen 2>&1
    await_ends
    for run in $(records); do
        "$BUILD/Undo" --yes --accounts "$run" || echo "Undo: status $?"
    done >/tmp/undone 2>&1
}

# install_is_killed [AFTERWARDS]: before each of its calls; then AFTERWARDS takes back what was done, "undo" by default.
install_is_killed() {
    local call number afterwards=${1:-undo}
    start_servers
    host_state before
    kill_points "$BUILD/tests/run_steps" "${steps[@]}" <"$SCENARIO/answers" >/tmp/points
    await_ends
    undo
    compare "undisturbed"
    some </tmp/points >/tmp/points.taken
    while read -r call number <&8; do
        killed "$call" "$number" "$BUILD/tests/run_steps" "${steps[@]}" <"$SCENARIO/answers"
        await_ends
        "$afterwards"
        compare "Install killed at $call, number $number"
    done 8</tmp/points.taken
    few_points
}

# undo_again: another one, unless the first has finished and named what is left: killed was a process that read for it.
undo_again() {
    if grep -q '^Left alone' /tmp/screen && ! grep -q '^Not everything' /tmp/screen; then
        { cat /tmp/screen && echo "Undo: status $status"; } >/tmp/undone
    else
        undo
    fi
}

# undo_is_killed: before each of its calls; then another.
undo_is_killed() {
    local call number
    start_servers
    host_state before
    install_steps >/tmp/screen 2>&1
    undo
    compare "undisturbed"
    install_steps >/tmp/screen 2>&1
    kill_points "$BUILD/Undo" --yes --accounts </dev/null >/tmp/points
    forget_runs
    start_servers
    some </tmp/points >/tmp/points.taken
    while read -r call number <&8; do
        install_steps >/tmp/screen 2>&1
        killed "$call" "$number" "$BUILD/Undo" --yes --accounts </dev/null
        undo_again
        compare "Undo killed at $call, number $number"
    done 8</tmp/points.taken
    few_points
}

# So that a change of what is traced is noticed.
few_points() {
    [ "$(wc -l </tmp/points)" -ge "${points_at_least:?}" ] || echo "only $(wc -l </tmp/points) calls"
    # Two processes need not make their calls in the same number again.
    [ $((kills * 10)) -ge $(($(wc -l </tmp/points.taken) * 9)) ] || echo "only $kills kills"
}
