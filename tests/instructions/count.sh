# count.sh VALGRIND PROGRAM WORK BOUND FOLDER: counts the instructions of one piece of work, and fails beyond the bound.
# The folder is its own.
set -euo pipefail
valgrind=$1 program=$2 work=$3 bound=$4 folder=$5
mkdir -p "$folder"
log=$folder/$work.log
if ! "$valgrind" --tool=callgrind --toggle-collect=countedWork --callgrind-out-file="$folder/$work.callgrind" \
    "$program" "$work" >"$log" 2>&1; then
    cat "$log" >&2
    exit 1
fi
counted=$(sed -n 's/^==[0-9]*== Collected : \([0-9]*\)$/\1/p' "$log")
if [ "${counted:-0}" -eq 0 ]; then
    echo "callgrind counted nothing:" >&2
    cat "$log" >&2
    exit 1
fi
echo "$work: $counted instructions, at most $bound"
if [ "$counted" -gt "$bound" ]; then
    echo "It takes more than before: mend that, or raise the bound in bounds.txt and say why." >&2
    echo "callgrind_annotate $folder/$work.callgrind shows where they are." >&2
    exit 1
fi
