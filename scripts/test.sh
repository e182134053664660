#!/usr/bin/env bash
# Installs what is needed, builds Voltaro with its tests and runs every test; then runs the whole
# suite again under AddressSanitizer and UndefinedBehaviorSanitizer, the threaded parts under
# ThreadSanitizer, and each fuzz target briefly. Any sanitizer report or finding fails the run.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-dependencies.sh
scripts/build.sh
ctest --test-dir "${VOLTARO_BUILD_DIR:-build}" --output-on-failure --parallel "$(nproc)"

# Unoptimised: the sanitizers find the same faults, and the build is much quicker.
asan_dir=${VOLTARO_ASAN_BUILD_DIR:-build-asan}
cmake -S . -B "$asan_dir" -G Ninja -DCMAKE_BUILD_TYPE=Debug -DVOLTARO_SANITIZE=address,undefined
cmake --build "$asan_dir" --parallel "$(nproc)"
ASAN_OPTIONS="detect_leaks=1:detect_stack_use_after_return=1" \
    UBSAN_OPTIONS="print_stacktrace=1" \
    ctest --test-dir "$asan_dir" --output-on-failure --parallel "$(nproc)"

# The low power mode changes on a thread of its own and hands its outcome back through the main
# loop, the terminal's or Qt's; the core tests and the executor's tests drive that, so a build of
# them alone is enough here.
tsan_dir=${VOLTARO_TSAN_BUILD_DIR:-build-tsan}
cmake -S . -B "$tsan_dir" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVOLTARO_SANITIZE=thread \
    -DVOLTARO_BUILD_BENCHMARKS=OFF
cmake --build "$tsan_dir" --target core_tests qt_executor_tests --parallel "$(nproc)"
export TSAN_OPTIONS="halt_on_error=1 second_deadlock_stack=1"
"$tsan_dir/tests/core_tests" --gtest_brief=1
QT_QPA_PLATFORM=offscreen "$tsan_dir/tests/qt_executor_tests" --gtest_brief=1 --gtest_repeat=20

# Every parser of outside input under AddressSanitizer and UndefinedBehaviorSanitizer, a few
# seconds each.
scripts/fuzz.sh
