#!/usr/bin/env bash
# The native unit tests under AddressSanitizer and UBSan, and every fuzz
# target for a few seconds from its seeds (make fuzz runs them longer).
set -euo pipefail
cd "$(dirname "$0")/../.."
exec scripts/fuzz "${PW_FUZZ_SECONDS:-5}" 2
