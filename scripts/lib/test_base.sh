# Sourced by scripts/test.

formatting() {
    git ls-files -z -- '*.h' '*.cpp' | xargs -0 clang-format-14 --dry-run --Werror
}

test_base() {
    check formatting formatting || true
    if check build configure_and_build test; then
        ctest_in tests test || true
    else
        echo "The tests cannot run: the build failed."
    fi
    check headers-stand-alone configure_and_build test all_verify_interface_header_sets || true
    check windows-dll configure_and_build windows-dll tavo_client || true
    check fuzzers scripts/fuzz --replay || true
}
