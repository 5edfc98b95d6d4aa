# Prints, for each encoding word, sample texts in that encoding and the same
# texts in UTF-8, as Python's codecs make them: "word pycodec bytes-hex
# utf8-hex".  Single-byte encodings give one line per byte that Python
# decodes; the others one line of a fixed text.  Encodings Python lacks are
# printed with the codec "-" and no texts.
import codecs
import sys

ROWS = [
    (0, "mac_roman"), (7, "mac_cyrillic"), (29, None), (256, "utf-16-le"),
    (513, "iso8859_1"), (514, "iso8859_2"), (515, "iso8859_3"), (516, "iso8859_4"),
    (517, "iso8859_5"), (518, "iso8859_6"), (519, "iso8859_7"), (520, "iso8859_8"),
    (521, "iso8859_9"), (527, "iso8859_15"), (1024, "cp437"), (1029, "cp737"),
    (1030, "cp775"), (1040, "cp850"), (1041, None), (1042, "cp852"), (1043, "cp855"),
    (1044, "cp857"), (1045, "cp860"), (1046, "cp861"), (1047, "cp862"), (1048, "cp863"),
    (1049, "cp864"), (1050, "cp865"), (1051, "cp866"), (1052, "cp869"), (1053, "cp874"),
    (1056, "cp932"), (1057, "gbk"), (1058, "cp949"), (1059, "cp950"), (1280, "cp1252"),
    (1281, "cp1250"), (1282, "cp1251"), (1283, "cp1253"), (1284, "cp1254"),
    (1285, "cp1255"), (1286, "cp1256"), (1287, "cp1257"), (1288, "cp1258"),
    (1296, "johab"), (1536, "ascii"), (1585, "gbk"), (2080, "iso2022_jp"),
    (2336, "euc_jp"), (2561, "cp932"), (3073, "cp037"), (3074, "cp037"),
    (0x08000100, "utf-8"),
]

SAMPLES = {
    "cp932": "日本語のテキスト、カタカナ ｶﾀｶﾅ abc",
    "euc_jp": "日本語のテキスト、カタカナ abc",
    "iso2022_jp": "日本語のテキスト abc",
    "gbk": "中文文本 abc",
    "cp949": "한국어 텍스트 abc",
    "cp950": "中文文本 abc",
    "johab": "한국어 abc",
    "utf-16-le": "Grüße, 日本 \U0001F600",
    "utf-8": "Grüße, 日本 \U0001F600",
    "ascii": "".join(chr(c) for c in range(1, 128)),
}

for word, codec in ROWS:
    if codec is None:
        print(word, "-")
        continue
    if codec in SAMPLES:
        text = SAMPLES[codec]
        print(word, codec, text.encode(codec).hex(), text.encode("utf-8").hex())
        continue
    for b in range(1, 256):
        try:
            text = bytes([b]).decode(codec)
        except UnicodeDecodeError:
            continue
        print(word, codec, bytes([b]).hex(), text.encode("utf-8").hex())
sys.stdout.flush()
