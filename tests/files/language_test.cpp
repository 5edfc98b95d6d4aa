// FolderItem and the stream classes as compiled code reaches them: through
// the exported functions, on real objects and real files.
#include "support/class_kit.h"
#include "support/image_builder.h"

#include "exports/export_table.h"
#include "objects/definitions.h"
#include "strings/kstring.h"

#include "kelp/kelp.h"

#include <gtest/gtest.h>

#include <csignal>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <sstream>

namespace kelp {
namespace {

using test::Lit;
using test::Str;

std::string TakeString(KelpString s) {
    std::string text = Str(s);
    RuntimeUnlockString(s);
    return text;
}

// The class name and message of the pending exception, which is taken.
std::string TakeRaised() {
    RuntimeObject *e = RuntimeTakeException();
    if (!e)
        return "";
    std::string text =
        Str(e->klass->name) + ": " + Str(reinterpret_cast<RuntimeExceptionObject *>(e)->message);
    RuntimeUnlockObject(e);
    return text;
}

class FilesLanguage : public ::testing::Test {
protected:
    void SetUp() override { RuntimeEnterHandlerRegion(); }
    void TearDown() override {
        EXPECT_EQ(TakeRaised(), "");
        RuntimeLeaveHandlerRegion();
    }
    RuntimeObject *Item(const std::string &name) {
        RuntimeObject *item = RuntimeGetFolderItem(Lit(mDir / name), 0);
        EXPECT_NE(item, nullptr) << name;
        return item;
    }
    test::TempDir mDir;
};

TEST_F(FilesLanguage, TextFilesRoundTripThroughTheExports) {
    RuntimeObject *item = Item("notes.txt");
    RuntimeObject *out = FolderItemCreateTextFile(item);
    ASSERT_NE(out, nullptr);
    TextOutputStreamWriteLine(out, Lit("one"));
    TextOutputStreamWrite(out, Lit("two"));
    TextOutputStreamClose(out);
    TextOutputStreamClose(out); // a second close does nothing
    RuntimeUnlockObject(out);
    out = FolderItemAppendTextFile(item);
    TextOutputStreamWriteLine(out, Lit("!"));
    RuntimeUnlockObject(out); // the finalizer closes

    EXPECT_EQ(fileSizeGetter(item, 0), 9);
    RuntimeObject *in = FolderItemOpenTextFile(item);
    ASSERT_NE(in, nullptr);
    EXPECT_EQ(TakeString(TextInputStreamReadLine(in, nullptr)), "one");
    EXPECT_EQ(TextInputStreamGetPosition(in, 0), 4);
    EXPECT_EQ(TakeString(TextInputStreamReadAll(in, nullptr)), "two!\n");
    EXPECT_TRUE(TextInputStreamEOF(in));
    TextInputStreamClose(in);
    EXPECT_FALSE(TextInputStreamEOF(in));
    EXPECT_EQ(TextInputStreamRead(in, 5, nullptr), nullptr);
    RuntimeUnlockObject(in);

    RuntimeObject *missing = Item("absent");
    EXPECT_EQ(FolderItemOpenTextFile(missing), nullptr);
    EXPECT_EQ(FolderItemGetLastError(missing, 0), ENOENT);
    RuntimeUnlockObject(missing);
    RuntimeUnlockObject(item);
}

// Text written by iconv in an encoding, read with that encoding given: the
// lines come back tagged with it and convert back to the text iconv took.
TEST_F(FilesLanguage, EncodingArgumentsTagWhatIsRead) {
    RuntimeObject *utf8 = EncodingsGetFromCode(int32_t(kEncodingUTF8));
    struct Case {
        const char *iconvName;
        uint32_t word;
    } cases[] = {
        {"ISO-8859-1", 0x0201}, {"MACINTOSH", 0x0000}, // word 0 is an encoding too
        {"UTF-16LE", 0x0100},   {"WINDOWS-1252", 0x0500}, {"UTF-8", kEncodingUTF8},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.iconvName);
        const std::string path = mDir / "encoded.txt";
        ASSERT_EQ(std::system(("printf 'Gr\303\274\303\237e\nzwei' | iconv -f UTF-8 -t " +
                               std::string(c.iconvName) + " > '" + path + "'")
                                  .c_str()),
                  0);
        RuntimeObject *item = Item("encoded.txt");
        RuntimeObject *encoding = EncodingsGetFromCode(int32_t(c.word));
        RuntimeObject *in = FolderItemOpenTextFile(item);
        KelpString line = TextInputStreamReadLine(in, encoding);
        ASSERT_NE(line, nullptr);
        EXPECT_EQ(line->encoding, c.word);
        EXPECT_EQ(TakeString(StringConvertEncoding(line, utf8)), "Grüße");
        RuntimeUnlockString(line);
        KelpString rest = TextInputStreamReadAll(in, encoding);
        EXPECT_EQ(TakeString(StringConvertEncoding(rest, utf8)), "zwei");
        RuntimeUnlockString(rest);
        RuntimeUnlockObject(in);

        RuntimeObject *bs = FolderItemOpenBinaryFile(item, 0);
        KelpString bytes = BinaryStreamRead(bs, 3, encoding);
        EXPECT_EQ(bytes->encoding, c.word);
        RuntimeUnlockString(bytes);
        bytes = BinaryStreamRead(bs, 3, nullptr);
        EXPECT_EQ(bytes->encoding, kEncodingUnknown) << "no encoding given, none claimed";
        RuntimeUnlockString(bytes);
        RuntimeUnlockObject(bs);
        RuntimeUnlockObject(encoding);
        RuntimeUnlockObject(item);
    }
    RuntimeUnlockObject(utf8);

