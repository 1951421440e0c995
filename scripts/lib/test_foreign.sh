# Sourced by scripts/test.

run_s390x() {
    timeout 600 qemu-s390x "$@"
}

# Most kernels run such programs natively. Under emulation, a signal for a waiting thread breaks the thread library.
run_i686() {
    if "$1" --gtest_list_tests >/dev/null 2>&1; then
        timeout 600 "$@"
    else
        timeout 600 qemu-i386 "$@" '--gtest_filter=-SocketTransportOnPosix.*Signal*'
    fi
}

# foreign NAME: builds and runs the tests of bytes for this machine. A program that dies before writing its results
# fails the step, and so the whole run.
foreign() {
    local name=$1
    if check "foreign-$name-build" configure_and_build "foreign-$name" tavo_tests; then
        step "foreign-$name" in_shards "foreign-$name" "run_$name" "build/foreign-$name/tests/tavo_tests" || true
    fi
}

test_foreign() {
    foreign s390x
    foreign i686
}
