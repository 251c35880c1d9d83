#!/usr/bin/env bash
# Every long option that some --help tells of stands in the manual page, in the completion and in docs/user/2-options.md,
# and those tell of no other; docs and completion know the kept options that the program has; and each message of
# docs/user/6-messages.md is told somewhere: check_documents.sh PROGRAM SOURCE_DIR
set -u
program=$1 source=$2
options_in() { grep -oE -- '--[a-z][a-z-]+' | sort -u; }

for command in convert info find check call options; do "$program" $command --help; done | options_in >helped.tmp
echo --version >>helped.tmp
sort -u -o helped.tmp helped.tmp
failed=0
for document in docs/man/lwimport.1 completions/lwimport.bash docs/user/2-options.md; do
    sed 's/\\-/-/g' "$source/$document" | options_in >told.tmp
    missing=$(comm -23 helped.tmp told.tmp) foreign=$(comm -13 helped.tmp told.tmp)
    if [ -n "$missing$foreign" ]; then
        echo "$document lacks: $missing; has, but --help hasn't: $foreign"
        failed=1
    fi
done
[ -s helped.tmp ] && [ "$(wc -l <helped.tmp)" -gt 20 ] || { echo 'the help tells of hardly any options'; failed=1; }
# The kept options: keys and standard values of the table, and the completion that asks the program for them.
HOME=$PWD XDG_CONFIG_HOME=$PWD/none.tmp "$program" options list | awk '{print $1, $2}' >helped.tmp
sed -n 's/^| `\([a-z0-9_]*\)` | `\{0,1\}\([^ `]*\)`\{0,1\} |.*/\1 \2/p' "$source/docs/user/2-options.md" >told.tmp
diff helped.tmp told.tmp || { echo "docs/user/2-options.md tells of other options than lwimport options list"; failed=1; }
completed=$(. "$source/completions/lwimport.bash"
    COMP_WORDS=("$program" options set "") COMP_CWORD=3 && _lwimport "$program" && printf '%s\n' "${COMPREPLY[@]}")
[ "$completed" = "$(cut -d' ' -f1 helped.tmp)" ] || { echo "the completion offers: $completed"; failed=1; }

for code in $(sed -n 's/^| `\([a-z-]*\)` |.*/\1/p' "$source/docs/user/6-messages.md"); do
    grep -rq "message<\"$code\">" "$source/host" "$source/export" "$source/restore" || { echo "nobody tells $code"; failed=1; }
done
rm -f helped.tmp told.tmp
exit $failed
