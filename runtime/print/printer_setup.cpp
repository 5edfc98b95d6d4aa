// The PrinterSetup class: page queries in dots, the resolution limits, and
// the toolkit's page setup dialog.
#include "print/printer_setup.h"

#include "kelp/print.h"

#include "base/fatal_report.h"
#include "objects/definitions.h"
#include "print/print_job.h"
#include "windows/dialog_placement.h"
#include "windows/runtime_view.h"

#include <gtk/gtkunixprint.h>

#include <cmath>

namespace kelp {

namespace {
const char kFile[] = "runtime/print/printer_setup.cpp";
} // namespace

PrintHelper::PrintHelper() : pageSetup(gtk_page_setup_new()), settings(gtk_print_settings_new()) {}

PrintHelper::~PrintHelper() {
    g_object_unref(pageSetup);
    g_object_unref(settings);
}

PrintHelper *HelperOf(RuntimeObject *setup) {
    return setup ? reinterpret_cast<PrinterSetupObject *>(setup)->mHelper : nullptr;
}

int32_t QueryPage(const PrintHelper &h, int32_t selector) {
    GtkPageSetup *p = h.pageSetup;
    // Points of the page setup in dots of the print's resolution.
    auto across = [&](double points) { return points * h.horizontalResolution / 72; };
    auto down = [&](double points) { return points * h.verticalResolution / 72; };
    const double pageWidth = across(gtk_page_setup_get_paper_width(p, GTK_UNIT_POINTS));
    const double pageHeight = down(gtk_page_setup_get_paper_height(p, GTK_UNIT_POINTS));
    const double left = across(gtk_page_setup_get_left_margin(p, GTK_UNIT_POINTS));
    const double top = down(gtk_page_setup_get_top_margin(p, GTK_UNIT_POINTS));
    const double right = across(gtk_page_setup_get_right_margin(p, GTK_UNIT_POINTS));
    const double bottom = down(gtk_page_setup_get_bottom_margin(p, GTK_UNIT_POINTS));
    double value = 0;
    switch (selector) {
    case kQueryVerticalResolution: value = h.verticalResolution; break;
    case kQueryHorizontalResolution: value = h.horizontalResolution; break;
    case kQueryWidth: value = pageWidth - left - right; break;
    case kQueryHeight: value = pageHeight - top - bottom; break;
    case kQueryPageLeft: value = -left; break;
    case kQueryPageTop: value = -top; break;
    case kQueryPageWidth: value = pageWidth; break;
    case kQueryPageHeight: value = pageHeight; break;
    case kQueryMaxVerticalResolution: value = h.maxVerticalResolution; break;
    case kQueryMaxHorizontalResolution: value = h.maxHorizontalResolution; break;
    default: break; // Left and Top: the printable corner is the origin
    }
    return static_cast<int32_t>(std::trunc(value));
}

ObjectDefinition *PrinterSetupDefinition() {
    static const TypeRecord windowType{kTypeObjectOf, nullptr, nullptr, 0, &WindowDefinition};
    static const PropertyRow properties[] = {
        {0, "VerticalResolution", &kTypeInteger, KELP_ENTRY(printerSetupInfoGetter), {}, 0},
        {0, "HorizontalResolution", &kTypeInteger, KELP_ENTRY(printerSetupInfoGetter), {}, 1},
        {0, "Left", &kTypeInteger, KELP_ENTRY(printerSetupInfoGetter), {}, 2},
        {0, "Top", &kTypeInteger, KELP_ENTRY(printerSetupInfoGetter), {}, 3},
        {0, "Width", &kTypeInteger, KELP_ENTRY(printerSetupInfoGetter), {}, 4},
        {0, "Height", &kTypeInteger, KELP_ENTRY(printerSetupInfoGetter), {}, 5},
        {0, "PageLeft", &kTypeInteger, KELP_ENTRY(printerSetupInfoGetter), {}, 6},
        {0, "PageTop", &kTypeInteger, KELP_ENTRY(printerSetupInfoGetter), {}, 7},
        {0, "PageWidth", &kTypeInteger, KELP_ENTRY(printerSetupInfoGetter), {}, 8},
        {0, "PageHeight", &kTypeInteger, KELP_ENTRY(printerSetupInfoGetter), {}, 9},
        {0, "MaxVerticalResolution", &kTypeInteger, KELP_ENTRY(printerSetupInfoGetter),
         KELP_ENTRY(printerSetupMaxResSetter), 10},
        {0, "MaxHorizontalResolution", &kTypeInteger, KELP_ENTRY(printerSetupInfoGetter),
         KELP_ENTRY(printerSetupMaxResSetter), 11},
        {0, "SetupString", &kTypeString, KELP_ENTRY(printerSetupStringGetter),
         KELP_ENTRY(printerSetupStringSetter)},
    };
    static const ParameterRow parentParams[] = {{"parent", &windowType, "Nil"}};
    static const MethodRow methods[] = {
        {"PageSetupDialog", &kTypeBoolean, parentParams, 1, KELP_ENTRY(printerSetupPageSetup)},
    };
    static const ClassDescription description = {
        .name = "PrinterSetup",
        .instanceSize = sizeof(PrinterSetupObject),
        .initializer = KELP_ENTRY(PrinterSetupConstructor),
        .finalizer = KELP_ENTRY(PrinterSetupDestructor),
        .properties = properties,
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp

using namespace kelp;

extern "C" void PrinterSetupConstructor(RuntimeObject *self) {
    auto *s = reinterpret_cast<PrinterSetupObject *>(self);
    s->mHelper = new PrintHelper;
    s->setupVerticalResolution = s->setupHorizontalResolution = 72;
    s->setupMaxVerticalResolution = s->setupMaxHorizontalResolution = 72;
}

extern "C" void PrinterSetupDestructor(RuntimeObject *self) {
    auto *s = reinterpret_cast<PrinterSetupObject *>(self);
    delete s->mHelper;
    s->mHelper = nullptr;
}

extern "C" int32_t printerSetupInfoGetter(RuntimeObject *setup, int32_t selector) {
    PrintHelper *helper = HelperOf(setup);
    KELP_ASSERT(setup != nullptr, kFile, "obj");
    KELP_ASSERT(!setup || helper != nullptr, kFile, "obj->mHelper");
    return helper ? QueryPage(*helper, selector) : 0;
}

extern "C" void printerSetupMaxResSetter(RuntimeObject *setup, int32_t selector, int32_t value) {
    PrintHelper *helper = HelperOf(setup);
    if (!helper)
        return;
    if (selector == kQueryMaxVerticalResolution)
        helper->maxVerticalResolution = value;
    else if (selector == kQueryMaxHorizontalResolution)
        helper->maxHorizontalResolution = value;
}

// The settings of a print are the toolkit's and stay in the helper; the
// setup string the language offers for saving them is empty here, and what
// is given to it changes nothing.
extern "C" KelpString printerSetupStringGetter(RuntimeObject *, int32_t) { return nullptr; }
extern "C" void printerSetupStringSetter(RuntimeObject *, int32_t, KelpString) {}

// Shows the toolkit's page setup dialog.  OK keeps the paper and
// orientation chosen for the prints made with this setup and answers true;
// Cancel or closing the dialog changes nothing and answers false.  With
// KELP_PRINT_TO_FILE set nobody is there to answer: the setup is kept as
// it is and the answer is true, so that the print goes on to its file.
extern "C" uint8_t printerSetupPageSetup(RuntimeObject *setup, RuntimeObject *parent) {
    PrintHelper *helper = HelperOf(setup);
    if (!helper)
        return false;
    bool accepted = !PrintToFilePath().empty();
    if (!accepted) {
        GtkWidget *dialog = gtk_page_setup_unix_dialog_new("Page Setup", nullptr);
        PlaceOverParent(dialog, parent);
        auto *pageDialog = GTK_PAGE_SETUP_UNIX_DIALOG(dialog);
        gtk_page_setup_unix_dialog_set_page_setup(pageDialog, helper->pageSetup);
        gtk_page_setup_unix_dialog_set_print_settings(pageDialog, helper->settings);
        accepted = gtk_dialog_run(GTK_DIALOG(dialog)) == GTK_RESPONSE_OK;
        if (accepted) {
            g_object_unref(helper->pageSetup);
            helper->pageSetup =
                gtk_page_setup_copy(gtk_page_setup_unix_dialog_get_page_setup(pageDialog));
            if (GtkPrintSettings *chosen =
                    gtk_page_setup_unix_dialog_get_print_settings(pageDialog)) {
                g_object_unref(helper->settings);
                helper->settings = gtk_print_settings_copy(chosen);
            }
        }
        gtk_widget_destroy(dialog);
        gdk_flush(); // gone from the screen now, not at the next event
    }
    if (accepted) {
        auto *s = reinterpret_cast<PrinterSetupObject *>(setup);
        s->setupVerticalResolution = QueryPage(*helper, kQueryVerticalResolution);
        s->setupHorizontalResolution = QueryPage(*helper, kQueryHorizontalResolution);
        s->setupMaxVerticalResolution = QueryPage(*helper, kQueryMaxVerticalResolution);
        s->setupMaxHorizontalResolution = QueryPage(*helper, kQueryMaxHorizontalResolution);
    }
    return accepted;
}
