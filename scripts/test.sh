#!/usr/bin/env bash
# Installs what is needed, builds Voltaro with its tests and runs every test; then runs the core
# tests again under ThreadSanitizer, where any report fails the run, and each fuzz target briefly.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-dependencies.sh
scripts/build.sh
ctest --test-dir "${VOLTARO_BUILD_DIR:-build}" --output-on-failure --parallel "$(nproc)"

# The low power mode changes on a thread of its own and hands its outcome back through the main
# loop; the core tests drive that, so a build of them alone is enough here.
tsan_dir=${VOLTARO_TSAN_BUILD_DIR:-build-tsan}
cmake -S . -B "$tsan_dir" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVOLTARO_SANITIZE=thread \
    -DVOLTARO_BUILD_BENCHMARKS=OFF
cmake --build "$tsan_dir" --target core_tests --parallel "$(nproc)"
TSAN_OPTIONS="halt_on_error=1 second_deadlock_stack=1" "$tsan_dir/tests/core_tests" --gtest_brief=1

# Every parser of outside input under AddressSanitizer and UndefinedBehaviorSanitizer, a few
# seconds each.
scripts/fuzz.sh
