#!/usr/bin/env bash

# SPDX-FileCopyrightText: 2026 The libvyxcore developers
#
# SPDX-License-Identifier: LGPL-2.1-or-later

# The manual page and the bash completion must know every command and option
# of the tool, and nothing it does not have. The tool's own help is the
# reference: its "options:" lines are printed from the table that parses them.
#   check_docs.sh TOOL MANUAL.scd COMPLETION
set -euo pipefail
tool=$1 manual=$2 completion=$3
failures=0
fail() { echo "check_docs: $*" >&2; failures=$((failures + 1)); }

# Words of a list, sorted and one per line, for comparing sets.
sorted() { tr ' ' '\n' | sed '/^$/d' | sort -u; }
same() {  # same WHAT EXPECTED ACTUAL
    local missing extra
    missing=$(comm -23 <(sorted <<<"$2") <(sorted <<<"$3") | tr '\n' ' ')
    extra=$(comm -13 <(sorted <<<"$2") <(sorted <<<"$3") | tr '\n' ' ')
    [[ -z $missing ]] || fail "$1 lacks: $missing"
    [[ -z $extra ]] || fail "$1 has, though the tool does not: $extra"
}

commands=$("$tool" help | awk '/^Commands:/ { on = 1; next } on && /^  [a-z]/ { print $1 }' | tr '\n' ' ')
[[ -n $commands ]] || { echo "check_docs: no commands in '$tool help'" >&2; exit 1; }

# The manual: each command is a line "*name* ..." in the COMMANDS section,
# followed by its description; options are the "--words" of that block.
man_block() {  # man_block COMMAND
    awk -v cmd="$1" '
        /^# / { section = $0; on = 0; next }
        section == "# COMMANDS" && /^\*[a-z-]+\*/ { name = $1; gsub(/\*/, "", name); on = (name == cmd); }
        on { print }' "$manual"
}
man_commands=$(awk '/^# / { section = $0; next }
                    section == "# COMMANDS" && /^\*[a-z-]+\*/ { n = $1; gsub(/\*/, "", n); print n }' "$manual")
same "the manual's COMMANDS" "$commands" "$man_commands"
for option in --json --help -- --version; do
    awk '/^# OPTIONS/ { on = 1; next } /^# / { on = 0 } on' "$manual" | grep -q -- "^\*$option\*" ||
        fail "the manual's OPTIONS lack $option"
done

# The completion, asked as bash asks it.
complete_words() {  # complete_words WORD...
    bash -c 'source "$1"; shift; COMP_WORDS=("$@"); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _vyxcore
             printf "%s\n" "${COMPREPLY[@]}"' _ "$completion" "$@"
}
bash -c 'source "$1"; complete -p vyxcore' _ "$completion" | grep -q -- '-F _vyxcore vyxcore' ||
    fail "the completion does not register itself for vyxcore"
same "the completion's commands" "$commands" "$(complete_words vyxcore '' | grep -v '^-')"

# Every command's completion of "-", asked in one shell: "command option...".
completed=$(bash -c 'source "$1"; shift
    for command; do COMP_WORDS=(vyxcore "$command" -) COMP_CWORD=2; _vyxcore; echo "$command ${COMPREPLY[*]}"; done' \
    _ "$completion" $commands)

common="--json --help --"
for command in $commands; do
    [[ $command == help ]] && continue  # its help is the list itself
    own=$("$tool" "$command" --help | sed -n 's/^options://p' | tr ' ' '\n' | grep -- '^-' | tr '\n' ' ')
    [[ -n $own ]] || { fail "'$tool $command --help' has no options line"; continue; }
    specific=$(comm -23 <(sorted <<<"$own") <(sorted <<<"$common") | tr '\n' ' ')
    same "the manual's $command" "$specific" "$(man_block "$command" | grep -o -- '--[a-z][a-z-]*' || true)"
    same "the completion's $command" "$own" "$(awk -v c="$command" '$1 == c { $1 = ""; print }' <<<"$completed")"
done

((failures == 0)) || exit 1
echo "check_docs: $(wc -w <<<"$commands") commands agree in the tool, the manual and the completion"
