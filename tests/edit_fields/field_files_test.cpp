// A field's text in files: Rich Text as other programs write it read into
// runs, damaged Rich Text read without harm, and real fields saved to real
// files and opened again with their runs.
#include "controls/control_fixture.h"
#include "support/image_builder.h"

#include "edit_fields/edit_pane.h"
#include "edit_fields/styled_file.h"
#include "folder_items/folder_item_object.h"
#include "folder_items/folder_item_unix.h"

#include "kelp/edit_fields.h"

#include <fstream>

namespace kelp::test {
namespace {

// A run as "text|b i u|size|font|colour", the attributes that a file keeps.
std::string Show(const StyleRunValue &r) {
    char colour[8];
    std::snprintf(colour, sizeof colour, "%06x", unsigned(r.color));
    return r.text + "|" + (r.bold ? "b" : "-") + (r.italic ? "i" : "-") +
           (r.underline ? "u" : "-") + "|" + std::to_string(r.size) + "|" + r.font + "|" + colour;
}
std::vector<std::string> Show(const std::vector<StyleRunValue> &runs) {
    std::vector<std::string> out;
    for (const StyleRunValue &r : runs)
        out.push_back(Show(r));
    return out;
}

TEST(RichText, DocumentsOfOtherWritersReadAsRuns) {
    struct Case {
        const char *rtf;
        std::vector<std::string> runs;
    } cases[] = {
        {R"({\rtf1\ansi\deff0{\fonttbl{\f0\froman Times;}{\f1\fmodern Courier New;}})"
         R"({\colortbl;\red255\green0\blue0;\red0\green0\blue255;})"
         "\n"
         R"(\f0\fs24 plain {\b bold}{\i\ul it} \cf1 red\par\f1\cf2\fs20 blue\b0 .})",
         {"plain |---|12|Times|000000", "bold|b--|12|Times|000000", "it|-iu|12|Times|000000",
          " |---|12|Times|000000", "red\n|---|12|Times|ff0000", "blue.|---|10|Courier New|0000ff"}},
        // Unicode with its fallbacks, a Latin-1 byte, escapes, a skipped destination.
        {R"({\rtf1{\*\generator Other 1.0;}{\info{\title T}}caf\'e9 \u8364?\uc2\u8364 xy z \{\}\\})",
         {"café €€ z {}\\|---|0||000000"}},
        // A pair of surrogates, a tab and a line break.
        {R"({\rtf1 a\u-10179?\u-8704?\tab b\line c})", {"a😀\tb\nc|---|0||000000"}},
        // Damage: groups never closed, closed too often, numbers out of range.
        {R"({\rtf1 {{{\b x}}}}}} y\fs99999999999999 z\'4)",
         {"x|b--|0||000000", " y|---|0||000000", "z|---|50000||000000"}},
        // No NUL, no stray byte: what goes to the widget is valid UTF-8.
        {"{\\rtf1 a\\u b\\'00c\xff}", {"abc\u00ff|---|0||000000"}},
        {R"({\rtf1\cf7 colour past the table\f9 and an unknown font})",
         {"colour past the tableand an unknown font|---|0||000000"}},
    };
    for (const Case &c : cases) {
        EXPECT_TRUE(IsRichText(c.rtf));
        EXPECT_EQ(Show(RunsFromRichText(c.rtf)), c.runs) << c.rtf;
    }
    EXPECT_FALSE(IsRichText("plain {\\rtf"));
    // Nesting beyond any real document is walked once, without a stack per level.
    const std::string deep = "{\\rtf1 " + std::string(1000000, '{') + "x";
    EXPECT_EQ(Show(RunsFromRichText(deep)), std::vector<std::string>{"x|---|0||000000"});
}

class FieldFiles : public ControlFixture {
protected:
    void SetUp() override {
        ControlFixture::SetUp();
        if (IsSkipped())
            return;
        mView = MakeWindow(420, 300, [](RuntimeObject *view) {
            for (const char *name : {"A", "B", "Plain"})
                Add(view, "EditField", name, [name](MassData &m) {
                    Box(m, 10, name[0] == 'A' ? 10 : name[0] == 'B' ? 100 : 200, 400, 80);
                    m.Bool("MultiLine", true).Bool("Styled", name[0] != 'P');
                    m.Text("TextFont", "Arial").Int("TextSize", 12);
                });
        });
    }
    std::vector<StyleRunValue> Runs(RuntimeObject *field) {
        EditPane *pane = EditPaneOf(field);
        std::vector<StyleRunValue> runs(size_t(pane->RunCount()));
        for (size_t i = 0; i < runs.size(); ++i)
            pane->GetRun(int32_t(i), &runs[i], nullptr);
        return runs;
    }
    RuntimeObject *mView = nullptr;
    TempDir mDir;
};

TEST_F(FieldFiles, FieldsSaveAndOpenTheirTextAndRuns) {
    RuntimeObject *a = Find(mView, "A"), *b = Find(mView, "B"), *plain = Find(mView, "Plain");
    ASSERT_TRUE(a && b && plain);
    EditPane *pa = EditPaneOf(a);
    pa->SetText("");
    StyleRunValue run;
    for (auto [text, bold, colour, font] : {std::tuple{"Plain ", false, 0, ""},
                                            {"bold {x}\n", true, 0, ""},
                                            {"grün", false, 0x008000, "Courier New"}}) {
        run.text = text, run.bold = bold, run.color = colour, run.font = font, run.size = 14;
        pa->AppendRun(run);
    }
    RuntimeObject *file = NewFolderItem(std::make_unique<FolderItemImpUnix>(mDir / "a.rtf"));
    ASSERT_EQ(FolderItemSaveStyledEditField(file, a), 1);
    const std::vector<uint8_t> bytes = ReadFileBytes(mDir / "a.rtf");
    EXPECT_TRUE(IsRichText(std::string(bytes.begin(), bytes.end())));
    ASSERT_EQ(FolderItemOpenStyledEditField(file, b), 1);
    EXPECT_EQ(Show(Runs(b)), Show(Runs(a)));
    EXPECT_EQ(Show(Runs(b)).size(), 3u);

    // A plain field takes the text of a Rich Text file, and saves plain text.
    ASSERT_EQ(FolderItemOpenStyledEditField(file, plain), 1);
    EXPECT_EQ(EditPaneOf(plain)->GetText(), "Plain bold {x}\ngrün");
    RuntimeObject *text = NewFolderItem(std::make_unique<FolderItemImpUnix>(mDir / "a.txt"));
    ASSERT_EQ(FolderItemSaveStyledEditField(text, plain), 1);
    const std::vector<uint8_t> saved = ReadFileBytes(mDir / "a.txt");
    EXPECT_EQ(std::string(saved.begin(), saved.end()), "Plain bold {x}\ngrün");

    // Text files of other systems: CR LF line ends, Latin-1 bytes.
    std::ofstream(mDir / "dos.txt") << "line one\r\nligne d\xE9j\xE0\r\n";
    RuntimeObject *dos = NewFolderItem(std::make_unique<FolderItemImpUnix>(mDir / "dos.txt"));
    ASSERT_EQ(FolderItemOpenStyledEditField(dos, b), 1);
    EXPECT_EQ(EditPaneOf(b)->GetText(), "line one\nligne déjà\n");

    RuntimeObject *missing = NewFolderItem(std::make_unique<FolderItemImpUnix>(mDir / "none"));
    EXPECT_EQ(FolderItemOpenStyledEditField(missing, b), 0);
    EXPECT_NE(FolderItemGetLastError(missing, 0), 0);
    EXPECT_EQ(FolderItemOpenStyledEditField(file, nullptr), 0);
    for (RuntimeObject *o : {file, text, dos, missing})
        RuntimeUnlockObject(o);
}

} // namespace
} // namespace kelp::test
