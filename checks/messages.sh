#!/usr/bin/env bash
# One id of a message stands for one use, so that a translation may tell equal texts apart: each is named in one
# source file, with its header. The command line names the other folders' boxes to answer them, but shows texts of
# its own alone.
cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1

names() { grep -rhoE "^KELVASH_(MESSAGE|QUESTION|PASSWORD)\(k\w+" "$@" | sed 's/.*(//' | sort; }

names src/cli/messages.inc >build/cli-messages
names src --include='*.inc' >build/all-messages
grep -rnoE '\bmsg::k\w+' src --include='*.cpp' --include='*.h' | sed -E 's/^([^:]*)\.(cpp|h):([0-9]+):msg::/\1 /' |
    sort -u | awk '
    BEGIN { while ((getline name < "build/cli-messages") > 0) of_cli[name] = 1 }
    $1 ~ /^src\/foundation\/(messages|message_text|declare_messages)$/ { next }
    $1 !~ /^src\/cli\// || $2 in of_cli { print $2, $1 }' | sort -u >build/message-uses

status=0
if cut -d ' ' -f 1 build/message-uses | uniq -d | join - build/message-uses | grep .; then
    echo "These messages have more than one use."
    status=1
fi
if cut -d ' ' -f 1 build/message-uses | sort -u | comm -13 - build/all-messages | grep .; then
    echo "These messages have no use."
    status=1
fi
if grep -rnE '(LoadMessage|Refuse)\(msg::k\w+' src/cli --include='*.cpp' | grep -vE "msg::($(paste -sd '|' build/cli-messages))\b"; then
    echo "The command line shows these texts of others."
    status=1
fi
exit "$status"
