#!/usr/bin/env bash
# pwext's definition commands (definition, info, unpack, pack) end to end.
set -euo pipefail
cd "$(dirname "$0")/../.."
exec python3 tests/pwext/definition_commands_test.py "${PWEXT:-build/native/bin/pwext}"
