#!/usr/bin/env bash
# One case of a file of cases: run_case.sh PROGRAM FIXTURES NAME [CASES]
# CASES is cases.tsv in this directory; what stands in helpers.sh beside another one is at hand in its commands.
# A case is a line of four columns, parted by tabs: name, exit status, command, expectations. The command runs in a copy
# of the fixtures, in bash, where `lwimport` is the program. Expectations are parted by " && ":
#   out ~ REGEX    standard output has a line like this (grep -E); out !~ has none; err ~ and err !~ likewise
#   file PATH      exists and isn't empty; no PATH: doesn't exist; clean: no temporary file is left anywhere
set -u
program=$1 fixtures=$2 name=$3
cases=${4:-$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/cases.tsv}
here=$(mktemp -d)
trap 'chmod -R u+rwX "$here"; rm -rf "$here"' EXIT
mkdir "$here/work" "$here/home"
cp -r "$fixtures/." "$here/work"
cd "$here/work" || exit 1
export HOME=$here/home NO_COLOR='' LC_ALL=C.UTF-8
unset XDG_CONFIG_HOME TV_TRACE
lwimport() { "$program" "$@"; }
# shellcheck disable=SC1091
[ ! -f "$(dirname "$cases")/helpers.sh" ] || . "$(dirname "$cases")/helpers.sh"

IFS=$'\t' read -r _ wanted command expectations < <(grep -P "^$name\t" "$cases")
status=0
(eval "$command") >"$here/out" 2>"$here/err" </dev/null || status=$?

failed=0
complain() { echo "$1"; failed=1; }
[ "$status" = "$wanted" ] || complain "exit status $status, not $wanted"
if grep -qE 'Sanitizer|runtime error:' "$here/err"; then complain 'a sanitizer complained'; fi
while IFS= read -r expectation; do
    case $expectation in
    'out ~ '*) grep -qE -- "${expectation#out ~ }" "$here/out" || complain "not met: $expectation" ;;
    'err ~ '*) grep -qE -- "${expectation#err ~ }" "$here/err" || complain "not met: $expectation" ;;
    'out !~ '*) ! grep -qE -- "${expectation#out !~ }" "$here/out" || complain "not met: $expectation" ;;
    'err !~ '*) ! grep -qE -- "${expectation#err !~ }" "$here/err" || complain "not met: $expectation" ;;
    'file '*) [ -s "${expectation#file }" ] || complain "not met: $expectation" ;;
    'no '*) [ ! -e "${expectation#no }" ] || complain "not met: $expectation" ;;
    clean) [ -z "$(find . -name '*.tmp*' -o -name '.*.glb*')" ] || complain "left behind: $(find . -name '*tmp*')" ;;
    *) complain "no such expectation: $expectation" ;;
    esac
done < <(sed 's/ && /\n/g' <<<"$expectations")
if [ $failed = 1 ]; then
    printf -- '--- command\n%s\n--- standard output\n' "$command"
    head -c 4000 "$here/out"
    printf -- '--- standard error\n'
    head -c 4000 "$here/err"
fi
exit $failed
