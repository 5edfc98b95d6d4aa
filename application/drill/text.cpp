#include "drill/text.h"

namespace sumbrook {

Text::Text(const Text &other) : storage_(other.storage_) { RuntimeLockString(storage_); }

Text &Text::operator=(const Text &other) {
    // Lock first, so that assigning a text to itself is safe.
    RuntimeLockString(other.storage_);
    RuntimeUnlockString(storage_);
    storage_ = other.storage_;
    return *this;
}

Text &Text::operator=(Text &&other) noexcept {
    if (this != &other) {
        RuntimeUnlockString(storage_);
        storage_ = other.storage_;
        other.storage_ = nullptr;
    }
    return *this;
}

Text::~Text() { RuntimeUnlockString(storage_); }

Text Text::Borrow(stringStorage *borrowed) {
    RuntimeLockString(borrowed);
    return Adopt(borrowed);
}

std::string_view Text::View() const {
    if (storage_ == nullptr || storage_->buffer == nullptr || storage_->length <= 0) return {};
    return {reinterpret_cast<const char *>(storage_->buffer + 1),
            static_cast<std::size_t>(storage_->length)};
}

Text operator+(const Text &a, const Text &b) {
    return Text::Adopt(RuntimeAddString(a.storage_, b.storage_));
}

Text &Text::operator+=(const Text &b) {
    *this = *this + b;
    return *this;
}

bool SameText(const Text &a, const Text &b) {
    return RuntimeStringCompare(a.storage_, b.storage_) == 0;
}

Text Str(int32_t value) { return Text::Adopt(StringStr(static_cast<double>(value))); }

} // namespace sumbrook
