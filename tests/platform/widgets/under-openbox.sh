#!/usr/bin/env bash
# Runs a program once a window manager is at work on the X screen: under-openbox.sh PROGRAM [ARGUMENT...]
set -euo pipefail

ready=$(mktemp -u)
mkfifo -m 600 "$ready"
openbox --sm-disable --startup "sh -c 'echo > $ready'" >/dev/null 2>&1 &
read -r <"$ready"
rm "$ready"
exec "$@"