    // The stream's own Encoding tags what is read without one; nil claims none.
    std::ofstream(mDir / "lines.txt") << "a\nb\nc\n";
    RuntimeObject *item = Item("lines.txt");
    RuntimeObject *in = FolderItemOpenTextFile(item);
    const RuntimePropertyRow *row = nullptr;
    for (int32_t i = 0; i < in->klass->propertyCount; ++i)
        if (Str(in->klass->propertyTable[i].signature).find("Encoding") != std::string::npos)
            row = &in->klass->propertyTable[i];
    ASSERT_NE(row, nullptr);
    auto get = reinterpret_cast<RuntimeObject *(*)(RuntimeObject *, int32_t)>(row->getter);
    auto set = reinterpret_cast<void (*)(RuntimeObject *, int32_t, RuntimeObject *)>(row->setter);
    RuntimeObject *latin1 = EncodingsGetFromCode(0x0201);
    const std::pair<RuntimeObject *, uint32_t> settings[] = {{latin1, 0x0201u},
                                                             {nullptr, kEncodingUnknown}};
    for (const auto &[setting, word] : settings) {
        set(in, 0, setting);
        RuntimeObject *now = get(in, 0);
        EXPECT_EQ(now, setting);
        RuntimeUnlockObject(now);
        KelpString line = TextInputStreamReadLine(in, nullptr);
        EXPECT_EQ(line->encoding, word);
        RuntimeUnlockString(line);
    }
    RuntimeUnlockObject(latin1);
    RuntimeUnlockObject(in);
    RuntimeUnlockObject(item);
}

TEST_F(FilesLanguage, BinaryStreamsOnFilesAndStrings) {
    RuntimeObject *item = Item("data.bin");
    RuntimeObject *bs = FolderItemCreateBinaryFile(item, Lit("data"));
    ASSERT_NE(bs, nullptr);
    BinaryStreamWriteLong(bs, 0x01020304);
    BinaryStreamWritePString(bs, Lit(std::string(300, 'x')));
    EXPECT_EQ(BinaryStreamGetLength(bs, 0), 4 + 256);
    BinaryStreamSetPosition(bs, 0, 0);
    EXPECT_EQ(BinaryStreamReadByte(bs), 1); // big-endian by default
    BinaryStreamClose(bs);
    RuntimeUnlockObject(bs);

    RuntimeObject *text = RuntimeNewObject(RuntimeLookupClass(Lit("BinaryStream")));
    ASSERT_NE(text, nullptr);
    BinaryStringStringCtor(text, Lit("\x01\x02rest"));
    EXPECT_EQ(BinaryStreamReadShort(text), 0x0102);
    BinaryStreamWriteByte(text, 9); // read-only: no raise, code 100
    EXPECT_EQ(BinaryStreamLastErrorGetter(text, 0), 100);
    EXPECT_EQ(TakeString(BinaryStreamRead(text, 100, nullptr)), "rest");
    EXPECT_EQ(BinaryStreamRead(text, 1, nullptr), nullptr);
    BinaryStreamClose(text);
    EXPECT_EQ(BinaryStreamLastErrorGetter(text, 0), 100);
    RuntimeUnlockObject(text);
    RuntimeUnlockObject(item);
}

TEST_F(FilesLanguage, PathTextsAndTheirRefusals) {
    RuntimeObject *item = RuntimeNewObject(RuntimeLookupClass(Lit("FolderItem")));
    const std::string kInvalid =
        "UnsupportedFormatException: The path passed into new FolderItem was invalid";
    struct Case {
        std::string path;
        int32_t mode;
        std::string raised;
    } cases[] = {
        {std::string("/tmp/a\0b", 8), 0, kInvalid},
        {"relative", 1,
         "UnsupportedFormatException: Passing non-absolute shell paths is not currently supported"},
        {"http://example/", 2, kInvalid},
        {"/etc/passwd/below", 0, kInvalid},
        {"file:///tmp/with%20blank", 2, ""},
    };
    for (const Case &c : cases) {
        FolderItemPathCtor(item, Lit(c.path), c.mode);
        EXPECT_EQ(TakeRaised(), c.raised) << c.path;
    }
    EXPECT_EQ(TakeString(fileAbsolutePathGetter(item, 0)), "/tmp/with blank");
    RuntimeUnlockObject(item);

    // A nil item raises; LastErrorCode too.
    EXPECT_EQ(fileExistsGetter(nullptr, 0), 0);
    EXPECT_EQ(TakeRaised(), "NilObjectException: ");
    EXPECT_EQ(FolderItemGetLastError(nullptr, 0), 0);
    EXPECT_EQ(TakeRaised(), "NilObjectException: ");

    EXPECT_EQ(RuntimeGetFolderItem(Lit(std::string("/a\0b", 4)), 0), nullptr);
    EXPECT_EQ(getVolumeCount(), 1);
    RuntimeObject *root = getVolume(0);
    EXPECT_EQ(TakeString(fileAbsolutePathGetter(root, 0)), "/");
    EXPECT_EQ(folderParentGetter(root, 0), nullptr);
    EXPECT_EQ(getVolume(1), nullptr);
    // The language reaches them by name too.
    for (const char *name : {"GetFolderItem", "GetTrueFolderItem", "DesktopFolder", "VolumeCount"})
        EXPECT_FALSE(LookupIntrinsicFunction(name).empty()) << name;
    RuntimeUnlockObject(root);
}

TEST_F(FilesLanguage, PathBytesReachTheSystemAsUTF8) {
    struct Case {
        KelpString path;
        const char *onDisk;
    } cases[] = {
        {string::FromUTF8(mDir / "caf\xc3\xa9 1").ExtractStringStorage(), "caf\xc3\xa9 1"},
        {string::FromBytes((mDir / "caf\xe9 2").data(), (long)(mDir / "caf\xe9 2").size(),
                           kEncodingLatin1)
             .ExtractStringStorage(),
         "caf\xc3\xa9 2"},
    };
    for (const Case &c : cases) {
        RuntimeObject *item = RuntimeGetFolderItem(c.path, 0);
        RuntimeObject *out = FolderItemCreateTextFile(item);
        ASSERT_NE(out, nullptr) << c.onDisk;
        RuntimeUnlockObject(out);
        std::ifstream probe(mDir / c.onDisk);
        EXPECT_TRUE(probe.good()) << c.onDisk;
        RuntimeUnlockObject(item);
        RuntimeUnlockString(c.path);
    }
}

TEST_F(FilesLanguage, SaveInfoFollowsAPairThatMoved) {
    mkdir((mDir / "base").c_str(), 0777);
    mkdir((mDir / "base/sub").c_str(), 0777);
    std::ofstream(mDir / "base/sub/doc") << "x";
    RuntimeObject *base = Item("base");
    RuntimeObject *doc = Item("base/sub/doc");
    KelpString info = FolderItemGetSaveInfo(doc, base, 0);
    ASSERT_NE(info, nullptr);
    EXPECT_EQ(info->encoding, kEncodingUnknown);
    ASSERT_EQ(rename((mDir / "base").c_str(), (mDir / "moved").c_str()), 0);
    RuntimeObject *movedBase = Item("moved");
    RuntimeObject *found = FolderItemGetRelative(movedBase, info);
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(TakeString(fileAbsolutePathGetter(found, 0)), mDir / "moved/sub/doc");
    EXPECT_TRUE(fileExistsGetter(found, 0));
    // With no base the absolute record is taken: the old place, now empty.
    RuntimeObject *direct = RuntimeGetFolderItem(info, 0);
    ASSERT_NE(direct, nullptr);
    EXPECT_FALSE(fileExistsGetter(direct, 0));
    for (RuntimeObject *o : {base, doc, movedBase, found, direct})
        RuntimeUnlockObject(o);
    RuntimeUnlockString(info);
}

TEST_F(FilesLanguage, PermissionsObjectsSetTheFileMode) {
    RuntimeObject *item = Item("p");
    std::ofstream(mDir / "p") << "x";
    RuntimeObject *perms = RuntimeNewObject(RuntimeLookupClass(Lit("Permissions")));
    PermissionsCtor(perms, 0);
    PermissionsSetter(perms, 256, 1); // OwnerRead
    PermissionsSetter(perms, 128, 1); // OwnerWrite
    PermissionsSetter(perms, 4, 1);   // OthersRead
    EXPECT_TRUE(PermissionsGetter(perms, 128));
    EXPECT_FALSE(PermissionsGetter(perms, 64));
    FolderItemSetPermissionsClass(item, 0, perms);
    struct stat st;
    stat((mDir / "p").c_str(), &st);
    EXPECT_EQ(st.st_mode & 07777, 0604u);
    EXPECT_EQ(FolderItemGetPermissions(item, 0), 0604);
    RuntimeUnlockObject(perms);
    RuntimeUnlockObject(item);
}

// A real image run by the runtime program writes a file through the
// exports and reads it back.
// What another program reads from the file system, as one line of text.
std::string Outside(const std::string &command) {
    std::string out;
    if (FILE *pipe = popen(command.c_str(), "r")) {
        char buffer[256];
        while (fgets(buffer, sizeof buffer, pipe))
            out += buffer;
        pclose(pipe);
    }
    while (!out.empty() && out.back() == '\n')
        out.pop_back();
    return out;
}

constexpr double kSecondsFrom1904To1970 = 2082844800.0;

// File dates against Python's os.stat and coreutils' stat: what the system
// says and what the Date says are the same moment, in either direction.
TEST_F(FilesLanguage, FileDatesAreTheFilesOwnTimes) {
    std::ofstream(mDir / "dated") << "x";
    const std::string path = mDir / "dated";
    RuntimeObject *item = Item("dated");
    RuntimeObject *date = RuntimeNewObject(RuntimeLookupClass(Lit("Date")));
    struct Case {
        double unixSeconds; // the moment set, seconds since 1970
        bool throughDate;   // set by ModificationDate (else by Python)
    } cases[] = {
        {981173106, false},    // 2001-02-03 04:05:06
        {-86400 * 365, false}, // before 1970
        {4102444800, true},    // 2100, past 32-bit time
        {1234567890, true},    {0, true},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.unixSeconds);
        if (c.throughDate) {
            dateTotalSecondsSetter(date, 0, c.unixSeconds + kSecondsFrom1904To1970 + 0.75);
            folderSetModified(item, 0, date);
        } else {
            Outside("python3 -c 'import os,sys; os.utime(sys.argv[1], (0, " +
                    std::to_string(int64_t(c.unixSeconds)) + "))' '" + path + "'");
        }
        const std::string seen = Outside(
            "python3 -c 'import os,sys; print(int(os.stat(sys.argv[1]).st_mtime))' '" + path + "'");
        EXPECT_EQ(seen, std::to_string(int64_t(c.unixSeconds)));
        RuntimeObject *modified = folderGetModified(item, 0);
        ASSERT_NE(modified, nullptr);
        EXPECT_EQ(dateTotalSecondsGetter(modified, 0), c.unixSeconds + kSecondsFrom1904To1970);
        RuntimeUnlockObject(modified);
    }
    // Birth time where the file system keeps one (stat says 0 if not), else
    // the change time; setting it changes nothing.
    const std::string birth = Outside("stat -c %W '" + path + "'");
    const std::string change = Outside("stat -c %Z '" + path + "'");
    const std::string expected = birth != "0" ? birth : change;
    folderSetCreation(item, 0, date);
    RuntimeObject *created = folderGetCreation(item, 0);
    ASSERT_NE(created, nullptr);
    EXPECT_EQ(dateTotalSecondsGetter(created, 0) - kSecondsFrom1904To1970, std::stod(expected));
    RuntimeUnlockObject(created);

