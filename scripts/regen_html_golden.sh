#!/bin/sh
# Rewrites the reference item lists of tests/data/html from the current
# renderer. Review the diff before committing it.
set -e
build="${1:-build}"
LEXSMITH_REGEN_GOLDEN=1 "$build/tests/lexsmith_core_tests" --gtest_filter='HTMLRenderTest.GoldenLayouts'
git diff --stat -- tests/data/html
