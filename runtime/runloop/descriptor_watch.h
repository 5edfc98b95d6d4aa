#pragma once
// Wakes the toolkit's wait when a descriptor that a subsystem services is
// ready.  The owner keeps doing its own reads and writes from its step of
// the loop; the watch only makes sure that an idle loop does not sleep
// through data that has arrived.
//
// A watch is one-shot: once the toolkit has seen the descriptor ready, it
// leaves the toolkit's wait until the owner calls Rearm (or SetInterest)
// after servicing it.  So an owner that has nothing to do with a ready
// descriptor (a full receive queue, a nested toolkit loop that does not
// service sockets) costs no processor: the wait does not wake for it again
// until the owner asks.
#include <cstdint>

typedef struct _GSource GSource;
typedef struct _GPollFD GPollFD;

namespace kelp {

enum WatchInterest : unsigned {
    kWatchNone = 0,
    kWatchRead = 1u << 0,  // readable, or the peer hung up
    kWatchWrite = 1u << 1, // writable, or a connect finished
};

class DescriptorWatch {
public:
    // Starts watching `fd` on the toolkit's main context.  An fd below 0,
    // or interest kWatchNone, watches nothing until SetInterest says so.
    DescriptorWatch(int fd, unsigned interest);
    ~DescriptorWatch();
    DescriptorWatch(const DescriptorWatch &) = delete;
    DescriptorWatch &operator=(const DescriptorWatch &) = delete;

    // Changes what wakes the wait, and rearms.  kWatchNone takes the
    // descriptor out of the wait entirely, so even a hang-up does not wake it.
    void SetInterest(unsigned interest);
    unsigned Interest() const { return mInterest; }

    // Watches another descriptor (or none, below 0) with the same interest.
    void SetDescriptor(int fd);

    // Puts the descriptor back into the wait after the owner serviced it.
    void Rearm();

    // What the toolkit saw since the last call (kWatch... bits), cleared by
    // the call.  A hang-up or error counts as both read and write readiness.
    unsigned TakeReady();

    int Descriptor() const { return mFd; }
    // True while the descriptor is in the toolkit's wait.
    bool Armed() const { return mInWait; }

private:
    friend struct DescriptorWatchSource;
    void UpdateWait();
    void Fired(unsigned short revents);

    GSource *mSource = nullptr; // attached to the default main context
    int mFd = -1;
    unsigned mInterest = kWatchNone;
    unsigned mReady = 0;      // seen since the last TakeReady
    bool mFired = false;      // seen, and not rearmed since
    bool mInWait = false;     // the poll record is added to the source
    GPollFD *mPoll = nullptr; // the record in the wait, owned
};

// Live watches, for tests and for the idle benchmark.
int DescriptorWatchCount();

} // namespace kelp
