#pragma once
// The database's one failure channel: operations answer false and leave a
// code and a text here, for ErrorCode and ErrorMessage.  Nothing throws.
#include <cstdint>
#include <string>

namespace kelp::db {

enum ErrorCode : int32_t {
    kNoError = 0,
    kParseError = 200,
    kSyntaxError = 201,
    kInvalidTable = 202,
    kValidationError = 203,
    kAmbiguousColumn = 205,
    kUnknownColumn = 206,
    kMismatch = 208,
    kTableExists = 2000,
    kUnsupportedType = 2002,
    kRowRejected = 2003,
    kBlobWriteFailed = 2004,
    kPrimaryKeyViolation = 2005,
    kDataTooLong = 2006,
    kDropTable = 2007,
    kDropColumn = 2008,
    // Not in the table the messages come from: a file that cannot be read,
    // written or trusted.  One code so that a caller can tell it apart from
    // a refused statement.
    kFileError = 2009,
};

struct Error {
    int32_t code = kNoError;
    std::string message;

    // Always false, so that a failing path can `return error.Set(...)`.
    bool Set(int32_t newCode, std::string text) {
        code = newCode;
        message = std::move(text);
        return false;
    }
    bool Damaged(const std::string &what) {
        return Set(kFileError, "The database file is damaged: " + what);
    }
    void Clear() {
        code = kNoError;
        message.clear();
    }
    bool Failed() const { return code != kNoError; }
};

} // namespace kelp::db
