# Sourced by scripts/test.

formatting() {
    git ls-files -z -- '*.h' '*.cpp' | xargs -0 clang-format-14 --dry-run --Werror
}

# The newest installed compiler g++-N, if newer than the default.
newer_gcc() {
    local newest
    newest=$(compgen -c g++- | grep -x 'g++-[0-9]*' | sort -u -t - -k 2n | tail -n 1) || true
    if [ -n "$newest" ] && [ "${newest#g++-}" -gt "$(g++ -dumpversion | cut -d . -f 1)" ]; then
        echo "$newest"
    fi
}

# build_with_newer_gcc COMPILER: builds everything again, in a separate tree.
build_with_newer_gcc() {
    cmake --preset test -B build/newer-gcc -D CMAKE_CXX_COMPILER="$1" && cmake --build build/newer-gcc -j "$jobs"
}

test_base() {
    local newer
    check formatting formatting || true
    check reference scripts/docs || true
    if check build configure_and_build test; then
        ctest_in tests test || true
    else
        echo "The tests cannot run: the build failed."
    fi
    check headers-stand-alone configure_and_build test all_verify_interface_header_sets || true
    check windows-dll configure_and_build windows-dll tavo_client || true
    newer=$(newer_gcc)
    if [ -n "$newer" ]; then
        check newer-gcc build_with_newer_gcc "$newer" || true
    else
        echo "Debian offers no GCC that is newer than the default, $(g++ -dumpfullversion)"
    fi
    check fuzzers scripts/fuzz --replay || true
}
