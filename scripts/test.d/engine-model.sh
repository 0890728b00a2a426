#!/usr/bin/env bash
# Cross-checks pwext's host commands (html, links, record, site, info,
# publish) against an independent model of the engine on generated
# definitions and host inputs. The seed is fixed so runs repeat;
# PW_MODEL_SEED=N (or =random) tries other cases.
set -euo pipefail
cd "$(dirname "$0")/../.."
PWEXT=${PWEXT:-build/native/bin/pwext}
seed=${PW_MODEL_SEED:-1}
[ "$seed" = random ] && seed=$RANDOM && echo "random seed $seed (repeat with PW_MODEL_SEED=$seed)"
python3 tests/model/compare_engine.py "$PWEXT" 300 "$seed"
