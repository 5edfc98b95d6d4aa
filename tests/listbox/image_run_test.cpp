// A real image run by the runtime program fills a ListBox on a window from
// its code, sorts it and prints the whole list as the runtime reads it back.
#include "support/image_builder.h"
#include "support/mass_data.h"
#include "support/xvfb.h"

#include "objects/text.h"

#include "kelp/objects.h"

#include <gtest/gtest.h>

namespace kelp::test {
namespace {

image::Segments FillingImage(const std::string &massData) {
    ImageBuilder b;
    const uint32_t windowSlot = b.AddData(std::vector<uint8_t>(8, 0));
    b.Prologue();
    b.CallImport("RuntimeInit");
    b.MovImm(Reg::RDI, 0);
    b.CallImport("RuntimeRegisterAppObject");
    b.LoadString(Reg::RDI, "Window");
    b.CallImport("RuntimeLookupClass");
    b.MovReg(Reg::RDI, Reg::RAX);
    b.CallImport("RuntimeNewObject");
    b.LoadDataAddress(Reg::RCX, windowSlot);
    b.StoreMem(Reg::RCX, 0, Reg::RAX);
    b.Push(Reg::RBX);
    b.Push(Reg::RBX); // keeps the stack aligned
    b.LoadString(Reg::RDI, "ListBox");
    b.CallImport("RuntimeLookupClass");
    b.MovReg(Reg::RDI, Reg::RAX);
    b.CallImport("RuntimeNewObject");
    b.MovReg(Reg::RBX, Reg::RAX);
    b.MovReg(Reg::RDI, Reg::RBX);
    b.LoadString(Reg::RSI, massData);
    b.CallImport("RuntimeMassPropertySetter");
    b.LoadDataAddress(Reg::RAX, windowSlot);
    b.LoadMem(Reg::RDI, Reg::RAX, 0);
    b.LoadString(Reg::RSI, "ListBox1");
    b.MovReg(Reg::RDX, Reg::RBX);
    b.CallImport("WindowAddControl");
    const char *rows[][2] = {{"plum", "7"}, {"Date", "2"}, {"cherry", "9"}};
    for (int i = 0; i < 3; ++i) {
        b.MovReg(Reg::RDI, Reg::RBX);
        b.LoadString(Reg::RSI, rows[i][0]);
        b.CallImport("RuntimeListAddRow");
        b.MovReg(Reg::RDI, Reg::RBX);
        b.MovImm(Reg::RSI, uint64_t(i + 1)); // behind the row of the layout
        b.MovImm(Reg::RDX, 1);
        b.LoadString(Reg::RCX, rows[i][1]);
        b.CallImport("listSetCell");
    }
    b.MovReg(Reg::RDI, Reg::RBX);
    b.MovImm(Reg::RSI, 0);
    b.MovImm(Reg::RDX, 0);
    b.CallImport("listSortedColumnSetter");
    b.MovReg(Reg::RDI, Reg::RBX);
    b.CallImport("RuntimeListResort");
    b.MovReg(Reg::RDI, Reg::RBX);
    b.MovImm(Reg::RSI, 0xffffffff); // Cell(-1, -1): the whole list
    b.MovImm(Reg::RDX, 0xffffffff);
    b.CallImport("listGetCell");
    b.Push(Reg::RAX);
    b.Push(Reg::RAX);
    b.PutsString(Reg::RAX);
    b.Pop(Reg::RDI);
    b.Pop(Reg::RDI);
    b.CallImport("RuntimeUnlockString");
    b.MovReg(Reg::RDI, Reg::RBX);
    b.CallImport("RuntimeUnlockObject"); // the window's map holds it
    b.Pop(Reg::RBX);
    b.Pop(Reg::RBX);
    b.LoadDataAddress(Reg::RAX, windowSlot);
    b.LoadMem(Reg::RDI, Reg::RAX, 0);
    b.CallImport("RuntimeCloseWindow");
    b.LoadDataAddress(Reg::RAX, windowSlot);
    b.LoadMem(Reg::RDI, Reg::RAX, 0);
    b.CallImport("RuntimeUnlockObject");
    b.MovImm(Reg::RDI, 0);
    b.CallSoftImport("fflush", "libc.so.6");
    b.Epilogue();
    return b.Build();
}

TEST(ListBoxInAnImage, TheImageFillsSortsAndReadsBackItsList) {
    if (!RequireToolkitDisplay())
        GTEST_SKIP() << "no X server";
    RuntimeInitExternalClasses();
    KelpString name = objtext::Make("ListBox");
    RuntimeClass *list = RuntimeLookupClass(name);
    objtext::Release(name);
    ASSERT_NE(list, nullptr);
    MassData data(list);
    data.Int("Left", 10).Int("Top", 10).Int("Width", 300).Int("Height", 200);
    data.Int("ColumnCount", 2).Text("InitialValue", "Banana\t5");
    TempDir dir;
    const std::string program = dir / "lister";
    ASSERT_TRUE(WriteAppended(FillingImage(data.Bytes()), program));
    RunResult r = kelp::test::Run(program, {}, "", true);
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, "Banana\t5\rcherry\t9\rDate\t2\rplum\t7\n");
}

} // namespace
} // namespace kelp::test
