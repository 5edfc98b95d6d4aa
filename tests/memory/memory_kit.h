// Helpers of the memory tests: blocks held for the length of a test, and the
// exception a call raised.
#pragma once
#include "kelp/exceptions.h"
#include "kelp/memory.h"
#include "kelp/objects.h"
#include "strings/kstring.h"

#include <cstdint>
#include <string>
#include <vector>

namespace memtest {

// Owns one reference to an object.
class Held {
public:
    explicit Held(RuntimeObject *object = nullptr) : mObject(object) {}
    ~Held() { RuntimeUnlockObject(mObject); }
    Held(const Held &) = delete;
    Held &operator=(const Held &) = delete;
    RuntimeObject *get() const { return mObject; }
    MemoryBlockObject *block() const { return reinterpret_cast<MemoryBlockObject *>(mObject); }
    std::vector<uint8_t> bytes() const {
        auto *b = block();
        return b && b->mData ? std::vector<uint8_t>(b->mData, b->mData + b->mSize)
                             : std::vector<uint8_t>();
    }

private:
    RuntimeObject *mObject;
};

struct Raise {
    std::string className, message;
};

// Runs `call` inside a handler region and tells what it raised ("" for none).
template <typename Call> Raise Raised(Call call) {
    RuntimeEnterHandlerRegion();
    call();
    RuntimeObject *e = RuntimeTakeException();
    RuntimeLeaveHandlerRegion();
    Raise r;
    if (!e)
        return r;
    r.className = std::string(kelp::string::Wrap(e->klass->name).View());
    r.message = std::string(
        kelp::string::Wrap(reinterpret_cast<RuntimeExceptionObject *>(e)->message).View());
    RuntimeUnlockObject(e);
    return r;
}

// Takes over a string the runtime handed back, and answers its bytes.
inline std::string Take(KelpString s) { return std::string(kelp::string::Adopt(s).View()); }

} // namespace memtest
