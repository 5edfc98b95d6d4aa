// TextEncoding, TextConverter and the Encodings module as compiled code
// reaches them through their exports; text to and from the system.
#include "oracle.h"

#include "encodings/os_text.h"
#include "kelp/encodings.h"
#include "kelp/objects.h"
#include "kelp/strings.h"
#include "strings/kstring.h"

#include <gtest/gtest.h>

#include <random>
#include <unistd.h>

using kelp::string;

namespace {

// Owns one reference to an object.
struct Held {
    explicit Held(RuntimeObject *o) : object(o) {}
    ~Held() { RuntimeUnlockObject(object); }
    Held(const Held &) = delete;
    RuntimeObject *object;
    uint32_t word() const { return GetEncodingFromTEObject(object); }
};

std::string Take(KelpString s) { return std::string(string::Adopt(s).View()); }

TEST(Encodings, ModulePropertiesAndTheirInternetNames) {
    struct Case {
        int32_t selector;
        uint32_t word;
        int32_t base, format;
        const char *internetName; // "" for none
    } cases[] = {
        {1, kEncodingUTF8, 256, 2, "UTF-8"},
        {2, 0x0100, 256, 0, "UTF-16"},
        {3, 0x0100, 256, 3, "UCS-4"},
        {4, 0, 0, 0, "macintosh"},
        {5, 1, 1, 0, "X-MAC-JAPANESE"},
        {43, 0x0201, 0x0201, 0, ""},
        {77, 0x0500, 0x0500, 0, "windows-1252"},
        {78, 0x0500, 0x0500, 0, "windows-1252"},
        {88, 0x0600, 0x0600, 0, "US-ASCII"},
        {89, 0x0A01, 0x0A01, 0, "Shift_JIS"},
        {92, 0x0201, 0x0201, 0, ""}, // SystemDefault
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.selector);
        Held e(EncodingsGetter(nullptr, c.selector));
        ASSERT_NE(e.object, nullptr);
        EXPECT_EQ(e.word(), c.word);
        EXPECT_EQ(textEncodingBaseGetter(e.object), c.base);
        EXPECT_EQ(textEncodingFormatGetter(e.object), c.format);
        EXPECT_EQ(Take(textEncodingInternetName(e.object)), c.internetName);
    }
    EXPECT_EQ(EncodingsGetter(nullptr, 0), nullptr);
    EXPECT_EQ(EncodingsGetter(nullptr, 93), nullptr);
    // WindowsLatin1 and WindowsANSI: one word, one shared object.
    Held latin1(EncodingsGetter(nullptr, 77)), ansi(EncodingsGetter(nullptr, 78));
    EXPECT_EQ(latin1.object, ansi.object);
    Held fromCode(EncodingsGetFromCode(0x0500));
    EXPECT_EQ(fromCode.object, latin1.object);
    EXPECT_EQ(EncodingsGetFromCode((int32_t)kEncodingUnknown), nullptr);
}

// GetEncodingsObject: one object of _Encodings whose property rows answer
// what the module's do, through the selector each row carries.
TEST(Encodings, TheEncodingsObjectCarriesTheModuleProperties) {
    Held first(GetEncodingsObject()), second(GetEncodingsObject());
    ASSERT_NE(first.object, nullptr);
    EXPECT_EQ(first.object, second.object);
    const RuntimeClass *klass = first.object->klass;
    EXPECT_EQ(string::Wrap(klass->name).View(), "_Encodings");
    int32_t found = 0;
    for (int32_t i = 0; i < klass->propertyCount; ++i) {
        const RuntimePropertyRow &row = klass->propertyTable[i];
        const std::string_view signature = string::Wrap(row.signature).View();
        if (signature.find("ShiftJIS") == std::string_view::npos &&
            signature.find("UTF16") == std::string_view::npos)
            continue;
        auto getter = reinterpret_cast<RuntimeObject *(*)(RuntimeObject *, int32_t)>(row.getter);
        Held e(getter(first.object, row.fieldOffset));
        EXPECT_EQ(e.word(), signature.find("UTF16") != std::string_view::npos ? 0x0100u : 0x0A01u);
        ++found;
    }
    EXPECT_EQ(found, 2);
}

