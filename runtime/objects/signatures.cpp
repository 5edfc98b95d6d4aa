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

std::string DisplayTypeName(const TypeRecord *type) {
    if (!type)
        return "";
    switch (type->kind) {
    case kTypeArray: return DisplayTypeName(type->element);
    case kTypeObjectOf: return ClassNameOf(type->objectClass);
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
    case kTypeObjectOf: return "o<" + ClassNameOf(type->objectClass) + ">";
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

} // namespace kelp
