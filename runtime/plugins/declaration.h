#pragma once
// Declarations as plug-ins write them: "Name(ByRef a As Integer, b() As
// String = "x") As Boolean", scanned with the language's keyword table.
// The parser only ever reads inside the text it is given.
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace kelp::plugins {

// The language scanner's keywords, codes from 257 upward in table order
// (one entry is empty and never matches); 0 for a word that isn't one.
int32_t KeywordCode(std::string_view word);
inline constexpr int32_t kFirstKeywordCode = 257;
inline constexpr int32_t kKeywordCount = 86;

// Method kinds: an extension of its first parameter's type, a setter form,
// both.
enum MethodKind : int32_t { kPlainMethod = 0, kExtends = 1, kAssigns = 2, kExtendsAssigns = 3 };

inline constexpr int32_t kMaxParameters = 32;

struct ParsedParameter {
    std::string name;
    std::string type; // "Integer", "Boolean", "Color", "String", "Double", "Single", "Object"
                      // or a class name
    bool byRef = false;
    bool hasDefault = false;
    bool isArray = false;
};

struct ParsedDeclaration {
    std::string name;
    std::vector<ParsedParameter> parameters;
    std::string resultType; // empty for none
    bool resultArray = false;
    int32_t kind = kPlainMethod;
};

// Whether a type name is known: the value types are; any other name is
// asked of `isClass`.
using ClassNameCheck = std::function<bool(std::string_view name)>;

// Parses `text`; false (and `out` unspecified) when it breaks the grammar,
// names an unknown type or leaves a type out.
bool ParseDeclaration(std::string_view text, const ClassNameCheck &isClass, ParsedDeclaration &out);

// The six value types by their canonical spelling, or "" for a class name.
std::string_view ValueTypeName(std::string_view name);

} // namespace kelp::plugins
