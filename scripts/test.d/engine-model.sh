#!/usr/bin/env bash
# Cross-checks pwext's host commands (html, links, record, site, info,
# publish) against an independent model of the engine on generated
# definitions and host inputs: a fixed seed, then a random one that is printed.
set -euo pipefail
cd "$(dirname "$0")/../.."
PWEXT=${PWEXT:-build/native/bin/pwext}
python3 tests/model/compare_engine.py "$PWEXT" 200 1
seed=${PW_MODEL_SEED:-$RANDOM}
echo "random seed $seed (repeat with PW_MODEL_SEED=$seed)"
python3 tests/model/compare_engine.py "$PWEXT" 200 "$seed"
