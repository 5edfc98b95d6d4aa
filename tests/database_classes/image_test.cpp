// Real images on the runtime program: one makes a database file, inserts,
// selects and prints a field of the record set; one opens the database it
// carries as a "DBAS" resource, changes its private copy and reads it back.
#include "base/bytes.h"
#include "support/class_kit.h"
#include "support/image_builder.h"

#include "kelp/kelp.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace kelp::test {
namespace {

using Reg = kelp::test::Reg;

// rdi = object in r, rsi = literal, then the call; the result is in rax.
void CallWithText(ImageBuilder &b, Reg object, const char *function, const std::string &text) {
    b.MovReg(Reg::RDI, object);
    b.LoadString(Reg::RSI, text);
    b.CallImport(function);
}

// Prints field 1 of each row of `select` on the database in r12.
void PrintRows(ImageBuilder &b, const std::string &select) {
    CallWithText(b, Reg::R12, "databaseSQLSelect", select);
    b.MovReg(Reg::R13, Reg::RAX);
    for (int row = 0; row < 2; ++row) {
        b.MovReg(Reg::RDI, Reg::R13);
        b.MovImm(Reg::RSI, 1);
        b.CallImport("cursorGetFieldByIndex");
        b.MovReg(Reg::R14, Reg::RAX);
        b.MovReg(Reg::RDI, Reg::R14);
        b.MovImm(Reg::RSI, 0);
        b.CallImport("cursorFieldStringValueGetter");
        b.PutsString(Reg::RAX);
        b.MovReg(Reg::RDI, Reg::R14);
        b.CallImport("RuntimeUnlockObject");
        b.MovReg(Reg::RDI, Reg::R13);
        b.CallImport("cursorMoveNext");
    }
    b.MovReg(Reg::RDI, Reg::R13);
    b.CallImport("RuntimeUnlockObject");
}

// Opens the database (into r12), runs `statements`, prints `select`.
std::string RunImage(ImageBuilder &b, const std::vector<std::string> &statements,
                     const std::string &select) {
    for (const std::string &s : statements)
        CallWithText(b, Reg::R12, "databaseSQLExecute", s);
    PrintRows(b, select);
    b.MovReg(Reg::RDI, Reg::R12);
    b.CallImport("RuntimeUnlockObject");
    b.CallImport("RuntimeExit");
    for (Reg r : {Reg::R15, Reg::R15, Reg::R14, Reg::R13, Reg::R12, Reg::RBX})
        b.Pop(r);
    b.Epilogue();
    RunResult result = RunAppended(b.Build());
    EXPECT_EQ(result.status, 0) << result.err;
    return result.out;
}

void Start(ImageBuilder &b) {
    b.Prologue();
    for (Reg r : {Reg::RBX, Reg::R12, Reg::R13, Reg::R14, Reg::R15, Reg::R15})
        b.Push(r);
}

class DatabaseImage : public ::testing::Test {
protected:
    void SetUp() override {
        char name[] = "/tmp/kelp-dbimage-XXXXXX";
        mFolder = mkdtemp(name);
    }
    void TearDown() override { std::filesystem::remove_all(mFolder); }
    std::string mFolder;
};

TEST_F(DatabaseImage, CreatesInsertsSelectsAndReadsARecordSet) {
    const std::string path = mFolder + "/made.kdb";
    ImageBuilder b;
    Start(b);
    b.LoadString(Reg::RDI, path);
    b.MovImm(Reg::RSI, 0);
    b.CallImport("RuntimeGetFolderItem");
    b.MovReg(Reg::RBX, Reg::RAX);
    b.MovReg(Reg::RDI, Reg::RBX);
    b.CallImport("newKELPDatabase");
    b.MovReg(Reg::R12, Reg::RAX);
    b.MovReg(Reg::RDI, Reg::RBX);
    b.CallImport("RuntimeUnlockObject");
    std::string out = RunImage(b,
                               {"create table kids (id integer, name varchar(20))",
                                "insert into kids (id, name) values (2, 'Mo')",
                                "insert into kids (id, name) values (1, 'Lu''s')", "commit"},
                               "select name from kids order by id");
    EXPECT_EQ(out, "Lu's\nMo\n");
    // The rows are in the file after the program ended.
    RuntimeObject *file = RuntimeGetFolderItem(Lit(path), 0);
    RuntimeObject *db = openKELPDatabase(file);
    ASSERT_NE(db, nullptr);
    RuntimeObject *rs = databaseSQLSelect(db, Lit("select count(*) from kids"));
    RuntimeObject *count = cursorGetFieldByIndex(rs, 1);
    EXPECT_EQ(cursorFieldIntegerValueGetter(count, 0), 2);
    for (RuntimeObject *o : {count, rs, db, file})
        RuntimeUnlockObject(o);
}

TEST_F(DatabaseImage, OpensTheDatabaseItCarriesAsAResource) {
    // A database made here, carried in the image under the file engine's name.
    const std::string path = mFolder + "/carried.kdb";
    RuntimeObject *file = RuntimeGetFolderItem(Lit(path), 0);
    RuntimeObject *db = newKELPDatabase(file);
    databaseSQLExecute(db, Lit("create table words (w varchar(10))"));
    databaseSQLExecute(db, Lit("insert into words (w) values ('carried')"));
    databaseClose(db);
    RuntimeUnlockObject(db);
    RuntimeUnlockObject(file);
    std::ifstream in(path, std::ios::binary);
    std::vector<uint8_t> bytes((std::istreambuf_iterator<char>(in)), {});
    const std::string name = "kelpdb";
    std::vector<uint8_t> resource(8 + name.size() + bytes.size());
    WriteU32(resource.data(), uint32_t(name.size()));
    std::copy(name.begin(), name.end(), resource.begin() + 4);
    WriteU32(resource.data() + 4 + name.size(), uint32_t(bytes.size()));
    std::copy(bytes.begin(), bytes.end(), resource.begin() + 8 + long(name.size()));

    ImageBuilder b;
    b.AddResource("DBAS", 128, resource);
    std::vector<uint8_t> notOurs = {1, 0, 0, 0, 'Z', 4, 0, 0, 0, 'Z', 'a', 'b', 'c'};
    b.AddResource("DBAS", 129, notOurs);
    Start(b);
    // A resource of another engine gives a Database that does not open:
    // its select is nil, and the program carries on.
    b.MovImm(Reg::RDI, 129);
    b.CallImport("RuntimeGetDatabaseFromResource");
    b.MovReg(Reg::R12, Reg::RAX);
    CallWithText(b, Reg::R12, "databaseSQLSelect", "select w from words");
    b.MovReg(Reg::RDI, Reg::RAX);
    b.CallImport("RuntimeUnlockObject");
    b.MovReg(Reg::RDI, Reg::R12);
    b.CallImport("RuntimeUnlockObject");
    b.MovImm(Reg::RDI, 128);
    b.CallImport("RuntimeGetDatabaseFromResource");
    b.MovReg(Reg::R12, Reg::RAX);
    // The private copy goes where TMPDIR says, and is gone when the program ends.
    const char *tmp = std::getenv("TMPDIR");
    const std::string previous = tmp ? tmp : "";
    setenv("TMPDIR", mFolder.c_str(), 1);
    EXPECT_EQ(RunImage(b, {"insert into words (w) values ('added')"}, "select w from words"),
              "carried\nadded\n");
    previous.empty() ? unsetenv("TMPDIR") : setenv("TMPDIR", previous.c_str(), 1);
    std::vector<std::string> left;
    for (const auto &entry : std::filesystem::directory_iterator(mFolder))
        left.push_back(entry.path().filename());
    EXPECT_EQ(left, std::vector<std::string>{"carried.kdb"});
}

} // namespace
} // namespace kelp::test
