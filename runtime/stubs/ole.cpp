// OLE automation and the OLE container control: no component system here.
// Naming a program raises; a bare OLEObject exists, and every call, property
// and operator on it answers nil.
#include "stubs/absent.h"

#include "kelp/stubs.h"

extern "C" void OLEObjectProgramIDConstructor(RuntimeObject *, KelpString) {
    kelp::RaiseServiceAbsent("OLE");
}

extern "C" void OLEObjectNewInstanceConstructor(RuntimeObject *, KelpString, uint8_t) {
    kelp::RaiseServiceAbsent("OLE");
}

KELP_ABSENT(void, OLEObjectConstructor, RuntimeObject *)
KELP_ABSENT(void, OLEObjectDestructor, RuntimeObject *)
KELP_ABSENT(RuntimeObject *, OLEObjectInvoke, RuntimeObject *, KelpString)
KELP_ABSENT(void, OLEObjectInvokeNoReturnValue, RuntimeObject *, KelpString)
KELP_ABSENT(RuntimeObject *, OLEObjectInvokeWithParams, RuntimeObject *, KelpString,
            RuntimeObject *)
KELP_ABSENT(void, OLEObjectInvokeWithParamsNoReturnValue, RuntimeObject *, KelpString,
            RuntimeObject *)
KELP_ABSENT(RuntimeObject *, OLEObjectPropertyGetter, RuntimeObject *, KelpString)
KELP_ABSENT(void, OLEObjectPropertySetter, RuntimeObject *, KelpString, RuntimeObject *)
KELP_ABSENT(void, OLEObjectPropertySetterWithValue, RuntimeObject *, KelpString, RuntimeObject *,
            RuntimeObject *)
KELP_ABSENT(RuntimeObject *, OLEObjectOperatorLookup, RuntimeObject *, KelpString)
KELP_ABSENT(void, OLEObjectOperatorLookupSetter, RuntimeObject *, KelpString, RuntimeObject *)
KELP_ABSENT(void, OLEObjectNoReturnOperatorLookup, RuntimeObject *, KelpString)
KELP_ABSENT(RuntimeObject *, OLEObjectOperatorAdd, RuntimeObject *, RuntimeObject *)
KELP_ABSENT(RuntimeObject *, OLEObjectOperatorAddRight, RuntimeObject *, RuntimeObject *)
KELP_ABSENT(RuntimeObject *, OLEObjectOperatorSubtract, RuntimeObject *, RuntimeObject *)
KELP_ABSENT(RuntimeObject *, OLEObjectOperatorSubtractRight, RuntimeObject *, RuntimeObject *)
KELP_ABSENT(RuntimeObject *, OLEObjectOperatorMultiply, RuntimeObject *, RuntimeObject *)
KELP_ABSENT(RuntimeObject *, OLEObjectOperatorMultiplyRight, RuntimeObject *, RuntimeObject *)
KELP_ABSENT(RuntimeObject *, OLEObjectOperatorDivide, RuntimeObject *, RuntimeObject *)
KELP_ABSENT(RuntimeObject *, OLEObjectOperatorDivideRight, RuntimeObject *, RuntimeObject *)
KELP_ABSENT(RuntimeObject *, OLEObjectOperatorIntegerDivide, RuntimeObject *, RuntimeObject *)
KELP_ABSENT(RuntimeObject *, OLEObjectOperatorIntegerDivideRight, RuntimeObject *, RuntimeObject *)
KELP_ABSENT(RuntimeObject *, OLEObjectOperatorModulo, RuntimeObject *, RuntimeObject *)
KELP_ABSENT(RuntimeObject *, OLEObjectOperatorModuloRight, RuntimeObject *, RuntimeObject *)
KELP_ABSENT(RuntimeObject *, OLEObjectOperatorAnd, RuntimeObject *, RuntimeObject *)
KELP_ABSENT(RuntimeObject *, OLEObjectOperatorOr, RuntimeObject *, RuntimeObject *)
KELP_ABSENT(RuntimeObject *, OLEObjectOperatorNot, RuntimeObject *)
KELP_ABSENT(RuntimeObject *, OLEObjectOperatorNegate, RuntimeObject *)
KELP_ABSENT(RuntimeObject *, OLEObjectOperatorConvert, RuntimeObject *)
KELP_ABSENT(int32_t, OLEObjectOperatorCompare, RuntimeObject *, RuntimeObject *)
KELP_ABSENT(void, OLEParameterDestructor, RuntimeObject *)
KELP_ABSENT(RuntimeObject *, OLEParameterValueGetter, RuntimeObject *, int32_t)
KELP_ABSENT(void, OLEParameterValueSetter, RuntimeObject *, int32_t, RuntimeObject *)
KELP_ABSENT(void, OLEParameterValueArraySetter, RuntimeObject *, RuntimeObject *)
KELP_ABSENT(RuntimeObject *, OLEContainerContentGetter, RuntimeObject *, int32_t)
KELP_ABSENT(uint8_t, OLEContainerCreateObject, RuntimeObject *)
KELP_ABSENT(void, OLEContainerDestroyObject, RuntimeObject *)
KELP_ABSENT(void, OLEContainerShowPropertyPages, RuntimeObject *)
KELP_ABSENT(void *, OLEContainerCreatePane, RuntimeObject *, void *)
KELP_ABSENT(void, OLEContainerDestructor, RuntimeObject *)
