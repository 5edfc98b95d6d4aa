// Descriptor watches on real pipes and socket pairs: the toolkit's wait wakes
// for what the owner asked for, and not again until the owner rearms.
#include "runloop/descriptor_watch.h"

#include <glib.h>
#include <gtest/gtest.h>

#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <thread>

namespace kelp {
namespace {

struct Pair {
    int fds[2] = {-1, -1};
    Pair() { EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, fds), 0); }
    ~Pair() {
        for (int fd : fds)
            if (fd >= 0)
                close(fd);
    }
};

// Runs what the default context has ready without waiting, and answers
// what the watch saw.
unsigned Drain(DescriptorWatch &watch) {
    for (int i = 0; i < 20 && g_main_context_iteration(nullptr, FALSE); ++i) {}
    return watch.TakeReady();
}

TEST(DescriptorWatch, WakesForWhatWasAskedAndOnlyOnceUntilRearmed) {
    enum Peer { kIdle, kWrote, kHungUp };
    struct Case {
        const char *name;
        Peer peer;
        unsigned interest;
        unsigned first, beforeRearm, afterRearm;
    };
    const Case cases[] = {
        {"data waiting, read", kWrote, kWatchRead, kWatchRead, 0, kWatchRead},
        {"nothing waiting, read", kIdle, kWatchRead, 0, 0, 0},
        {"room to write, write", kIdle, kWatchWrite, kWatchWrite, 0, kWatchWrite},
        {"hang-up, read", kHungUp, kWatchRead, kWatchRead | kWatchWrite, 0,
         kWatchRead | kWatchWrite},
        {"hang-up, no interest", kHungUp, kWatchNone, 0, 0, 0},
        {"data waiting, no interest", kWrote, kWatchNone, 0, 0, 0},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        Pair pair;
        if (c.peer == kWrote) {
            ASSERT_EQ(write(pair.fds[1], "x", 1), 1);
        }
        if (c.peer == kHungUp) {
            close(pair.fds[1]);
            pair.fds[1] = -1;
        }
        DescriptorWatch watch(pair.fds[0], c.interest);
        EXPECT_EQ(Drain(watch), c.first);
        // The descriptor is still ready, but nobody serviced it.
        EXPECT_EQ(Drain(watch), c.beforeRearm);
        watch.Rearm();
        EXPECT_EQ(Drain(watch), c.afterRearm);
    }
}

TEST(DescriptorWatch, InterestAndDescriptorCanChange) {
    Pair a, b;
    ASSERT_EQ(write(b.fds[1], "y", 1), 1);
    DescriptorWatch watch(a.fds[0], kWatchRead);
    EXPECT_EQ(Drain(watch), 0u);
    watch.SetInterest(kWatchRead | kWatchWrite);
    EXPECT_EQ(Drain(watch), unsigned(kWatchWrite));
    watch.SetInterest(kWatchRead);
    watch.SetDescriptor(b.fds[0]);
    EXPECT_EQ(Drain(watch), unsigned(kWatchRead));
    watch.SetDescriptor(-1);
    EXPECT_FALSE(watch.Armed());
    EXPECT_EQ(Drain(watch), 0u);
}

TEST(DescriptorWatch, BlockedWaitWakesWhenDataArrives) {
    Pair pair;
    DescriptorWatch watch(pair.fds[0], kWatchRead);
    Drain(watch);
    // A backstop so that a broken watch fails instead of hanging.
    std::atomic<bool> backstop{false};
    guint timeout = g_timeout_add(
        5000,
        [](gpointer flag) -> gboolean {
            static_cast<std::atomic<bool> *>(flag)->store(true);
            return FALSE;
        },
        &backstop);
    std::thread peer([&] {
        g_usleep(20000);
        EXPECT_EQ(write(pair.fds[1], "z", 1), 1);
    });
    unsigned ready = 0;
    while (!ready && !backstop) {
        g_main_context_iteration(nullptr, TRUE);
        ready = watch.TakeReady();
    }
    peer.join();
    if (!backstop)
        g_source_remove(timeout);
    EXPECT_FALSE(backstop);
    EXPECT_EQ(ready, unsigned(kWatchRead));
}

} // namespace
} // namespace kelp
