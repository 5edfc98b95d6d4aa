// The sumbrook program's print modes, run as a user runs them: without a
// display, reading its standard output and error and its exit status.
#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <poll.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

struct ProgramRun {
    int status = -1; // exit status, or -1 if it didn't end in time
    std::string out, err;
};

std::string ReadAll(int fd) {
    std::string s;
    char buf[4096];
    for (;;) {
        const ssize_t n = read(fd, buf, sizeof buf);
        if (n <= 0)
            break;
        s.append(buf, static_cast<size_t>(n));
    }
    return s;
}

// Runs sumbrook with the given arguments and no DISPLAY; kills it if it has
// not ended after 60 seconds (a hang is a failure, not a wait).
ProgramRun Sumbrook(const std::vector<std::string> &args) {
    const std::string program = std::string(KELP_BIN_DIR) + "/sumbrook";
    char outName[] = "/tmp/drill_out_XXXXXX", errName[] = "/tmp/drill_err_XXXXXX";
    const int outFd = mkstemp(outName), errFd = mkstemp(errName);
    ProgramRun run;
    const pid_t pid = fork();
    if (pid == 0) {
        dup2(outFd, 1);
        dup2(errFd, 2);
        unsetenv("DISPLAY");
        std::vector<char *> argv;
        argv.push_back(const_cast<char *>(program.c_str()));
        for (const auto &a : args)
            argv.push_back(const_cast<char *>(a.c_str()));
        argv.push_back(nullptr);
        execv(program.c_str(), argv.data());
        _exit(127);
    }
    int status = 0;
    bool ended = false;
    for (int i = 0; i < 600 && !ended; ++i) {
        if (waitpid(pid, &status, WNOHANG) == pid)
            ended = true;
        else
            usleep(100000);
    }
    if (!ended) {
        kill(pid, SIGKILL);
        waitpid(pid, &status, 0);
    } else if (WIFEXITED(status)) {
        run.status = WEXITSTATUS(status);
    } else {
        run.status = 128 + WTERMSIG(status);
    }
    lseek(outFd, 0, SEEK_SET);
    lseek(errFd, 0, SEEK_SET);
    run.out = ReadAll(outFd);
    run.err = ReadAll(errFd);
    close(outFd);
    close(errFd);
    unlink(outName);
    unlink(errName);
    return run;
}

std::vector<std::string> Lines(const std::string &s) {
    std::vector<std::string> lines;
    size_t start = 0;
    for (size_t i = 0; i < s.size(); ++i) {
        if (s[i] == '\n') {
            lines.push_back(s.substr(start, i - start));
            start = i + 1;
        }
    }
    if (start < s.size())
        lines.push_back(s.substr(start));
    return lines;
}

// The whole number behind "key": in a line.
long Field(const std::string &line, const std::string &key) {
    const auto at = line.find("\"" + key + "\": ");
    if (at == std::string::npos)
        return -1000;
    return std::strtol(line.c_str() + at + key.size() + 4, nullptr, 10);
}

TEST(PrintModes, RoundPrintsOneObjectPerQuestionWithinTheMode) {
    const ProgramRun r =
        Sumbrook({"--print-round", "--mode", "2", "--length", "25", "--seed", "17"});
    ASSERT_EQ(r.status, 0) << r.err;
    const auto lines = Lines(r.out);
    ASSERT_EQ(lines.size(), 25u) << r.out;
    std::vector<long> numbers;
    for (const auto &line : lines) {
        ASSERT_EQ(line.rfind("{\"number\": ", 0), 0u) << line;
        ASSERT_EQ(line.back(), '}');
        const long n = Field(line, "number");
        EXPECT_GE(n, 51);
        EXPECT_LE(n, 87);
        const long randomizer = Field(line, "randomizer");
        EXPECT_GE(randomizer, 1);
        EXPECT_LE(randomizer, 3);
        const long correct = Field(line, "correct");
        EXPECT_GE(correct, 1);
        EXPECT_LE(correct, 10);
        for (const char *key : {"\"text\": \"", "\"tip\": \"", "\"answers\": [\""})
            EXPECT_NE(line.find(key), std::string::npos) << key;
        for (long seen : numbers)
            EXPECT_NE(seen, n);
        numbers.push_back(n);
    }
}

TEST(PrintModes, SameSeedSameRoundOtherSeedOtherRound) {
    const ProgramRun a =
        Sumbrook({"--print-round", "--mode", "3", "--length", "10", "--seed", "5"});
    const ProgramRun b =
        Sumbrook({"--print-round", "--mode", "3", "--length", "10", "--seed", "5"});
    const ProgramRun c =
        Sumbrook({"--print-round", "--mode", "3", "--length", "10", "--seed", "6"});
    ASSERT_EQ(a.status, 0);
    EXPECT_EQ(a.out, b.out);
    EXPECT_NE(a.out, c.out);
    // Seeds that mask to the same state give the same round.
    const ProgramRun d =
        Sumbrook({"--print-round", "--mode", "3", "--length", "10", "--seed", "2147483653"});
    EXPECT_EQ(a.out, d.out);
}

