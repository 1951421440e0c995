# dll_exports.sh BUILD: the two DLLs of that build share no exported symbol, and the simulator exports nothing but its
# own namespace.
set -euo pipefail
build=$1

# exported DLL: the names in its export table, sorted.
exported() {
    x86_64-w64-mingw32-objdump -p "$1" | sed -n '/^\[Ordinal\/Name Pointer\] Table/,/^$/s/^.*\] //p' | sed 1d | sort
}

client=$(exported "$build"/tavo/client/libtavo_client*.dll)
simulator=$(exported "$build"/tavo/simulator/libtavo_simulator*.dll)
if [ -z "$client" ] || [ -z "$simulator" ]; then
    echo "a DLL exports nothing" >&2
    exit 1
fi
foreign=$(comm -12 <(echo "$client") <(echo "$simulator"); echo "$simulator" | grep -v 4TAVO9simulator || true)
if [ -n "$foreign" ]; then
    echo "the simulator's DLL exports what is not its own:" >&2
    sort -u <<<"$foreign" | c++filt >&2
    exit 1
fi
