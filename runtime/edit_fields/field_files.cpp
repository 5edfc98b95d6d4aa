// A field's text to and from a file.  A styled field is saved as Rich Text,
// so its runs come back when it is opened again (and a word processor reads
// it); a plain field is saved as UTF-8 text.  Opening takes either: a Rich
// Text file gives its runs to a styled field and its text to any other,
// any other file is read as text.
#include "edit_fields/edit_pane.h"
#include "edit_fields/styled_file.h"

#include "folder_items/folder_item_object.h"

#include "kelp/edit_fields.h"

#include <cerrno>

namespace kelp {
namespace {

// A field's text is read whole; a file beyond this is no text for a field
// and would only exhaust memory.
constexpr int64_t kMaxFieldFile = int64_t{256} << 20;

// UTF-8 as it is; bytes that aren't are taken as Latin-1, the encoding of
// plain text files from before UTF-8.  Line ends become the widget's "\n".
std::string FieldText(std::string_view bytes) {
    std::string text;
    if (g_utf8_validate(bytes.data(), static_cast<gssize>(bytes.size()), nullptr)) {
        text = bytes;
    } else {
        for (unsigned char c : bytes) {
            if (c < 0x80) {
                text += static_cast<char>(c);
            } else {
                text += static_cast<char>(0xC0 | c >> 6);
                text += static_cast<char>(0x80 | (c & 0x3F));
            }
        }
    }
    std::string out;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n')
            continue;
        out += text[i] == '\r' ? '\n' : text[i];
    }
    return out;
}

} // namespace
} // namespace kelp

using namespace kelp;

extern "C" uint8_t FolderItemOpenStyledEditField(RuntimeObject *item, RuntimeObject *field) {
    FolderItemImp *imp = ImpOf(item);
    EditPane *pane = EditPaneOf(field);
    if (!imp || !pane)
        return 0;
    std::unique_ptr<RandomAccessMechanism> data = imp->OpenData(false);
    if (!data)
        return 0;
    const int64_t length = data->GetLength();
    if (length < 0 || length > kMaxFieldFile) {
        imp->mLastError = EFBIG;
        return 0;
    }
    std::string bytes(static_cast<size_t>(length), '\0');
    int64_t got = 0;
    if (length > 0 && !data->Read(bytes.data(), length, &got)) {
        imp->mLastError = data->LastError();
        return 0;
    }
    bytes.resize(static_cast<size_t>(got));
    if (!IsRichText(bytes)) {
        pane->SetText(FieldText(bytes));
        return 1;
    }
    const std::vector<StyleRunValue> runs = RunsFromRichText(bytes);
    if (pane->IsStyled()) {
        pane->SetText(std::string());
        for (const StyleRunValue &run : runs)
            pane->AppendRun(run);
    } else {
        std::string text;
        for (const StyleRunValue &run : runs)
            text += run.text;
        pane->SetText(text);
    }
    return 1;
}

extern "C" uint8_t FolderItemSaveStyledEditField(RuntimeObject *item, RuntimeObject *field) {
    FolderItemImp *imp = ImpOf(item);
    EditPane *pane = EditPaneOf(field);
    if (!imp || !pane)
        return 0;
    std::string bytes;
    if (pane->IsStyled()) {
        std::vector<StyleRunValue> runs(static_cast<size_t>(pane->RunCount()));
        for (size_t i = 0; i < runs.size(); ++i)
            pane->GetRun(static_cast<int32_t>(i), &runs[i], nullptr);
        bytes = RunsToRichText(runs);
    } else {
        bytes = pane->GetText();
    }
    std::unique_ptr<RandomAccessMechanism> data = imp->CreateData(); // its error is kept
    if (!data)
        return 0;
    if (!data->Write(bytes.data(), static_cast<int64_t>(bytes.size())) || !data->Close()) {
        imp->mLastError = data->LastError();
        return 0;
    }
    return 1;
}
