#!/usr/bin/env bash
# Fails when a C or C++ file of the tree differs from what clang-format
# makes of it (folders with DisableFormat in their .clang-format excepted).
set -euo pipefail
cd "$(dirname "$0")/.."
mapfile -t files < <(git ls-files '*.c' '*.cpp' '*.h' 2>/dev/null ||
                     find runtime application programs tools tests bench include \
                          -name '*.c' -o -name '*.cpp' -o -name '*.h')
clang-format --dry-run -Werror "${files[@]}"
