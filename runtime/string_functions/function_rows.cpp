// The text functions of the language as rows of the intrinsic function
// table, so that plug-ins and the debugger find them by name.  A "B" name
// counts bytes, its plain sister characters; InStr has a second row in the
// Extends form for method-like use.
#include "string_functions/function_rows.h"

#include "objects/definitions.h"
#include "string_functions/end_of_line_object.h"

#include "kelp/string_functions.h"

namespace kelp {
namespace {

const TypeRecord kStringArray{kTypeArray, nullptr, &kTypeString, 1};
const TypeRecord kEndOfLineType{kTypeObjectOf, nullptr, nullptr, 0, &EndOfLineDefinition};

const ParameterRow kTextCount[] = {{"s", &kTypeString}, {"count", &kTypeInteger}};
const ParameterRow kTextStart[] = {{"s", &kTypeString}, {"start", &kTypeInteger}};
const ParameterRow kTextStartLength[] = {
    {"s", &kTypeString}, {"start", &kTypeInteger}, {"length", &kTypeInteger}};
const ParameterRow kText[] = {{"s", &kTypeString}};
const ParameterRow kCode[] = {{"code", &kTypeInteger}};
const ParameterRow kStartSourceFind[] = {
    {"start", &kTypeInteger}, {"source", &kTypeString}, {"find", &kTypeString}};
const ParameterRow kExtendsStartFind[] = {{"source", &kTypeString, nullptr, kParamExtends},
                                          {"start", &kTypeInteger},
                                          {"find", &kTypeString}};
const ParameterRow kSourceFindWith[] = {
    {"source", &kTypeString}, {"find", &kTypeString}, {"replacement", &kTypeString}};
const ParameterRow kSourceSeparator[] = {{"source", &kTypeString}, {"separator", &kTypeString}};
const ParameterRow kSourceSeparatorIndex[] = {
    {"source", &kTypeString}, {"separator", &kTypeString}, {"index", &kTypeInteger}};
const ParameterRow kArraySeparator[] = {{"items", &kStringArray}, {"separator", &kTypeString}};
const ParameterRow kCompare[] = {{"a", &kTypeString}, {"b", &kTypeString}, {"mode", &kTypeInteger}};
const ParameterRow kValueMask[] = {{"value", &kTypeDouble}, {"mask", &kTypeString}};
const ParameterRow kTextLineEnd[] = {{"s", &kTypeString}, {"lineEnd", &kTypeString}};

#define ROW(name, result, params, fn)                                                              \
    { name, result, params, std::size(params), KELP_ENTRY(fn) }

const MethodRow kRows[] = {
    ROW("Left", &kTypeString, kTextCount, StringDBCSLeft),
    ROW("LeftB", &kTypeString, kTextCount, StringLeft),
    ROW("Right", &kTypeString, kTextCount, StringDBCSRight),
    ROW("RightB", &kTypeString, kTextCount, StringRight),
    ROW("Mid", &kTypeString, kTextStart, StringDBCSMid2),
    ROW("Mid", &kTypeString, kTextStartLength, StringDBCSMid3),
    ROW("MidB", &kTypeString, kTextStart, StringMid2),
    ROW("MidB", &kTypeString, kTextStartLength, StringMid3),
    ROW("LenB", &kTypeInteger, kText, StringLen),
    ROW("AscB", &kTypeInteger, kText, StringAsc),
    ROW("ChrB", &kTypeString, kCode, StringChr),
    ROW("InStr", &kTypeInteger, kStartSourceFind, StringInStr),
    ROW("InStr", &kTypeInteger, kExtendsStartFind, StringExtendsInStr),
    ROW("InStrB", &kTypeInteger, kStartSourceFind, StringInStrB),
    ROW("InStrB", &kTypeInteger, kExtendsStartFind, StringExtendsInStrB),
    ROW("Replace", &kTypeString, kSourceFindWith, StringReplace),
    ROW("ReplaceAll", &kTypeString, kSourceFindWith, StringReplaceAll),
    ROW("ReplaceB", &kTypeString, kSourceFindWith, StringReplaceB),
    ROW("ReplaceAllB", &kTypeString, kSourceFindWith, StringReplaceAllB),
    ROW("Uppercase", &kTypeString, kText, StringUCase),
    ROW("Lowercase", &kTypeString, kText, StringLCase),
    ROW("Titlecase", &kTypeString, kText, StringTitleCase),
    ROW("CountFields", &kTypeInteger, kSourceSeparator, StringCountFields),
    ROW("CountFieldsB", &kTypeInteger, kSourceSeparator, StringCountFieldsB),
    ROW("NthField", &kTypeString, kSourceSeparatorIndex, StringNthField),
    ROW("NthFieldB", &kTypeString, kSourceSeparatorIndex, StringNthFieldB),
    ROW("Split", &kStringArray, kSourceSeparator, StringSplit),
    ROW("SplitB", &kStringArray, kSourceSeparator, StringSplitB),
    ROW("Join", &kTypeString, kArraySeparator, StringJoin),
    ROW("StrComp", &kTypeInteger, kCompare, StringStrCompare),
    ROW("Format", &kTypeString, kValueMask, StringFormat),
    ROW("CDbl", &kTypeDouble, kText, runCDbl),
    ROW("Trim", &kTypeString, kText, runTrim),
    ROW("LTrim", &kTypeString, kText, runLTrim),
    ROW("RTrim", &kTypeString, kText, runRTrim),
    ROW("ReplaceLineEndings", &kTypeString, kTextLineEnd, RuntimeReplaceLineEndings),
    {"EndOfLine", &kEndOfLineType, nullptr, 0, KELP_ENTRY(RuntimeGetEndOfLineObject)},
};

#undef ROW

} // namespace

std::span<const MethodRow> StringFunctionRows() { return kRows; }

} // namespace kelp
