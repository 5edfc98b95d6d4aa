#!/usr/bin/env python3
"""Counts test lines against code lines, to keep the tests at their right size.

A line counts when it is neither blank nor only comment.  C and C++ sources
(.c .cc .cpp .h .hpp .inc) are counted; build files and data files are not.

    scripts/count-lines.py            whole tree and the drill
    scripts/count-lines.py -v         the same, with each test folder
    scripts/count-lines.py A -- B     tests in A (files or folders) against code in B
"""
import os
import sys

SOURCE_SUFFIXES = ('.c', '.cc', '.cpp', '.h', '.hpp', '.inc')
ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
CODE_FOLDERS = ['runtime', 'application', 'programs', 'tools', 'include']


def code_lines(text):
    """Lines holding something besides comments; string literals are honoured."""
    count = 0
    in_block = False
    for line in text.splitlines():
        has_code = False
        i = 0
        quote = None
        while i < len(line):
            c = line[i]
            if in_block:
                if line.startswith('*/', i):
                    in_block = False
                    i += 2
                    continue
                i += 1
                continue
            if quote:
                has_code = True
                if c == '\\':
                    i += 2
                    continue
                if c == quote:
                    quote = None
                i += 1
                continue
            if line.startswith('//', i):
                break
            if line.startswith('/*', i):
                in_block = True
                i += 2
                continue
            if c in '"\'':
                quote = c
            if not c.isspace():
                has_code = True
            i += 1
        if has_code:
            count += 1
    return count


def count_paths(paths):
    total = 0
    for path in paths:
        path = os.path.join(ROOT, path)
        if os.path.isfile(path):
            files = [path]
        else:
            files = [os.path.join(d, f) for d, _, names in os.walk(path) for f in names]
        for name in files:
            if name.endswith(SOURCE_SUFFIXES):
                with open(name, encoding='utf-8', errors='replace') as f:
                    total += code_lines(f.read())
    return total


def report(label, tests, code):
    t = count_paths(tests)
    c = count_paths(code)
    per_hundred = 100.0 * t / c if c else 0.0
    print(f'{label:<24} tests {t:>7}  code {c:>7}  tests per 100 code lines {per_hundred:6.1f}')


def main(argv):
    if '--' in argv:
        split = argv.index('--')
        report('selected', argv[:split], argv[split + 1:])
        return
    report('whole tree', ['tests'], CODE_FOLDERS)
    report('drill', ['tests/drill', 'tests/drill_bank'], ['application'])
    if '-v' in argv:
        tests_root = os.path.join(ROOT, 'tests')
        for name in sorted(os.listdir(tests_root)):
            if os.path.isdir(os.path.join(tests_root, name)):
                print(f'  tests/{name:<20} {count_paths(["tests/" + name]):>7}')


if __name__ == '__main__':
    main(sys.argv[1:])
