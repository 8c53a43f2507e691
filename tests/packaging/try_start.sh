#!/bin/bash
# Starts the installed vantle on the display that is there, lets it show two windows, and ends it.
set -euo pipefail

XDG_RUNTIME_DIR=$(mktemp -d)
export XDG_RUNTIME_DIR
vantle &
application=$!
trap 'kill "$application" 2>/dev/null || true' EXIT

# Its own exit code tells of everything that is not well on a bare system; here only this line counts.
is_live() { { vantle doctor || true; } | grep -q '^ok   Application       running'; }
for _ in $(seq 100); do
  if is_live; then break; fi
  sleep 0.2
done
is_live
vantle summon launcher
vantle summon settings
kill "$application"
wait "$application"
trap - EXIT
