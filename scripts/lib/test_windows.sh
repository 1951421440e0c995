# Sourced by scripts/test.

export WINEPREFIX="$PWD/build/wine" WINEDEBUG=-all
# No desktop entries, and no offers to download what the tests do not need.
export WINEDLLOVERRIDES="winemenubuilder.exe,mscoree,mshtml="

# The path as programs in Wine see it.
windows_path() {
    printf 'Z:%s' "${1//\//\\}"
}

# tests_in_wine NAME PRESET
tests_in_wine() {
    local name=$1 preset=$2 compiler=x86_64-w64-mingw32-g++-posix dll
    local program="build/$preset/tests/tavo_tests.exe" path=
    for dll in libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll; do
        path+="$(windows_path "$(dirname "$(realpath "$("$compiler" -print-file-name="$dll")")")");"
    done
    path+="$(windows_path "$PWD/build/$preset/tavo/client");$(windows_path "$PWD/build/$preset/tavo/simulator")"
    WINEPATH=$path in_shards "$name" timeout 1200 wine "$program"
}

test_windows() {
    local kind
    check wine timeout 120 wine wineboot --init || return 0
    for kind in static dll; do
        if check "windows-$kind-build" configure_and_build "windows-test-$kind"; then
            step "windows-$kind" tests_in_wine "windows-$kind" "windows-test-$kind" || true
        fi
    done
    check windows-dll-exports bash tests/build/dll_exports.sh build/windows-test-dll || true
    wineserver --kill || true
}