TEST(PrintModes, ProblemWithGivenArrangementEscapesLineBreaks) {
    // The corrected edition by default, the classic one with --classic.
    const std::pair<const char *, const char *> editions[] = {
        {nullptr, "in the following list?\\r\\n"},
        {"--classic", "in the following list:\\r\\n"},
    };
    for (const auto &[option, question] : editions) {
        std::vector<std::string> args = {"--print-problem", "15", "--randomizer", "2",
                                         "--seed",          "9"};
        if (option)
            args.insert(args.begin(), option);
        const ProgramRun r = Sumbrook(args);
        ASSERT_EQ(r.status, 0) << r.err;
        const auto lines = Lines(r.out);
        ASSERT_EQ(lines.size(), 1u);
        const std::string &line = lines[0];
        EXPECT_EQ(Field(line, "number"), 15);
        EXPECT_EQ(Field(line, "randomizer"), 2);
        EXPECT_EQ(Field(line, "correct"), 8);
        EXPECT_NE(line.find("\"text\": \"What is the total of the first two numbers " +
                            std::string(question)),
                  std::string::npos)
            << line;
        EXPECT_EQ(line.find('\r'), std::string::npos);
        EXPECT_NE(line.find("\"tip\": \"addition\""), std::string::npos);
    }
}

TEST(PrintModes, ProblemWithoutArrangementDrawsOne) {
    bool seen[4] = {false, false, false, false};
    for (int seed = 1; seed <= 12; ++seed) {
        const ProgramRun r = Sumbrook({"--print-problem", "29", "--seed", std::to_string(seed)});
        ASSERT_EQ(r.status, 0) << r.err;
        const long randomizer = Field(r.out, "randomizer");
        ASSERT_GE(randomizer, 1);
        ASSERT_LE(randomizer, 3);
        seen[randomizer] = true;
        const long correct = Field(r.out, "correct");
        EXPECT_EQ(correct, randomizer == 1 ? 1 : randomizer == 2 ? 2 : 7);
    }
    EXPECT_TRUE(seen[1] && seen[2] && seen[3]);
}

TEST(PrintModes, BadArgumentsGiveOneLineErrorAndFailure) {
    const std::vector<std::vector<std::string>> bad = {
        {"--print-round", "--mode", "4", "--length", "5"},
        {"--print-round", "--mode", "1", "--length", "0"},
        {"--print-round", "--mode", "2", "--length", "38"},
        {"--print-round", "--mode", "1", "--length", "51"},
        {"--print-round", "--mode", "1"},
        {"--print-round", "--length", "5"},
        {"--print-problem", "88"},
        {"--print-problem", "0"},
        {"--print-problem"},
        {"--print-problem", "12", "--randomizer", "4"},
        {"--print-round", "--mode", "1", "--length", "5", "--seed", "abc"},
        {"--print-round", "--mode", "1", "--length", "5", "--seed", "-3"},
        {"--print-round", "--mode", "1", "--length", "5", "--seed"},
        {"--print-problem", "12", "--seed", "99999999999"},
        {"--frobnicate"},
    };
    for (const auto &args : bad) {
        const ProgramRun r = Sumbrook(args);
        std::string joined;
        for (const auto &a : args)
            joined += a + " ";
        EXPECT_NE(r.status, 0) << joined;
        EXPECT_NE(r.status, -1) << "hung: " << joined;
        EXPECT_LT(r.status, 128) << "crashed: " << joined;
        EXPECT_TRUE(r.out.empty()) << joined;
        const auto errLines = Lines(r.err);
        ASSERT_FALSE(errLines.empty()) << joined;
        EXPECT_NE(errLines.back().find("sumbrook: "), std::string::npos) << joined;
    }
}

TEST(PrintModes, WithoutSeedTheClockSeedsTheDraws) {
    // An unseeded run seeds from time(): it must print exactly what a run
    // seeded with the clock's second gives.
    const long before = static_cast<long>(time(nullptr));
    const ProgramRun clock = Sumbrook({"--print-round", "--mode", "3", "--length", "5"});
    const long after = static_cast<long>(time(nullptr));
    ASSERT_EQ(clock.status, 0) << clock.err;
    bool matched = false;
    for (long t = before; t <= after && !matched; ++t) {
        const ProgramRun seeded = Sumbrook(
            {"--print-round", "--mode", "3", "--length", "5", "--seed", std::to_string(t)});
        matched = seeded.out == clock.out;
    }
    EXPECT_TRUE(matched) << clock.out;
}

TEST(PrintModes, LongestRoundsOfEachModeEnd) {
    const ProgramRun a =
        Sumbrook({"--print-round", "--mode", "1", "--length", "50", "--seed", "1"});
    ASSERT_EQ(a.status, 0) << a.err;
    EXPECT_EQ(Lines(a.out).size(), 50u);
    const ProgramRun b =
        Sumbrook({"--print-round", "--mode", "3", "--length", "87", "--seed", "2"});
    ASSERT_EQ(b.status, 0) << b.err;
    EXPECT_EQ(Lines(b.out).size(), 87u);
}

} // namespace
