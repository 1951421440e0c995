#!/usr/bin/env bash
# document_filter.sh PAGE: prepares a document for Doxygen. Headings get names unique across all documents, links to
# headings use these names, links to files other than documents become plain text, and code with backslashes is escaped
# so that they, and hyphens next to them, come out unchanged.
set -euo pipefail
page=$(basename "$1" .md)
exec sed -E -e '/^ *```/,/^ *```/b' \
    -e '/^##/{h;s/^#+ //;s/[^A-Za-z0-9 _-]//g;s/ /-/g;s/.*/ {#'"$page"'_\L&}/;x;G;s/\n//;b}' \
    -e 's/\]\(([^)#]*\/)?([A-Za-z0-9_-]+)\.md#([^)]*)\)/](@ref \2_\3)/g' \
    -e 's/\]\(#([^)]*)\)/](@ref '"$page"'_\1)/g' \
    -e 's/`\\\\`/<code>\\\\\\\\<\/code>/g' -e 's/`\\"`/<code>\\\\\&quot;<\/code>/g' \
    -e 's/`([^`]*\\\|[^`]*)`/<code>\1<\/code>/g' \
    -e ':hyphens;s/(<code>([^<]*[^\\<])?)--([^<]*<\/code>)/\1\\--\3/;t hyphens' \
    -e 's/!\[/\x02/g' -e 's/\.md\)/.md\x01)/g' \
    -e 's/\[([^][]*)\]\([A-Za-z0-9_.\/-]+\)/\1/g' \
    -e 's/\x01//g' -e 's/\x02/![/g' \
    "$1"