// What iconv makes of the bytes, as the target encoding's bytes.
std::string Iconv(const std::string &bytes, const char *from, const char *to) {
    char path[] = "/tmp/kelp-lock-XXXXXX";
    const int fd = mkstemp(path);
    if (fd < 0 || write(fd, bytes.data(), bytes.size()) != ssize_t(bytes.size()))
        return "?";
    close(fd);
    std::string out;
    const std::string command = std::string("iconv -f ") + from + " -t " + to + " " + path;
    if (FILE *pipe = popen(command.c_str(), "r")) {
        for (int c; (c = fgetc(pipe)) != EOF;)
            out += char(c);
        pclose(pipe);
    }
    unlink(path);
    return out;
}

// Locked copies for external functions: 32-bit characters and UTF-8, each
// checked against iconv's reading of the same bytes; a swap moves the lock,
// and pointers that aren't locks are left alone.
TEST(LockedText, WideAndSystemCopiesAgreeWithIconv) {
    struct Case {
        std::string bytes;
        uint32_t word;
        const char *iconvName;
    } cases[] = {
        {"Gr\xc3\xbc\xc3\x9f"
         "e \xe2\x9c\x93 \xf0\x9d\x84\x9e",
         kEncodingUTF8, "UTF-8"},
        {"Gr\xfc\xdf"
         "e",
         0x0201, "ISO-8859-1"},
        {"\x8a\x9a\xa5", 0x0000, "MACINTOSH"},
        {"", kEncodingUTF8, "UTF-8"},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.iconvName);
        const string text = string::FromBytes(c.bytes.data(), long(c.bytes.size()), c.word);
        auto *wide = static_cast<const char32_t *>(LockWString(text.Storage()));
        auto *system = static_cast<const char *>(LockCFString(text.Storage()));
        ASSERT_NE(wide, nullptr);
        ASSERT_NE(system, nullptr);
        const std::u32string units(wide);
        EXPECT_EQ(std::string(reinterpret_cast<const char *>(units.data()), units.size() * 4),
                  Iconv(c.bytes, c.iconvName, "UTF-32LE"));
        EXPECT_EQ(std::string(system), Iconv(c.bytes, c.iconvName, "UTF-8"));
        auto *swapped =
            static_cast<const char *>(SwapCFStringLocks((void *)system, string("next").Storage()));
        EXPECT_STREQ(swapped, "next");
        UnlockCFString((void *)swapped);
        UnlockWString((void *)wide);
        UnlockWString((void *)wide); // no longer a lock: ignored, not freed twice
    }
    char notALock[8] = "";
    UnlockCFString(notALock);
    auto *empty = static_cast<const char32_t *>(LockWString(nullptr));
    ASSERT_NE(empty, nullptr);
    EXPECT_EQ(empty[0], U'\0');
    UnlockWString((void *)empty);
}

TEST(Encodings, EqualityAndCharacters) {
    Held a(getTextEncoding(0x0201, 0, 0)), b(getTextEncoding(0x0201, 0, 0));
    Held utf8(getTextEncoding(256, 0, 2)), ucs4(getTextEncoding(256, 0, 3));
    EXPECT_NE(a.object, b.object); // made new each time
    EXPECT_TRUE(TextEncodingEquals(a.object, b.object));
    EXPECT_FALSE(TextEncodingEquals(a.object, utf8.object));
    EXPECT_FALSE(TextEncodingEquals(a.object, nullptr));
    EXPECT_TRUE(TextEncodingEquals(nullptr, nullptr));
    EXPECT_EQ(utf8.word(), kEncodingUTF8);

    Held utf16(getTextEncoding(256, 0, 0)), sjis(getTextEncoding(2561, 0, 0));
    struct Case {
        RuntimeObject *encoding;
        int32_t code;
        std::string bytes;
    } cases[] = {
        {utf8.object, 0xE9, "\xC3\xA9"},
        {utf8.object, 0x1F600, "\xF0\x9F\x98\x80"},
        {utf16.object, 0x65E5, "\xE5\x65"},
        {ucs4.object, 0x1F600, std::string("\x00\xF6\x01\x00", 4)},
        {sjis.object, 0x93FA, "\x93\xFA"},
        {a.object, 0xE9, "\xE9"},
        {a.object, 0, std::string(1, '\0')},
        {a.object, 0x12345678, "\x34\x56\x78"}, // at most three bytes
    };
    for (const Case &c : cases) {
        KelpString s = TextEncodingChr(c.encoding, c.code);
        EXPECT_EQ(s ? s->encoding : 0, GetEncodingFromTEObject(c.encoding));
        EXPECT_EQ(enctest::ToHex(Take(s)), enctest::ToHex(c.bytes)) << c.code;
    }
}

