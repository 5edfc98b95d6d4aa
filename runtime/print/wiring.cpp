#include "print/wiring.h"

#include "kelp/print.h"

#include "graphics/graphics_object.h"
#include "objects/definitions.h"
#include "print/printer_setup.h"
#include "windows/runtime_view.h"

namespace kelp {

void WirePrint() {
    AddIntrinsicClassAccessor(&PrinterSetupDefinition);
    static const TypeRecord graphicsType{kTypeObjectOf, nullptr, nullptr, 0, &GraphicsDefinition};
    static const TypeRecord setupType{kTypeObjectOf, nullptr, nullptr, 0, &PrinterSetupDefinition};
    static const TypeRecord windowType{kTypeObjectOf, nullptr, nullptr, 0, &WindowDefinition};
    static const ParameterRow dialogParams[] = {{"setup", &setupType, "Nil"},
                                                {"parent", &windowType, "Nil"}};
    static const ParameterRow openParams[] = {{"setup", &setupType, "Nil"}};
    static const MethodRow functions[] = {
        {"OpenPrinterDialog", &graphicsType, dialogParams, 2, KELP_ENTRY(RuntimeOpenPrinterDialog)},
        {"OpenPrinter", &graphicsType, openParams, 1, KELP_ENTRY(RuntimeOpenPrinter)},
    };
    AddIntrinsicFunctions(functions);
}

} // namespace kelp
