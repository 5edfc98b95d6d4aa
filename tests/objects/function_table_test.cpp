// The intrinsic function table as plug-ins reach it: a declaration finds the
// row whose name, parameter types and result type it names, and only that.
#include "objects/definitions.h"

#include "kelp/image.h"
#include "kelp/objects.h"
#include "kelp/random.h"
#include "kelp/runloop.h"
#include "kelp/string_functions.h"

#include <gtest/gtest.h>

namespace {

void *Code(auto *function) { return reinterpret_cast<void *>(function); }

TEST(FunctionTable, DeclarationsFindTheirRowOrNothing) {
    const struct {
        const char *declaration;
        void *expected;
    } cases[] = {
        {"Left(s As String, n As Integer) As String", Code(&StringDBCSLeft)},
        {"leftb(S as STRING, N as integer) as string", Code(&StringLeft)},
        {"Function Mid(s As String, a As Integer, b As Integer) As String", Code(&StringDBCSMid3)},
        {"Mid(s As String, a As Integer) As String", Code(&StringDBCSMid2)},
        {"InStr(Extends s As String, start As Integer, f As String) As Integer",
         Code(&StringExtendsInStr)},
        {"InStr(start As Integer, s As String, f As String) As Integer", Code(&StringInStr)},
        {"Split(s As String, sep As String) As String()", Code(&StringSplit)},
        {"Join(items() As String, sep As String) As String", Code(&StringJoin)},
        {"Sub Quit()", Code(&KP_ApplicationQuit)},
        {"Rnd() As Double", Code(&rnd)},
        {"UserCancelled() As Boolean", Code(&getUserCancelled)},
        // Wrong count, type, result, array-ness or name: nothing.
        {"Left(s As String) As String", nullptr},
        {"Left(s As String, n As Double) As String", nullptr},
        {"Left(s As String, n As Integer) As Integer", nullptr},
        {"Left(s As String, n As Integer)", nullptr},
        {"Split(s As String, sep As String) As String", nullptr},
        {"Join(items As String, sep As String) As String", nullptr},
        {"Quit", nullptr},
        {"NoSuchFunction() As Integer", nullptr},
        {"", nullptr},
    };
    for (const auto &c : cases)
        EXPECT_EQ(KELPLoadGlobalMethod(nullptr, c.declaration), c.expected) << c.declaration;
    EXPECT_EQ(KELPLoadGlobalMethod(nullptr, nullptr), nullptr);
}

TEST(FunctionTable, EveryRowIsExportedUnderItsEntryName) {
    // Plug-ins and the debugger may reach a function by its export name too.
    RuntimeInitExternalClasses();
    for (const char *name : {"Left", "ReplaceAll", "Titlecase", "Rnd", "_GetImplicitWindow"}) {
        const auto rows = kelp::LookupIntrinsicFunction(name);
        ASSERT_FALSE(rows.empty()) << name;
        for (const kelp::MethodRow *row : rows)
            EXPECT_EQ(LookupExport(row->entry.name), row->entry.code) << name;
    }
}

} // namespace