    // A file removed under the item has no date, and says why.
    std::remove(path.c_str());
    EXPECT_EQ(folderGetModified(item, 0), nullptr);
    EXPECT_EQ(FolderItemGetLastError(item, 0), ENOENT);
    EXPECT_EQ(folderGetCreation(item, 0), nullptr);
    folderSetModified(item, 0, nullptr);
    EXPECT_EQ(TakeRaised(), "NilObjectException: ");
    RuntimeUnlockObject(date);
    RuntimeUnlockObject(item);
}

// The console streams on real pipes: a child process gets `input` on its
// standard input, runs `body` and exits with its answer; its output and
// error come back.  With `noReader` nobody reads its standard output.
struct Console {
    int exitCode = -1;
    std::string out, err;
};
Console RunOnConsole(const std::string &input, bool noReader, int (*body)()) {
    int in[2], out[2], err[2];
    if (pipe(in) || pipe(out) || pipe(err))
        return {};
    if (noReader)
        close(out[0]);
    const pid_t child = fork();
    if (child == 0) {
        signal(SIGPIPE, SIG_IGN);
        dup2(in[0], 0);
        dup2(out[1], 1);
        dup2(err[1], 2);
        for (int fd : {in[0], in[1], out[1], err[0], err[1]})
            close(fd);
        if (!noReader)
            close(out[0]);
        _exit(body());
    }
    close(in[0]);
    close(out[1]);
    close(err[1]);
    if (write(in[1], input.data(), input.size()) != ssize_t(input.size()))
        ADD_FAILURE() << "input not written";
    close(in[1]);
    Console result;
    auto drain = [](int fd, std::string &into) {
        char buffer[4096];
        for (ssize_t n; (n = read(fd, buffer, sizeof buffer)) > 0;)
            into.append(buffer, size_t(n));
        close(fd);
    };
    if (!noReader)
        drain(out[0], result.out);
    drain(err[0], result.err);
    int status = 0;
    waitpid(child, &status, 0);
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return result;
}

