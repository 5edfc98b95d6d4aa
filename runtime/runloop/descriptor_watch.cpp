#include "runloop/descriptor_watch.h"

#include "runloop/main_loop.h"

#include <glib.h>

namespace kelp {

// The source that carries one watch's poll record.  It never has a timeout
// of its own and its dispatch only notes what was seen: the owner does the
// work from its own step of the loop, in the loop's order, or from the
// service that a nested toolkit loop gets.
struct DescriptorWatchSource {
    GSource base;
    DescriptorWatch *owner;

    static gboolean Prepare(GSource *, gint *timeout) {
        *timeout = -1;
        return FALSE;
    }
    static gboolean Check(GSource *source) {
        DescriptorWatch *w = reinterpret_cast<DescriptorWatchSource *>(source)->owner;
        return w->mInWait &&
               (w->mPoll->revents & (w->mPoll->events | G_IO_HUP | G_IO_ERR | G_IO_NVAL)) != 0;
    }
    static gboolean Dispatch(GSource *source, GSourceFunc, gpointer) {
        DescriptorWatch *w = reinterpret_cast<DescriptorWatchSource *>(source)->owner;
        w->Fired(w->mPoll->revents);
        // Outside the loop's own iteration no pass follows to look at it.
        if (!InLoopOwnIteration())
            RequestDescriptorService();
        return G_SOURCE_CONTINUE;
    }
};

namespace {

GSourceFuncs gWatchFuncs = {DescriptorWatchSource::Prepare,
                            DescriptorWatchSource::Check,
                            DescriptorWatchSource::Dispatch,
                            nullptr,
                            nullptr,
                            nullptr};
int gLiveWatches = 0;

gushort EventsFor(unsigned interest) {
    gushort events = 0;
    if (interest & kWatchRead)
        events |= G_IO_IN | G_IO_PRI;
    if (interest & kWatchWrite)
        events |= G_IO_OUT;
    return events;
}

} // namespace

DescriptorWatch::DescriptorWatch(int fd, unsigned interest)
    : mFd(fd), mInterest(interest), mPoll(new GPollFD{fd, EventsFor(interest), 0}) {
    mSource = g_source_new(&gWatchFuncs, sizeof(DescriptorWatchSource));
    reinterpret_cast<DescriptorWatchSource *>(mSource)->owner = this;
    g_source_set_can_recurse(mSource, TRUE);
    g_source_attach(mSource, nullptr);
    ++gLiveWatches;
    UpdateWait();
}

DescriptorWatch::~DescriptorWatch() {
    g_source_destroy(mSource);
    g_source_unref(mSource);
    delete mPoll;
    --gLiveWatches;
}

void DescriptorWatch::SetInterest(unsigned interest) {
    mInterest = interest;
    mPoll->events = EventsFor(interest);
    mFired = false;
    UpdateWait();
}

void DescriptorWatch::SetDescriptor(int fd) {
    if (fd == mFd)
        return;
    if (mInWait) {
        g_source_remove_poll(mSource, mPoll);
        mInWait = false;
    }
    mFd = fd;
    mPoll->fd = fd;
    mFired = false;
    mReady = 0;
    UpdateWait();
}

void DescriptorWatch::Rearm() {
    mFired = false;
    UpdateWait();
}

unsigned DescriptorWatch::TakeReady() {
    unsigned ready = mReady;
    mReady = 0;
    return ready;
}

void DescriptorWatch::UpdateWait() {
    bool want = mFd >= 0 && mInterest != kWatchNone && !mFired;
    if (want == mInWait)
        return;
    if (want) {
        mPoll->revents = 0;
        g_source_add_poll(mSource, mPoll);
    } else {
        g_source_remove_poll(mSource, mPoll);
    }
    mInWait = want;
}

void DescriptorWatch::Fired(unsigned short revents) {
    if (revents & (G_IO_IN | G_IO_PRI))
        mReady |= kWatchRead;
    if (revents & G_IO_OUT)
        mReady |= kWatchWrite;
    if (revents & (G_IO_HUP | G_IO_ERR | G_IO_NVAL))
        mReady |= kWatchRead | kWatchWrite;
    // Out of the wait until the owner has looked: a ready descriptor that
    // nobody services must not keep waking the toolkit.
    mFired = true;
    UpdateWait();
}

int DescriptorWatchCount() { return gLiveWatches; }

} // namespace kelp
