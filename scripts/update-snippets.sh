#!/usr/bin/env bash
# Copies code of the examples into the pages of docs/cookbook, below the lines "<!-- snippet: FILE -->": the includes of
# FILE in angle brackets, then its regions between "// [snippet]" and "// [/snippet]". With --check it changes nothing, and
# fails if a page differs from the examples.
cd "$(dirname "$0")/.."
. scripts/common.sh

# Prints the includes and the regions of an example, separated by empty lines, without the indentation of the regions'
# first markers.
snippet_of() {
    awk '
        /^#include <Networking/ && includes && !libraries++ { print "" }
        /^#include </ { print; includes++; next }
        /^ *\/\/ \[snippet\]$/ { print ""; count++; indent = match($0, /\//) - 1; inside = 1; next }
        /^ *\/\/ \[\/snippet\]$/ { inside = 0; next }
        inside { print substr($0, indent + 1) }
        END { if (!count || inside) { print FILENAME ": no complete snippet" > "/dev/stderr"; exit 1 } }
    ' "examples/$1"
}

# Prints a page with all blocks of code below markers replaced by the current snippets.
updated() {
    local line marker='^<!-- snippet: ([A-Za-z_]+\.(h|cpp)) -->$'
    while IFS= read -r line; do
        printf '%s\n' "$line"
        [[ $line =~ $marker ]] || continue
        printf '```cpp\n'
        snippet_of "${BASH_REMATCH[1]}" || return 1
        printf '```\n'
        IFS= read -r line && [[ $line == '```cpp' ]] || fail "no code block below: ${BASH_REMATCH[0]}"
        until [[ $line == '```' ]]; do
            IFS= read -r line || fail "no end of the code block below: ${BASH_REMATCH[0]}"
        done
    done <"$1"
}

for page in docs/cookbook/*.md; do
    text=$(updated "$page")
    if [ "${1:-}" = --check ]; then
        diff -u "$page" - <<<"$text" || fail "$page differs from the examples; run scripts/update-snippets.sh"
    else
        printf '%s\n' "$text" >"$page"
    fi
done