// Echoes each line in brackets; the third line is read as Latin-1.
int EchoLines() {
    RuntimeObject *in = RuntimeGetStdIn(), *out = RuntimeGetStdOut(), *err = RuntimeGetStdErr();
    RuntimeObject *latin1 = EncodingsGetFromCode(0x0201);
    for (int n = 1; !RuntimeStdInputEof(in) && n < 100; ++n) {
        KelpString line = RuntimeStdInputReadLine(in, n == 3 ? latin1 : nullptr);
        RuntimeStdOutputStreamWrite(out, Lit("["));
        RuntimeStdOutputStreamWrite(out, line);
        RuntimeStdOutputStreamWriteLine(out, Lit("]"));
        RuntimeUnlockString(line);
    }
    RuntimeStdOutputStreamWriteLine(err, Lit("done"));
    RuntimeStdOutFlush(out);
    const bool same = RuntimeGetStdIn() == in; // one object for the process
    return RuntimeStdOutputError(out) || RuntimeStdInputError(in) || !same ? 1 : 0;
}

int WriteWithNobodyReading() {
    RuntimeObject *out = RuntimeGetStdOut();
    RuntimeStdOutputStreamWriteLine(out, Lit("lost"));
    return RuntimeStdOutputError(out) ? 0 : 1;
}

