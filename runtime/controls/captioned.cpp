// Captions and fonts of the captioned controls, in record and pane at once.
#include "controls/captioned.h"

#include "objects/text.h"

#include "kelp/controls.h"

namespace kelp {

GtkWidget *CaptionedPane::CaptionLabel() {
    if (mWidget && GTK_IS_BIN(mWidget)) {
        GtkWidget *child = gtk_bin_get_child(GTK_BIN(mWidget));
        if (child && GTK_IS_LABEL(child))
            return child;
    }
    return nullptr;
}

void CaptionedPane::SetCaption(KelpString caption) {
    std::string text = MnemonicCaption(caption);
    if (GtkWidget *label = CaptionLabel())
        gtk_label_set_text_with_mnemonic(GTK_LABEL(label), text.c_str());
    else if (mWidget && GTK_IS_BUTTON(mWidget)) {
        gtk_button_set_use_underline(GTK_BUTTON(mWidget), TRUE);
        gtk_button_set_label(GTK_BUTTON(mWidget), text.c_str());
    }
}

void CaptionedPane::SetFont(const ControlFont &font) {
    if (GtkWidget *label = CaptionLabel())
        ApplyFont(label, font);
}

} // namespace kelp

using namespace kelp;

extern "C" void captionFontSetter(RuntimeObject *self, int32_t, KelpString value) {
    if (self)
        SetFontName(self, Captioned(self)->font, value);
}

extern "C" void captionSizeSetter(RuntimeObject *self, int32_t, int32_t value) {
    if (self)
        SetFontSize(self, Captioned(self)->font, value);
}

// Selector 0 Bold, 1 Italic, 2 Underline.
extern "C" void captionStyleSetter(RuntimeObject *self, int32_t selector, uint8_t value) {
    if (self)
        SetFontStyle(self, Captioned(self)->font, selector, value);
}

// The caption setters of the four classes differ only in their names.
static void SetCaptionOf(RuntimeObject *self, KelpString value) {
    if (!self)
        return;
    StoreString(Captioned(self)->caption, value);
    if (CaptionedPane *pane = PaneOf<CaptionedPane>(self))
        pane->SetCaption(value);
}
extern "C" void pushButtonCaptionSetter(RuntimeObject *self, int32_t, KelpString value) {
    SetCaptionOf(self, value);
}
extern "C" void radioCaptionSetter(RuntimeObject *self, int32_t, KelpString value) {
    SetCaptionOf(self, value);
}
extern "C" void checkBoxCaptionSetter(RuntimeObject *self, int32_t, KelpString value) {
    SetCaptionOf(self, value);
}
extern "C" void groupBoxCaptionSetter(RuntimeObject *self, int32_t, KelpString value) {
    SetCaptionOf(self, value);
}

// Shared by the captioned classes' finalizers.
extern "C" void CaptionedControlFinalizer(RuntimeObject *self) {
    if (!self)
        return;
    objtext::Release(Captioned(self)->caption);
    objtext::Release(Captioned(self)->font.textFont);
    Captioned(self)->caption = Captioned(self)->font.textFont = nullptr;
    ClearReceivers(Captioned(self)->receivers[0]);
    ClearReceivers(Captioned(self)->receivers[1]);
    ReleaseDataLink(Captioned(self)->data);
}

// getBoundPart of a radio button or check box: the source of one side of
// its changes, or nil for a name it doesn't know.
static RuntimeObject *BoundPart(RuntimeObject *self, KelpString name, bool radio) {
    if (!self)
        return nullptr;
    std::string_view which = objtext::View(name);
    if (objtext::SameName(which, "getCheckedAction"))
        return NewBoundPart(self, true, radio);
    if (objtext::SameName(which, "getUncheckedAction"))
        return NewBoundPart(self, false, radio);
    return nullptr;
}

extern "C" RuntimeObject *radioGetBoundPart(RuntimeObject *self, KelpString name) {
    return BoundPart(self, name, true);
}
extern "C" RuntimeObject *checkBoxGetBoundPart(RuntimeObject *self, KelpString name) {
    return BoundPart(self, name, false);
}

extern "C" void pbAddActionNotificationReceiver(RuntimeObject *self, RuntimeObject *receiver) {
    if (self)
        AddReceiver(Captioned(self)->receivers[0], receiver);
}
extern "C" void pbRemoveActionNotificationReceiver(RuntimeObject *self, RuntimeObject *receiver) {
    if (self)
        RemoveReceiver(Captioned(self)->receivers[0], receiver);
}
