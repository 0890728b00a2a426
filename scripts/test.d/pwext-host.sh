#!/usr/bin/env bash
# End-to-end tests of pwext as a host of the extension engine.
set -euo pipefail
cd "$(dirname "$0")/../.."
exec python3 tests/pwext/host_commands_test.py
