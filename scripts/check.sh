#!/usr/bin/env bash
# Checks what a compiler does not: formatting, layers, forbidden includes, headers without a test,
# sources in no target, file sizes, words that must not stand. The same here and in CI.
#
# Usage: scripts/check.sh [--tidy]     --tidy also runs clang-tidy over build/release
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

failures=0
complain() { # TITLE LINES
  [ -n "$2" ] || return 0
  printf '%s\n    %s\n\n' "$1" "${2//$'\n'/$'\n'    }" >&2
  failures=1
}

mapfile -t files < <(git ls-files --cached --others --exclude-standard '*.cpp' '*.h' | while read -r file; do
  [ -f "$file" ] && echo "$file"
done)

# Formatting; the skeletons of a user's class have a style of their own, which their tests check.
complain "Not formatted (clang-format -i mends it):" \
  "$(printf '%s\n' "${files[@]}" | grep -vE '^BaseClassFiles/(TemplatePlugIn|VelmoraDLL)\.' |
    xargs clang-format --dry-run -Werror 2>&1 | sed -n 's/^\([^:]*\):.*error.*/\1/p' | sort -u)"

# Layers: what a file below engine/ may include, beside its own folder. One line for each layer; a folder
# within dsp/ or project/ is a layer of its own.
layer_table='
base:
dsp: base
host: base dsp
dsp/modules: base dsp host
audio: base dsp host
midi: base dsp host
project: base dsp host
project/codegen: base dsp host project
panel: base dsp host audio project
project/compiler: base dsp host project project/codegen
analyzer: base dsp host audio
document: base dsp host dsp/modules audio midi project project/codegen panel project/compiler analyzer
'
complain "Includes against the order of the layers:" "$(
  while IFS=: read -r layer allowed; do
    [ -n "$layer" ] || continue
    { grep -nE '^#include "[a-z_]+/' "engine/$layer" -r --include='*.h' --include='*.cpp' || true; } |
      while IFS= read -r line; do
        case $layer:$line in project:engine/project/*/* | dsp:engine/dsp/*/*) continue ;; esac
        target=$(sed -E 's/.*#include "(project\/(codegen|compiler)|dsp\/modules|[a-z_]*)\/.*/\1/' <<<"$line")
        case " $layer $allowed " in *" $target "*) ;; *) echo "$line" ;; esac
      done
  done <<<"$layer_table"
)"

complain "Windows know their own folder and widgets/common; shell knows all:" "$(
  grep -rnE '#include "widgets/' widgets --include='*.h' --include='*.cpp' |
    sed -nE '/^widgets\/shell\//d; s/^(widgets\/([a-z]+)\/.*#include "widgets\/([a-z]+)\/.*)/\2 \3 \1/p' |
    awk '$1 != $2 && $2 != "common"' || true
)"

# Forbidden includes
complain "No window toolkit below engine/ and cli/:" \
  "$(grep -rnE '#include <Q[A-Z]' engine cli || true)"
complain "Third-party types stay behind the implementation, not in headers of the engine:" \
  "$(grep -rnE '#include <(portaudio|sndfile|RtMidi|rtmidi/|pugixml)' engine --include='*.h' || true)"
complain "Only base/platform_*, host/plugin_library*, the probe and the compiler may depend on the platform:" \
  "$(grep -rnE '#include <(unistd|fcntl|poll|spawn|dlfcn|sched|sys/[a-z]+)\.h>' engine |
    grep -vE '^engine/(base/(platform_|safe_file)|host/(plugin_library|plugin_probe|probe/)|project/compiler/|audio/sound_file)' || true)"
complain "The contract depends on nothing but the standard headers:" \
  "$(grep -nE '#include <' BaseClassFiles/*.h | grep -vE '<(stddef|math|string|float|limits|stdlib)\.h>' || true)"

# Headers without a test: a header with a source of its own is included by a test.
complain "Headers that no test includes:" "$(
  for header in $(git ls-files --cached --others --exclude-standard 'engine/*.h'); do
    [ -f "${header%.h}.cpp" ] || continue
    grep -rqF "#include \"${header#engine/}\"" tests || echo "$header"
  done
)"

# Sources in no target
complain "Sources that no CMakeLists.txt names:" "$(
  for source in $(git ls-files --cached --others --exclude-standard '*.cpp'); do
    [ -f "$source" ] || continue
    folder=$(dirname "$source")
    until [ "$folder" = . ] || grep -qsF "$(basename "$source")" "$folder/CMakeLists.txt"; do
      folder=$(dirname "$folder")
    done
    { [ "$folder" != . ] || grep -qF "$(basename "$source")" cmake/*.cmake; } || echo "$source"
  done
)"

# Sizes
complain "Files above 600 lines (tables of data apart):" "$(
  for file in "${files[@]}"; do
    [ "$file" = BaseClassFiles/lookuptables.h ] && continue
    lines=$(wc -l <"$file")
    [ "$lines" -le 600 ] || echo "$lines $file"
  done
)"

# Words
marks='TO''DO|FIX''ME|HA''CK'
complain "Left open:" "$(git grep -nIwE "$marks" -- . || true)"

if command -v shellcheck >/dev/null 2>&1; then
  complain "Shell scripts:" "$(shellcheck -x run test .ci/run scripts/*.sh 2>&1 || true)"
fi

if [ "${1-}" = --tidy ]; then
  mapfile -t sources < <(printf '%s\n' "${files[@]}" | grep -E '^(engine|cli|widgets)/.*\.cpp$')
  complain "clang-tidy:" "$(
    printf '%s\n' "${sources[@]}" | xargs -P "$(nproc)" -n 4 clang-tidy -p build/release --quiet 2>/dev/null || true
  )"
fi

if [ $failures -ne 0 ]; then
  echo "scripts/check.sh: see above." >&2
  exit 1
fi
