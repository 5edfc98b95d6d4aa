// The declaration scanner and parser.  Tokens are words (letters, digits,
// "_", a leading "#"), single punctuation, numbers and quoted strings;
// blanks and tabs separate them.  Keywords compare without regard to case.
#include "plugins/declaration.h"

#include "base/ascii.h"

#include <array>
#include <cctype>

namespace kelp::plugins {
namespace {

constexpr std::array<const char *, kKeywordCount> kKeywords = {
    "If",      "Sub",     "Function",  "Until",  "As",        "Integer",    "End",
    "Mod",     "Dim",     "Then",      "Else",   "While",     "Wend",       "String",
    "Raise",   "For",     "Exception", "Array",  "Of",        "Not",        "Single",
    "Double",  "GoTo",    "And",       "Or",     "Nil",       "Rem",        "Next",
    "ElseIf",  "To",      "True",      "False",  "ByRef",     "Boolean",    "New",
    "Select",  "Case",    "Return",    "Self",   "Do",        "Loop",       "Exit",
    "Redim",   "downto",  "step",      "color",  "isa",       "me",         "#pragma",
    "",        "ByVal",   "Optional",  "Const",  "#if",       "#else",      "#endif",
    "Declare", "Private", "Protected", "Class",  "Interface", "Implements", "Inherits",
    "Public",  "Shared",  "Namespace", "Module", "Static",    "Event",      "Handles",
    "Each",    "In",      "Catch",     "Try",    "Finally",   "Super",      "Lib",
    "Extends", "Assigns", "Call",      "Is",     "AddressOf", "Delegate",   "ParamArray",
    "#ElseIf", "Object",
};

enum class Tok { End, Word, Keyword, Punct, Number, Text, Bad };

struct Token {
    Tok kind = Tok::End;
    std::string_view text;
    int32_t code = 0; // keyword code
};

class Scanner {
public:
    explicit Scanner(std::string_view text) : mText(text) { Advance(); }
    const Token &Peek() const { return mToken; }
    Token Take() {
        Token t = mToken;
        Advance();
        return t;
    }
    bool TakeKeyword(std::string_view word) {
        if (mToken.kind != Tok::Keyword || !AsciiEqualNoCase(mToken.text, word))
            return false;
        Advance();
        return true;
    }
    bool TakePunct(char c) {
        if (mToken.kind != Tok::Punct || mToken.text[0] != c)
            return false;
        Advance();
        return true;
    }

private:
    static bool WordChar(char c) {
        return std::isalnum(static_cast<unsigned char>(c)) || c == '_' ||
               static_cast<unsigned char>(c) >= 0x80;
    }
    void Advance() {
        while (mAt < mText.size() && (mText[mAt] == ' ' || mText[mAt] == '\t'))
            ++mAt;
        mToken = Token{};
        if (mAt >= mText.size())
            return;
        const size_t start = mAt;
        const char c = mText[mAt];
        if (std::isdigit(static_cast<unsigned char>(c)) || c == '.' || c == '&') {
            ++mAt; // numbers, "&h1F" and ".5"
            while (mAt < mText.size() && (WordChar(mText[mAt]) || mText[mAt] == '.'))
                ++mAt;
            mToken = {Tok::Number, mText.substr(start, mAt - start)};
        } else if (WordChar(c) || c == '#') {
            ++mAt;
            while (mAt < mText.size() && WordChar(mText[mAt]))
                ++mAt;
            std::string_view word = mText.substr(start, mAt - start);
            int32_t code = KeywordCode(word);
            mToken = {code ? Tok::Keyword : Tok::Word, word, code};
        } else if (c == '"') {
            ++mAt;
            while (mAt < mText.size() && mText[mAt] != '"')
                ++mAt;
            if (mAt >= mText.size()) {
                mToken = {Tok::Bad, mText.substr(start)};
                return;
            }
            ++mAt;
            mToken = {Tok::Text, mText.substr(start, mAt - start)};
        } else {
            ++mAt;
            mToken = {Tok::Punct, mText.substr(start, 1)};
        }
    }