TEST(ConsoleStreams, LinesInAndOutThroughRealPipes) {
    struct Case {
        std::string input;
        bool noReader;
        int (*body)();
        Console expected;
    } cases[] = {
        // clang-format off
        {"first line\r\nsecond\nGr\xfc\xdf" "e", false, EchoLines,
         {0, "[first line]\n[second]\n[Gr\xc3\xbc\xc3\x9f" "e]\n", "done\n"}},
        {"", false, EchoLines, {0, "", "done\n"}},
        {std::string(3000, 'x') + "\n", false, EchoLines, {0, "[" + std::string(3000, 'x') + "]\n", "done\n"}},
        {"", true, WriteWithNobodyReading, {0, "", ""}},
        // clang-format on
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.input.substr(0, 20));
        const Console got = RunOnConsole(c.input, c.noReader, c.body);
        EXPECT_EQ(got.exitCode, c.expected.exitCode);
        EXPECT_EQ(got.out, c.expected.out);
        EXPECT_EQ(got.err, c.expected.err);
    }
}

// Files here have no resource fork: none is handed out, and a program
// written against the class still binds every member.
TEST_F(FilesLanguage, NoResourceForksButTheClassBinds) {
    std::ofstream(mDir / "plain") << "data";
    RuntimeObject *item = Item("plain");
    EXPECT_EQ(folderOpenResourceFork(item), nullptr);
    EXPECT_EQ(folderCreateResourceFork(item, Lit("rsrc")), nullptr);
    EXPECT_EQ(fileRFSizeGetter(item, 0), 0);
    RuntimeUnlockObject(item);
    RuntimeClass *klass = RuntimeLookupClass(Lit("ResourceFork"));
    ASSERT_NE(klass, nullptr);
    std::istringstream names(
        "resourceForkAddPicture resourceForkAddResource resourceForkClose "
        "ResourceForkDestructor resourceForkGetCicn resourceForkGetCursor "
        "resourceForkGetHandle resourceForkGetIcl resourceForkGetIcs resourceForkGetLocked "
        "resourceForkGetNamedPicture resourceForkGetNamedResource resourceForkGetPicture "
        "resourceForkGetPreload resourceForkGetProtected resourceForkGetPurgeable "
        "resourceForkGetResource resourceForkGetSound resourceForkGetSysHeap "
        "resourceForkReleaseHandle resourceForkRemoveResource resourceForkResourceCount "
        "resourceForkResourceID resourceForkResourceName resourceForkResourceType "
        "resourceForkSetLocked resourceForkSetPreload resourceForkSetProtected "
        "resourceForkSetPurgeable resourceForkSetSysHeap resourceForkTypeCount "
        "GetEncodingsObject BinaryStringMemoryBlockCtor folderGetCreation folderGetModified "
        "folderSetCreation folderSetModified RuntimeGetStdIn RuntimeGetStdOut "
        "RuntimeGetStdErr RuntimeStdInputEof RuntimeStdInputError RuntimeStdInputRead "
        "RuntimeStdInputReadLine RuntimeStdOutFlush RuntimeStdOutputError "
        "RuntimeStdOutputStreamWrite RuntimeStdOutputStreamWriteLine LockWString "
        "UnlockWString SwapWStringLocks LockCFString UnlockCFString SwapCFStringLocks");
    for (std::string name; names >> name;) {
        const RelocEntry *row = FindExport(name.c_str());
        ASSERT_NE(row, nullptr) << name;
        EXPECT_NE(row->code, nullptr) << name;
    }
}

