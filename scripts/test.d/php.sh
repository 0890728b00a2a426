#!/usr/bin/env bash
# reflect.php through PHP's built-in server (php-cli with GD): the reflection
# it draws, its 4xx refusals and its caching headers.
set -euo pipefail
cd "$(dirname "$0")/../.."
php -r 'exit(function_exists("imagecreatetruecolor") ? 0 : 1);' || { echo "php-gd is missing (scripts/setup)"; exit 1; }
exec php tests/php/reflect_test.php resources/slidewave/files/reflect.php
