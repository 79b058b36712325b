#!/usr/bin/env bash
# Builds the soak of the streams and runs it: ten minutes of swaps under a running stream, unless told
# otherwise. See stream_soak.cpp for what it judges; its exit status is this script's.
set -euo pipefail

# shellcheck source=scripts/setup.sh
source "$(dirname "${BASH_SOURCE[0]}")/../scripts/setup.sh"

case "${1-}" in
  --help | -h)
    echo "Usage: benchmarks/stream_soak.sh [--seconds N]     600 unless given"
    exit 0
    ;;
esac

mkdir -p "$VELMORA_ROOT/build"
require_packages build test
configure release -DVELMORA_TESTS=ON
build release stream_soak
"$VELMORA_ROOT/build/release/bin/stream_soak" "$@"
