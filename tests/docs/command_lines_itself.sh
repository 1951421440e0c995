# command_lines_itself.sh TOOL SIMULATOR: what command_lines.sh accepts of a page, and what it does not.
set -euo pipefail
page=$(mktemp --suffix .md)
trap 'rm -f "$page"' EXIT
mistakes=0

# expect STATUS TEXT TOOL SIMULATOR: the page on standard input gives this status, and TEXT stands in what is said.
expect() {
    local status=0 said
    cat >"$page"
    said=$(bash "$(dirname "$0")/command_lines.sh" "$3" "$4" "$page" 2>&1) || status=$?
    if [ "$status" -ne "$1" ] || [[ $said != *"$2"* ]]; then
        printf 'Expected status %s and "%s", found status %s:\n%s\nfor the page:\n%s\n\n' "$1" "$2" "$status" "$said" "$(cat "$page")" >&2
        mistakes=$((mistakes + 1))
    fi
}

expect 0 '5 blocks with command lines, 0 mistakes' "$@" <<'END_OF_PAGE'
```sh
tavo --host lab1 --user alice relay get power | grep -x on
export WITHIN=block    # and a comment
test "$WITHIN" = block
```

```
$ tavo --host lab1 --user alice relay get power
on
$ tavo --host lab1 --user alice \
    relay list
...
power  on
```

<!-- not run: it would fail -->
```sh
false
```
<!-- status 3 -->
```
$ tavo relay get nothing
...
```

<!-- goes on -->
```
$ echo one; sleep 1; echo two; sleep 1000
one
two
```

```
no command line
```
END_OF_PAGE

expect 1 ':2: command 1 ends with status 3, not 0' "$@" <<'END_OF_PAGE'

```sh
tavo relay get nothing
tavo relay get power
```
END_OF_PAGE
expect 1 'command 2 ends with status 0, not 3' "$@" <<'END_OF_PAGE'
<!-- status 3 -->
```
$ tavo relay get power
on
$ tavo relay get power
on
```
END_OF_PAGE
expect 1 $'\n-off\n+on' "$@" <<'END_OF_PAGE'
```
$ tavo relay get power
off
```
END_OF_PAGE
expect 1 'command 1 prints something else' "$@" <<'END_OF_PAGE'
```
$ echo one; echo two; echo three
one
...
two
```
END_OF_PAGE
expect 1 ':2: this mark gives no reason' "$@" <<'END_OF_PAGE'

<!-- not run: -->
```sh
true
```
END_OF_PAGE
expect 1 ':1: this mark is not known: <!-- not ruN: because -->' "$@" <<'END_OF_PAGE'
<!-- not ruN: because -->
```sh
true
```
END_OF_PAGE
expect 1 'command 1 ends with status 1' "$@" <<'END_OF_PAGE'
<!-- not run: this mark stands before a text -->
A text.
```sh
false
```
END_OF_PAGE
expect 1 'does not print what the page shows' "$@" <<'END_OF_PAGE'
<!-- goes on -->
```
$ echo began; sleep 1000
begun
```
END_OF_PAGE

if [ "$mistakes" -ne 0 ]; then
    echo "$mistakes mistakes" >&2
    exit 1
fi
