#include "drill/text.h"

namespace sumbrook {

Text::Text(const Text &other) : mStorage(other.mStorage) { RuntimeLockString(mStorage); }

Text &Text::operator=(const Text &other) {
    // Lock first, so that assigning a text to itself is safe.
    RuntimeLockString(other.mStorage);
    RuntimeUnlockString(mStorage);
    mStorage = other.mStorage;
    return *this;
}

Text &Text::operator=(Text &&other) noexcept {
    if (this != &other) {
        RuntimeUnlockString(mStorage);
        mStorage = other.mStorage;
        other.mStorage = nullptr;
    }
    return *this;
}

Text::~Text() { RuntimeUnlockString(mStorage); }

Text Text::Borrow(stringStorage *borrowed) {
    RuntimeLockString(borrowed);
    return Adopt(borrowed);
}

std::string_view Text::View() const {
    if (mStorage == nullptr || mStorage->buffer == nullptr || mStorage->length <= 0)
        return {};
    return {reinterpret_cast<const char *>(mStorage->buffer + 1),
            static_cast<std::size_t>(mStorage->length)};
}

Text operator+(const Text &a, const Text &b) {
    return Text::Adopt(RuntimeAddString(a.mStorage, b.mStorage));
}

Text &Text::operator+=(const Text &b) {
    *this = *this + b;
    return *this;
}

bool SameText(const Text &a, const Text &b) {
    return RuntimeStringCompare(a.mStorage, b.mStorage) == 0;
}

Text Str(int32_t value) {
    // A number's text never changes, and the bank prints the same small
    // numbers over and over: each one in this range is made once by the
    // runtime's Str and then shared.
    constexpr int32_t kLowest = -1000, kHighest = 9999;
    if (value < kLowest || value > kHighest)
        return Text::Adopt(StringStr(static_cast<double>(value)));
    static stringStorage *made[kHighest - kLowest + 1] = {};
    stringStorage *&slot = made[value - kLowest];
    if (slot == nullptr)
        slot = StringStr(static_cast<double>(value)); // kept for good
    return Text::Borrow(slot);
}

} // namespace sumbrook