TEST(FilesInAnImage, WritesAFileAndReadsItBack) {
    test::TempDir dir;
    std::string path = dir / "from image.txt";
    using test::Reg;
    test::ImageBuilder b;
    b.Prologue();
    b.Push(Reg::RBX);
    b.Push(Reg::R12);
    b.CallImport("RuntimeInit");
    b.LoadString(Reg::RDI, path);
    b.MovImm(Reg::RSI, 0);
    b.CallImport("RuntimeGetFolderItem");
    b.MovReg(Reg::RBX, Reg::RAX);
    b.MovReg(Reg::RDI, Reg::RBX);
    b.CallImport("FolderItemCreateTextFile");
    b.MovReg(Reg::R12, Reg::RAX);
    for (const char *line : {"first line", "second"}) {
        b.MovReg(Reg::RDI, Reg::R12);
        b.LoadString(Reg::RSI, line);
        b.CallImport("TextOutputStreamWriteLine");
    }
    b.MovReg(Reg::RDI, Reg::R12);
    b.CallImport("TextOutputStreamClose");
    b.MovReg(Reg::RDI, Reg::R12);
    b.CallImport("RuntimeUnlockObject");
    b.MovReg(Reg::RDI, Reg::RBX);
    b.CallImport("FolderItemOpenTextFile");
    b.MovReg(Reg::R12, Reg::RAX);
    for (int i = 0; i < 2; ++i) {
        b.MovReg(Reg::RDI, Reg::R12);
        b.MovImm(Reg::RSI, 0);
        b.CallImport("TextInputStreamReadLine");
        b.PutsString(Reg::RAX);
    }
    b.CallImport("RuntimeExit");
    b.Pop(Reg::R12);
    b.Pop(Reg::RBX);
    b.Epilogue();
    test::RunResult r = test::RunAppended(b.Build());
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, "first line\nsecond\n");
    std::ifstream in(path);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in), {}), "first line\nsecond\n");
}

} // namespace
} // namespace kelp
