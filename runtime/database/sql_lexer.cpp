#include "database/sql_lexer.h"

namespace kelp::db {

namespace {

char Lower(char c) { return c >= 'A' && c <= 'Z' ? char(c + 32) : c; }
bool IsLetter(unsigned char c) { return (c | 32) >= 'a' && (c | 32) <= 'z'; }
bool IsDigit(unsigned char c) { return c >= '0' && c <= '9'; }
bool EndsWord(char c) {
    return uint8_t(c) < 33 || c == '(' || c == ')' || c == ',' || c == '<' || c == '>' ||
           c == '=' || c == '.';
}

} // namespace

bool SameWord(std::string_view a, std::string_view b) {
    if (a.size() != b.size())
        return false;
    for (size_t i = 0; i < a.size(); ++i)
        if (Lower(a[i]) != Lower(b[i]))
            return false;
    return true;
}

bool Token::Is(std::string_view keyword) const {
    return (kind == kWord || kind == kSymbol) && SameWord(text, keyword);
}

bool Token::IsIdentifier() const {
    if ((kind != kWord && kind != kQuoted) || text.empty())
        return false;
    auto first = static_cast<unsigned char>(text[0]);
    if (!IsLetter(first) && first <= 128)
        return false;
    for (unsigned char c : text)
        if (!IsLetter(c) && !IsDigit(c) && c != '#' && c != '_' && c < 129 &&
            !(c == ' ' && kind == kQuoted))
            return false;
    return true;
}

Lexer::Lexer(std::string_view text) : mText(text) {
    while (!mText.empty() && (uint8_t(mText.back()) < 33 || mText.back() == ';'))
        mText.remove_suffix(1);
}

Token Lexer::Peek() {
    Token t = Next();
    PutBack(t);
    return t;
}

Token Lexer::Next() {
    if (mHasBack) {
        mHasBack = false;
        return std::move(mBack);
    }
    while (mAt < mText.size() && uint8_t(mText[mAt]) < 33)
        ++mAt;
    Token t;
    if (mAt >= mText.size())
        return t;
    char c = mText[mAt];
    auto take = [&](Token::Kind kind, size_t length) {
        t.kind = kind;
        t.text.assign(mText.substr(mAt, length));
        mAt += length;
        return t;
    };
    if (c == '<' || c == '>') {
        char d = mAt + 1 < mText.size() ? mText[mAt + 1] : 0;
        return take(Token::kSymbol, d == '=' || (c == '<' && d == '>') ? 2 : 1);
    }
    if (c == '(' || c == ')' || c == ',' || c == '.' || c == '=')
        return take(Token::kSymbol, 1);
    if (c == '\'' || c == '"') {
        // Doubled quotes stand for one; an unclosed string runs to the end.
        t.kind = Token::kString;
        t.text = c;
        for (++mAt; mAt < mText.size(); ++mAt) {
            if (mText[mAt] == c) {
                if (mAt + 1 < mText.size() && mText[mAt + 1] == c) {
                    t.text += c;
                    ++mAt;
                    continue;
                }
                ++mAt;
                break;
            }
            t.text += mText[mAt];
        }
        t.text += c;
        return t;
    }
    if (c == '[') {
        size_t close = mText.find(']', mAt);
        size_t end = close == std::string_view::npos ? mText.size() : close;
        t.kind = Token::kQuoted;
        t.text.assign(mText.substr(mAt + 1, end - mAt - 1));
        mAt = close == std::string_view::npos ? end : end + 1;
        return t;
    }
    if (IsDigit(uint8_t(c)) || c == '-') {
        size_t end = mAt + 1;
        while (end < mText.size() && (IsDigit(uint8_t(mText[end])) || mText[end] == '.'))
            ++end;
        return take(Token::kNumber, end - mAt);
    }
    size_t end = mAt;
    while (end < mText.size() && !EndsWord(mText[end]))
        ++end;
    return take(Token::kWord, end - mAt);
}

std::string Unquote(const std::string &token) {
    return token.size() >= 2 ? token.substr(1, token.size() - 2) : std::string();
}

} // namespace kelp::db