TEST(Encodings, DefineAndConvertOnStrings) {
    string latin = string::FromBytes("caf\xE9", 4, kEncodingLatin1);
    Held utf8(EncodingsGetter(nullptr, 1)), latin1(EncodingsGetter(nullptr, 43));

    KelpString defined = StringSetEncoding(latin.Storage(), utf8.object);
    EXPECT_EQ(defined->encoding, kEncodingUTF8);
    EXPECT_EQ(Take(defined), "caf\xE9"); // bytes never change
    EXPECT_EQ(latin.Encoding(), kEncodingLatin1);
    KelpString same = StringSetEncoding(latin.Storage(), latin1.object);
    EXPECT_EQ(same, latin.Storage());
    RuntimeUnlockString(same);
    KelpString unknown = StringSetEncoding(latin.Storage(), nullptr);
    EXPECT_EQ(unknown->encoding, kEncodingUnknown);
    RuntimeUnlockString(unknown);

    KelpString converted = StringConvertEncoding(latin.Storage(), utf8.object);
    EXPECT_EQ(Take(converted), "caf\xC3\xA9");
    EXPECT_EQ(StringConvertEncoding(nullptr, utf8.object), nullptr);
    EXPECT_EQ(StringSetEncoding(nullptr, utf8.object), nullptr);

    Held ascii(StringGetEncoding(nullptr));
    EXPECT_EQ(ascii.word(), kEncodingASCII);
    Held ofLatin(StringGetEncoding(latin.Storage()));
    EXPECT_EQ(ofLatin.object, latin1.object);
    string raw = string::FromBytes("x", 1, kEncodingUnknown);
    EXPECT_EQ(StringGetEncoding(raw.Storage()), nullptr);
    Held font(getFontTextEncoding(nullptr));
    EXPECT_EQ(font.word(), kEncodingLatin1);
}

TEST(Encodings, ConverterUsesItsOwnWordsWhateverTheTextSays) {
    Held latin1(EncodingsGetter(nullptr, 43)), utf8(EncodingsGetter(nullptr, 1));
    Held converter(getTextConverter(latin1.object, utf8.object));
    EXPECT_EQ(getTextConverter(nullptr, utf8.object), nullptr);
    // Labelled unknown, read as Latin-1.
    string raw = string::FromBytes("\xE9t\xE9", 3, kEncodingUnknown);
    KelpString out = textConverterConvert(converter.object, raw.Storage());
    EXPECT_EQ(out->encoding, kEncodingUTF8);
    EXPECT_EQ(Take(out), "\xC3\xA9t\xC3\xA9");
    EXPECT_EQ(textConverterConvert(converter.object, nullptr), nullptr);

    Held identity(getTextConverter(utf8.object, utf8.object));
    string labelled = string::FromUTF8("ok");
    KelpString same = textConverterConvert(identity.object, labelled.Storage());
    EXPECT_EQ(same, labelled.Storage());
    RuntimeUnlockString(same);
    KelpString relabelled = textConverterConvert(identity.object, raw.Storage());
    EXPECT_EQ(relabelled->encoding, kEncodingUTF8);
    EXPECT_EQ(Take(relabelled), "\xE9t\xE9");
}

