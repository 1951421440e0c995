# picture.sh TOOL SIMULATOR: docs/tool.svg shows what the tool prints today.
set -euo pipefail
cd "$(dirname "$0")/../.."
if ! diff -u --label docs/tool.svg docs/tool.svg --label today <(bash scripts/lib/picture.sh "$1" "$2"); then
    echo "scripts/docs --picture draws it anew" >&2
    exit 1
fi
