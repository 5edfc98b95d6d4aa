#pragma once
// Tokens off the front of a statement's text.  A token may be put back.
// Keywords are words compared without regard to case.
#include <cstddef>
#include <string>
#include <string_view>

namespace kelp::db {

struct Token {
    enum Kind { kEnd, kSymbol, kString, kQuoted, kNumber, kWord } kind = kEnd;
    std::string text; // a string keeps its quotes; a bracketed name loses its brackets
    bool Is(std::string_view keyword) const; // a word or symbol, case ignored
    bool IsIdentifier() const;
};

class Lexer {
public:
    // Trailing blanks and semicolons are dropped first.
    explicit Lexer(std::string_view text);
    Token Next();
    Token Peek();
    void PutBack(Token token) {
        mBack = std::move(token);
        mHasBack = true;
    }

private:
    std::string_view mText;
    size_t mAt = 0;
    Token mBack;
    bool mHasBack = false;
};

// The text of a string token without its quotes.
std::string Unquote(const std::string &token);
bool SameWord(std::string_view a, std::string_view b);

} // namespace kelp::db
