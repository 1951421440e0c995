# Sourced by scripts/test.

# foreign NAME COMMAND ...: builds the tests of bytes for that machine and runs them as one program, by COMMAND.
foreign() {
    local name=$1
    shift
    if check "foreign-$name-build" configure_and_build "foreign-$name" tavo_tests; then
        step "foreign-$name" timeout 300 "$@" "build/foreign-$name/tests/tavo_tests" --gtest_brief=1 \
            --gtest_output="xml:$results/tests-foreign-$name.xml" || true
    fi
}

# A program that dies before it has written its results fails the step, and with it the whole run.
test_foreign() {
    foreign s390x qemu-s390x
    foreign i686 qemu-i386
}
