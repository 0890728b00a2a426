#!/usr/bin/env bash
# Cross-checks pwext's XML and Base64 commands against an independent model of
# the documented rules on generated documents.
set -euo pipefail
cd "$(dirname "$0")/../.."
python3 tests/model/compare_pwext.py build/native/bin/pwext 600 "${PW_MODEL_SEED:-$RANDOM}"
