# What the scenarios undo-killed share: a program is killed before each of its calls that change something, one run for each.
# The host must then be as before, once Undo has ended. Read by their "run", after lib.sh.
# $steps are Install's, and a scenario has at least $points_at_least such calls.
# shellcheck shell=bash disable=SC2154

changing_calls=write,pwrite64,openat,rename,renameat,renameat2,unlink,unlinkat,link,linkat,symlink,symlinkat,mkdir,mkdirat
changing_calls+=,rmdir,chmod,fchmod,fchmodat,chown,fchown,lchown,fchownat,fsetxattr,setxattr,fremovexattr,ftruncate
changing_calls+=,fallocate,sendto,kill
failures=0
kills=0
# Without --seccomp-bpf, by which strace 6.1 sends no signal; without -f where a server is left behind, which would be
# waited for.
follow=(-f)
# CALL:error=NAME, put in its way besides.
fault=

# kill_points COMMAND...: runs it, and prints "CALL NUMBER" for each such call, counted as strace counts: by process and
# call. What is written to the screen or in memory changes nothing, nor does an open that makes no file, nor a fault.
kill_points() {
    strace -qq "${follow[@]}" -y -o /tmp/trace -e "trace=$changing_calls" -e signal=none ${fault:+-e "inject=$fault"} \
        "$@" >/tmp/screen 2>&1
    awk '
        $1 !~ /^[0-9]+$/ { $0 = "0 " $0 }
        $2 !~ /^[a-z0-9]+\(/ { next }
        { call = $2; sub(/\(.*/, "", call) }
        { number[$1, call]++ }
        call == "openat" && !/O_CREAT/ { next }
        /INJECTED/ { next }
        call ~ /^(p?write|ftruncate|fallocate)/ && !/^[0-9]+ +[a-z0-9]+\([0-9]+<\/(etc|var|home|usr|opt|srv|root)\// { next }
        { print call, number[$1, call] }' /tmp/trace | sort -u
}

# killed CALL NUMBER COMMAND...
killed() {
    local call=$1 number=$2
    shift 2
    # What is not traced gets no fault.
    strace -qq "${follow[@]}" -o /tmp/trace -e "trace=$call${fault:+,${fault%%:*}}" ${fault:+-e "inject=$fault"} \
        -e "inject=$call:signal=KILL:when=$number" "$@" >/tmp/screen 2>&1
    ! grep -q 'killed by SIGKILL' /tmp/trace || kills=$((kills + 1))
} 2>/dev/null    # the shell has its say about a killed process

host_state() { "$SOURCE/tests/scenarios/host-state" >"/tmp/$1"; }

install_steps() { "$BUILD/tests/run_steps" "${steps[@]}" <"$SCENARIO/answers"; }

undo() { "$BUILD/Undo" --yes --accounts >/tmp/undone 2>&1; }

# compare MOMENT: every run begins on the host that the last one has left, which is the same where all is well.
compare_host() {
    host_state after
    forget_runs
    if ! cmp -s /tmp/before /tmp/after; then
        echo "$1: the host is not as before (< before, > now)"
        diff /tmp/before /tmp/after | grep '^[<>]' | head -n 20
        cat /tmp/undone
        mv /tmp/after /tmp/before
        failures=$((failures + 1))
        [ "$failures" -lt 5 ] || exit 1
    fi
}

# some: of the points that it reads, all, or where it is to be quick, every eighth.
some() { awk -v stride="${TERN_QUICK:+8}" 'NR % (stride ? stride : 1) == 0'; }

# install_is_killed: before each of its calls; then Undo.
install_is_killed() {
    local call number
    host_state before
    kill_points "$BUILD/tests/run_steps" "${steps[@]}" <"$SCENARIO/answers" >/tmp/points
    undo
    compare_host "undisturbed"
    some </tmp/points >/tmp/points.taken
    while read -r call number <&8; do
        killed "$call" "$number" "$BUILD/tests/run_steps" "${steps[@]}" <"$SCENARIO/answers"
        undo
        compare_host "Install killed at $call, number $number"
    done 8</tmp/points.taken
    few_points
}

# undo_is_killed: before each of its calls; then another.
undo_is_killed() {
    local call number
    host_state before
    install_steps >/tmp/screen 2>&1
    kill_points "$BUILD/Undo" --yes --accounts </dev/null >/tmp/points
    compare_host "undisturbed"
    some </tmp/points >/tmp/points.taken
    while read -r call number <&8; do
        install_steps >/tmp/screen 2>&1
        killed "$call" "$number" "$BUILD/Undo" --yes --accounts </dev/null
        undo
        compare_host "Undo killed at $call, number $number"
    done 8</tmp/points.taken
    few_points
}

# So that a change of what is traced is noticed.
few_points() {
    [ "$(wc -l </tmp/points)" -ge "${points_at_least:?}" ] || echo "only $(wc -l </tmp/points) calls"
    # Two processes need not make their calls in the same number again.
    [ $((kills * 10)) -ge $(($(wc -l </tmp/points.taken) * 9)) ] || echo "only $kills kills"
}
