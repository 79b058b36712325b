#!/usr/bin/env bash
# Checks what the desktop is told of the workbench: that the files are well-formed, that they speak of the
# same type, and that the manual page has the options which the program has.
#
# Usage: scripts/check_desktop_files.sh PROGRAM MANUAL_PAGE
set -euo pipefail
program=$(realpath "$1")
manual=$(realpath "$2")
cd "$(dirname "${BASH_SOURCE[0]}")/../desktop"

failures=0
complain() { # TITLE LINES
  [ -n "$2" ] || return 0
  printf '%s\n%s\n' "$1" "$2" >&2
  failures=1
}

complain "Not well-formed:" "$(xmllint --noout velmora-project.xml velmora.svg 2>&1 || true)"
complain "Menu entry:" "$(desktop-file-validate velmora.desktop 2>&1 || true)"
complain "Manual page:" "$(LC_ALL=C MANWIDTH=100 man --warnings -l "$manual" 2>&1 >/dev/null || true)"

type=$(sed -n 's/.*mime-type type="\([^"]*\)".*/\1/p' velmora-project.xml)
complain "The menu entry opens other files than these:" "$(grep -qxF "MimeType=$type;" velmora.desktop || echo "$type")"
complain "No icon of the name:" \
  "$(sed -n 's/^Icon=//p; s/.*<icon name="\([^"]*\)".*/\1/p' velmora.desktop velmora-project.xml |
    while read -r icon; do [ -f "$icon.svg" ] || echo "$icon"; done)"

options() { grep -oE -- '--[a-z-]+' | sort -u; }
complain "Options that only the program (<) or only its manual page (>) has:" \
  "$(diff <("$program" --help 2>/dev/null | options) <(sed -n '/^\.SH OPTIONS/,/^\.SH "EXIT/s/\\-/-/gp' "$manual" | options) || true)"
exit $failures