TEST(Encodings, JapaneseGuessesOnTextPythonEncoded) {
    struct Case {
        const char *codec;
        uint32_t expected;
    } cases[] = {{"shift_jis", 2561}, {"euc_jp", 2336}, {"iso2022_jp", 2080}};
    for (const Case &c : cases) {
        std::string bytes = enctest::FromHex(enctest::RunCommand(
            std::string("python3 -c \"import sys; sys.stdout.write('日本語のテキスト'.encode('") +
            c.codec + "').hex())\""));
        ASSERT_FALSE(bytes.empty());
        string text = string::FromBytes(bytes.data(), (long)bytes.size(), kEncodingUnknown);
        Held guess(guessJapaneseEncoding(text.Storage()));
        EXPECT_EQ(guess.word(), c.expected) << c.codec;
    }
    string plain = string::FromBytes("abc", 3, kEncodingUnknown);
    EXPECT_EQ(guessJapaneseEncoding(plain.Storage()), nullptr);
    string truncated = string::FromBytes("\xE0", 1, kEncodingUnknown);
    EXPECT_EQ(guessJapaneseEncoding(truncated.Storage()), nullptr);
}

TEST(SystemText, UTF8PassesUnchangedAndValidityAgreesWithPython) {
    string latin = string::FromBytes("f\xE9", 2, kEncodingLatin1);
    string broken = string::FromBytes("f\xE9", 2, kEncodingUnknown);
    EXPECT_EQ(kelp::TextForSystem(latin), "f\xC3\xA9");
    EXPECT_EQ(kelp::TextForSystem(broken), "f\xE9"); // unknown bytes go as they are
    EXPECT_EQ(kelp::TextForSystem(string::FromUTF8("f\xC3\xA9")), "f\xC3\xA9");
    EXPECT_EQ(kelp::TextFromSystem("f\xC3\xA9").Encoding(), kEncodingUTF8);
    string back = kelp::TextFromSystem("f\xE9");
    EXPECT_EQ(back.Encoding(), kEncodingUnknown);
    EXPECT_EQ(kelp::TextForSystem(back), "f\xE9"); // a name round-trips

    // Seeded random byte strings, mostly near UTF-8: validity as Python's
    // strict decoder sees it.
    std::mt19937 random(1125);
    std::string script = "import sys\nfor line in sys.stdin:\n    b = bytes.fromhex(line.strip())\n"
                         "    try:\n        b.decode('utf-8'); print(1)\n"
                         "    except UnicodeDecodeError:\n        print(0)\n";
    std::vector<std::string> samples;
    const uint8_t pieces[] = {0x41, 0x80, 0xBF, 0xC0, 0xC2, 0xDF, 0xE0, 0xED, 0xEF,
                              0xF0, 0xF4, 0xF5, 0xFF, 0xA0, 0x9F, 0x90, 0x8F};
    std::string input;
    for (int i = 0; i < 3000; ++i) {
        std::string s;
        for (int n = (int)(random() % 6); n > 0; --n)
            s.push_back((char)pieces[random() % sizeof pieces]);
        samples.push_back(s);
        input += enctest::ToHex(s) + "\n";
    }
    char path[] = "/tmp/kelp-utf8-XXXXXX";
    int fd = mkstemp(path);
    ASSERT_GE(fd, 0);
    ASSERT_EQ(write(fd, input.data(), input.size()), (ssize_t)input.size());
    close(fd);
    std::string verdicts = enctest::RunCommand("python3 -c \"" + std::string("exec('''") + script +
                                               "''')\" < " + path);
    remove(path);
    ASSERT_EQ(verdicts.size(), samples.size() * 2);
    for (size_t i = 0; i < samples.size(); ++i)
        EXPECT_EQ(kelp::IsValidUTF8(samples[i].data(), (long)samples[i].size()),
                  verdicts[2 * i] == '1')
            << enctest::ToHex(samples[i]);
}

} // namespace