    std::string_view mText;
    size_t mAt = 0;
    Token mToken;
};

// A type: one of the value keywords, Object, or a class name.
bool TakeType(Scanner &s, const ClassNameCheck &isClass, std::string &out) {
    const Token t = s.Take();
    if (t.kind == Tok::Keyword) {
        std::string_view value = ValueTypeName(t.text);
        if (value.empty() && !AsciiEqualNoCase(t.text, "Object"))
            return false;
        out = value.empty() ? "Object" : std::string(value);
        return true;
    }
    if (t.kind != Tok::Word || !isClass || !isClass(t.text))
        return false;
    out = std::string(t.text);
    return true;
}

bool TakeParameter(Scanner &s, const ClassNameCheck &isClass, ParsedParameter &p,
                   uint32_t &qualifier) {
    qualifier = 0;
    if (s.TakeKeyword("ByVal"))
        qualifier = 1;
    else if (s.TakeKeyword("ByRef"))
        p.byRef = true;
    else if (s.TakeKeyword("Extends"))
        qualifier = kExtends;
    else if (s.TakeKeyword("Assigns"))
        qualifier = kAssigns;
    const Token name = s.Take();
    if (name.kind != Tok::Word)
        return false;
    p.name = std::string(name.text);
    if (s.TakePunct('(')) {
        if (!s.TakePunct(')'))
            return false;
        p.isArray = true;
    }
    if (!s.TakeKeyword("As") || !TakeType(s, isClass, p.type))
        return false;
    if (s.TakePunct('=')) {
        s.TakePunct('-');
        const Token value = s.Take();
        if (value.kind == Tok::End || value.kind == Tok::Bad || value.kind == Tok::Punct)
            return false;
        p.hasDefault = true;
    }
    return true;
}

} // namespace

int32_t KeywordCode(std::string_view word) {
    if (word.empty())
        return 0;
    for (size_t i = 0; i < kKeywords.size(); ++i)
        if (AsciiEqualNoCase(word, kKeywords[i]))
            return kFirstKeywordCode + static_cast<int32_t>(i);
    return 0;
}

std::string_view ValueTypeName(std::string_view name) {
    static constexpr std::string_view kValueTypes[] = {"Boolean", "Integer", "Color",
                                                       "String",  "Single",  "Double"};
    for (std::string_view v : kValueTypes)
        if (AsciiEqualNoCase(v, name))
            return v;
    return {};
}

bool ParseDeclaration(std::string_view text, const ClassNameCheck &isClass,
                      ParsedDeclaration &out) {
    out = ParsedDeclaration{};
    Scanner s(text);
    const Token name = s.Take();
    if (name.kind != Tok::Word)
        return false;
    out.name = std::string(name.text);
    bool extends = false, assigns = false;
    if (s.TakePunct('(') && !s.TakePunct(')')) {
        for (;;) {
            if (static_cast<int32_t>(out.parameters.size()) >= kMaxParameters)
                return false; // a 33rd parameter has no room in the record
            ParsedParameter p;
            uint32_t qualifier = 0;
            if (!TakeParameter(s, isClass, p, qualifier))
                return false;
            extends |= qualifier == kExtends && out.parameters.empty();
            out.parameters.push_back(std::move(p));
            if (s.TakePunct(')')) {
                assigns = qualifier == kAssigns;
                break;
            }
            if (!s.TakePunct(','))
                return false;
        }
    }
    if (s.TakeKeyword("As")) {
        if (!TakeType(s, isClass, out.resultType))
            return false;
        if (s.TakePunct('(')) {
            if (!s.TakePunct(')'))
                return false;
            out.resultArray = true;
        }
    }
    if (s.Peek().kind != Tok::End)
        return false;
    out.kind = (extends ? kExtends : 0) | (assigns ? kAssigns : 0);
    return true;
}

} // namespace kelp::plugins
