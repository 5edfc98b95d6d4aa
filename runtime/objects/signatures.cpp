// Signature texts of method and property rows ("Item%o<MenuItem>%o<MenuItem>i4")
// and the declaration text shown in messages and the debugger.
#include "objects/definitions.h"
#include "objects/text.h"

#include "base/fatal_report.h"

namespace kelp {

const TypeRecord kTypeString{kTypeNamed, "String"};
const TypeRecord kTypeInteger{kTypeNamed, "Integer"};
const TypeRecord kTypeUInteger{kTypeNamed, "UInteger"};
const TypeRecord kTypeBoolean{kTypeNamed, "Boolean"};
const TypeRecord kTypeSingle{kTypeNamed, "Single"};
const TypeRecord kTypeDouble{kTypeNamed, "Double"};
const TypeRecord kTypeColor{kTypeNamed, "Color"};
const TypeRecord kTypePtr{kTypeNamed, "Ptr"};
const TypeRecord kTypeCString{kTypeNamed, "CString"};
const TypeRecord kTypePString{kTypeNamed, "PString"};
const TypeRecord kTypeWindowPtr{kTypeNamed, "WindowPtr"};
const TypeRecord kTypeClass{kTypeNamed, "Class"};

namespace {

std::string ClassNameOf(DefinitionAccessor accessor) {
    ObjectDefinition *definition = accessor ? accessor() : nullptr;
    return definition ? std::string(objtext::View(definition->className)) : std::string();
}

// A class known only while the program runs (a plug-in's) has a name and no
// accessor.
std::string ClassNameOf(const TypeRecord *type) {
    if (!type->objectClass && type->name)
        return type->name;
    return ClassNameOf(type->objectClass);
}

std::string DisplayTypeName(const TypeRecord *type) {
    if (!type)
        return "";
    switch (type->kind) {
    case kTypeArray: return DisplayTypeName(type->element);
    case kTypeObjectOf: return ClassNameOf(type);
    case kTypeClassRef: return "Class";
    default: return type->name ? type->name : "";
    }
}

} // namespace

std::string TypeCode(const TypeRecord *type) {
    if (!type)
        return "";
    switch (type->kind) {
    case kTypeArray: return "a" + std::to_string(type->dimensions) + TypeCode(type->element);
    case kTypeObjectOf: return "o<" + ClassNameOf(type) + ">";
    case kTypeClassRef: return "x";
    default: break;
    }
    static const struct {
        const char *name, *code;
    } kCodes[] = {{"String", "s"},  {"Integer", "i4"}, {"UInteger", "u4"}, {"Boolean", "b"},
                  {"Single", "f4"}, {"Double", "f8"},  {"Color", "c"},     {"Ptr", "p"},
                  {"CString", "z"}, {"PString", "l"},  {"WindowPtr", "w"}, {"Class", "x"}};
    const char *name = type->name ? type->name : "";
    for (const auto &row : kCodes)
        if (objtext::SameName(row.name, name))
            return row.code;
    FatalReport(kFatalFailedAssertion, "runtime/objects/signatures.cpp", __LINE__, "0", name);
    return "";
}

std::string MethodSignature(const ObjectDefinition *owner, const MethodRow &row) {
    std::string text = row.name ? row.name : "";
    text += "%" + TypeCode(row.returnType) + "%";
    if (owner)
        text += "o<" + std::string(objtext::View(owner->className)) + ">";
    for (int32_t i = 0; i < row.parameterCount && row.parameters; ++i)
        text += TypeCode(row.parameters[i].type);
    return text;
}

std::string PropertySignature(const PropertyRow &row) {
    return std::string(row.name ? row.name : "") + "%" + TypeCode(row.type) + "%";
}

std::string DescribeMethod(const MethodRow &row) {
    std::string text;
    if ((row.flags & kItemPrivate) == kItemPrivate)
        text += "Private ";
    else if (row.flags & kItemProtected)
        text += "Protected ";
    text += row.returnType ? "Function " : "Sub ";
    text += row.name ? row.name : "";
    text += "(";
    for (int32_t i = 0; i < row.parameterCount && row.parameters; ++i) {
        const ParameterRow &p = row.parameters[i];
        if (i)
            text += ", ";
        if (p.flags & kParamByRef)
            text += "ByRef ";
        if (p.flags & kParamArray)
            text += "ParamArray ";
        if (p.flags & kParamAssigns)
            text += "Assigns ";
        if (p.flags & kParamExtends)
            text += "Extends ";
        text += p.name ? p.name : "";
        text += (p.type && p.type->kind == kTypeArray) ? "() As " : " As ";
        text += DisplayTypeName(p.type);
        if (p.defaultValue) {
            std::string_view v = p.defaultValue;
            if (objtext::SameName(v, "Nil") || objtext::SameName(v, "True") ||
                objtext::SameName(v, "False"))
                text += "=" + std::string(v);
            else
                text += "=&h" + std::string(v);
        }
    }
    text += ")";
    if (row.returnType)
        text += " As " + DisplayTypeName(row.returnType);
    return text;
}

namespace {

std::string_view Trimmed(std::string_view s) {
    while (!s.empty() && (s.front() == ' ' || s.front() == '\t'))
        s.remove_prefix(1);
    while (!s.empty() && (s.back() == ' ' || s.back() == '\t'))
        s.remove_suffix(1);
    return s;
}

bool StartsWithWord(std::string_view s, std::string_view word) {
    return s.size() > word.size() && objtext::SameName(s.substr(0, word.size()), word) &&
           s[word.size()] == ' ';
}

// The type of a parameter piece ("ByRef x() As Integer = 3"), with "()"
// behind it for an array; the default value and the keyword's case don't
// count.
std::string TypeOfPiece(std::string_view piece) {
    piece = Trimmed(piece.substr(0, piece.find('=')));
    for (size_t at = piece.size(); at >= 4; --at)
        if (objtext::SameName(piece.substr(at - 4, 4), " As ")) {
            const bool array = piece.substr(0, at).find("()") != std::string_view::npos;
            return std::string(Trimmed(piece.substr(at))) + (array ? "()" : "");
        }
    return {};
}

// A row's type as a declaration writes it: "String", "String()" for arrays.
std::string DeclaredType(const TypeRecord *type) {
    return DisplayTypeName(type) + (type && type->kind == kTypeArray ? "()" : "");
}

} // namespace

bool DeclarationMatches(const MethodRow &row, std::string_view declaration) {
    std::string_view d = Trimmed(declaration);
    if (StartsWithWord(d, "Function"))
        d = Trimmed(d.substr(8));
    else if (StartsWithWord(d, "Sub"))
        d = Trimmed(d.substr(3));
    // The list's own parentheses: an array parameter's "()" nests inside,
    // an array result's follows.
    const size_t open = d.find('(');
    size_t close = std::string_view::npos;
    for (size_t at = open, depth = 0; open != std::string_view::npos && at < d.size(); ++at) {
        depth += d[at] == '(';
        if (d[at] == ')' && --depth == 0) {
            close = at;
            break;
        }
    }
    if (close == std::string_view::npos)
        return false;
    if (!objtext::SameName(Trimmed(d.substr(0, open)), row.name ? row.name : ""))
        return false;
    // The result: "As Type" behind the list, or nothing for a Sub.
    std::string_view result = Trimmed(d.substr(close + 1));
    if (!result.empty()) {
        if (!StartsWithWord(result, "As"))
            return false;
        result = Trimmed(result.substr(2));
    }
    if (!objtext::SameName(result, DeclaredType(row.returnType)))
        return false;
    std::string_view list = Trimmed(d.substr(open + 1, close - open - 1));
    int32_t count = 0;
    while (!list.empty()) {
        // An array parameter's "()" holds no comma, so a comma ends a piece.
        const size_t comma = list.find(',');
        const std::string_view piece = list.substr(0, comma);
        if (count >= row.parameterCount || !row.parameters ||
            !objtext::SameName(TypeOfPiece(piece), DeclaredType(row.parameters[count].type)))
            return false;
        ++count;
        list = comma == std::string_view::npos ? std::string_view() : list.substr(comma + 1);
    }
    return count == row.parameterCount;
}

} // namespace kelp
