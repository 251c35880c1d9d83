#!/bin/sh
# The plug-in exports its entry point and nothing else. $1: the library; $2: nm.
names=$("${2:-nm}" -D --defined-only "$1" | awk '{ print $NF }')
if [ "$names" != "Tavrin_Plugin_EntryPoint" ]; then
    echo "exported by $1:"
    echo "$names"
    exit 1
fi
