// A child inserts and commits in a loop and is killed at random moments;
// after each kill the file opens and holds every row whose commit returned.
#include "database/storage.h"

#include "db_test_util.h"

#include <gtest/gtest.h>

#include <csignal>
#include <random>
#include <sys/wait.h>
#include <unistd.h>

using namespace kelp::db;

namespace {

constexpr int kRowsPerCommit = 3;

[[noreturn]] void InsertUntilKilled(const std::string &path, int64_t next, int report) {
    Storage db;
    if (!db.Open(path))
        _exit(3);
    Table *table = db.FindTable("t");
    for (;; next += kRowsPerCommit) {
        for (int i = 0; i < kRowsPerCommit; ++i) {
            Row row;
            FieldValue key, text;
            key.type = kInteger;
            key.integer = next + i;
            text.type = kText;
            text.bytes.assign(size_t(100 + (next + i) * 37 % 900), char('a' + (next + i) % 26));
            row.Set(0, key);
            row.Set(1, text);
            if (!db.InsertRow(*table, row))
                _exit(4);
        }
        if (!db.Commit())
            _exit(5);
        int64_t done = next + kRowsPerCommit;
        if (write(report, &done, sizeof done) != sizeof done)
            _exit(6);
    }
}

TEST(DatabaseCrash, CommittedRowsSurviveKills) {
    TempFolder folder;
    std::string path = folder.File("crash.db");
    {
        Storage db;
        ASSERT_TRUE(db.Create(path));
        Column k, v;
        k.name = "k", k.type = kInteger, k.primary = 1;
        v.name = "v", v.type = kText;
        ASSERT_TRUE(db.CreateTable("t", {k, v}) && db.Close());
    }
    std::mt19937 rnd(2024);
    int64_t rows = 0;
    int killedInCommit = 0;
    for (int kill = 0; kill < 50; ++kill) {
        int fds[2];
        ASSERT_EQ(pipe(fds), 0);
        pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            close(fds[0]);
            InsertUntilKilled(path, rows, fds[1]);
        }
        close(fds[1]);
        usleep(useconds_t(5000 + rnd() % 60000));
        ::kill(child, SIGKILL);
        int status = 0;
        waitpid(child, &status, 0);
        ASSERT_TRUE(WIFSIGNALED(status)) << "child ended by itself: " << WEXITSTATUS(status);
        int64_t committed = rows, done;
        while (read(fds[0], &done, sizeof done) == sizeof done)
            committed = done;
        close(fds[0]);

        Storage db;
        ASSERT_TRUE(db.Open(path)) << "after kill " << kill << ": " << db.LastError().message;
        TreeCursor cursor(*db.FindTable("t")->tree);
        Error &error = db.LastError();
        Row row;
        int64_t expect = 0;
        for (bool more = cursor.First(error); more; more = cursor.Next(error), ++expect) {
            ASSERT_TRUE(DecodeRow(cursor.Record(), cursor.Length(), row, error));
            ASSERT_EQ(row.Find(0)->integer, expect) << "after kill " << kill;
            ASSERT_EQ(row.Find(1)->bytes.size(), size_t(100 + expect * 37 % 900));
        }
        ASSERT_FALSE(error.Failed()) << error.message;
        // Every reported commit is there; at most the one being committed more.
        ASSERT_GE(expect, committed) << "after kill " << kill;
        ASSERT_LE(expect, committed + kRowsPerCommit);
        killedInCommit += expect > committed;
        rows = expect;
        ASSERT_TRUE(db.Close());
    }
    EXPECT_GT(rows, 30); // the kills fell on a tree that had split (about 15 rows a page)
    RecordProperty("KilledInsideCommit", killedInCommit);
}

} // namespace
