#!/usr/bin/env python3
"""Prints the label of the first page of a PDF ("1" when it has no labels,
as a document numbered 1, 2, ... needs none).

cairo keeps the labels in the catalogue's "/PageLabels << /Nums [...] >>",
often inside a compressed stream, and writes a run of numbered pages as one
decimal range: "0 << /S /D /St 7 >>" labels the pages 7, 8, ...
"""
import re
import sys
import zlib

data = open(sys.argv[1], "rb").read()
texts = [data]
for match in re.finditer(rb"stream\r?\n", data):
    try:
        texts.append(zlib.decompressobj().decompress(data[match.end():]))
    except zlib.error:
        pass
for text in texts:
    nums = re.search(rb"/Nums\s*\[\s*0\s*<<(.*?)>>", text, re.S)
    if nums:
        entry = nums.group(1)
        label = re.search(rb"/P\s*\(([^)]*)\)", entry)
        start = re.search(rb"/St\s+(\d+)", entry)
        print((label or start).group(1).decode() if (label or start) else "1")
        break
else:
    print("1")
