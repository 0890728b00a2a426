#!/usr/bin/env bash
# The published gallery in headless Chromium (Debian's /usr/bin/chromium,
# driven by playwright-core; no browser is downloaded). Saves
# build/screenshots/gallery-without-php.png. PWEXT overrides the pwext used to
# publish.
set -euo pipefail
root="$(cd "$(dirname "$0")/../.." && pwd)"
export PWEXT="$(realpath "${PWEXT:-$root/build/native/bin/pwext}")"
cd "$root/tests/browser"
if [ ! -d node_modules/playwright-core ]; then
  PLAYWRIGHT_SKIP_BROWSER_DOWNLOAD=1 npm ci --no-audit --no-fund --loglevel=error
fi
exec node --test --test-concurrency=1 gallery.test.js
