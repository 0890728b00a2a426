#!/usr/bin/env bash
# Builds the XML fuzz target with clang (libFuzzer, ASan, UBSan) and runs it for
# a bounded time from the seed corpus. Any crash or failed check fails the stage.
set -euo pipefail
cd "$(dirname "$0")/../.."
seconds=${PW_FUZZ_SECONDS:-45}
cmake -S . -B build/fuzz -G Ninja -DCMAKE_BUILD_TYPE=Debug \
  -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ \
  -DPW_BUILD_FUZZ=ON -DPW_BUILD_TESTS=OFF -DPW_BUILD_BENCH=OFF >/dev/null
cmake --build build/fuzz --target xml_fuzz >/dev/null
work=build/fuzz/corpus
mkdir -p "$work" build/fuzz/artifacts
cp -n tests/fuzz/corpus/* "$work"/ 2>/dev/null || true
build/fuzz/bin/xml_fuzz "$work" -max_total_time="$seconds" -max_len=8192 \
  -rss_limit_mb=4096 -artifact_prefix=build/fuzz/artifacts/ -print_final_stats=1 2>&1 | tail -15
