/*
 * Services of other desktops that this platform does not have: OLE, Apple
 * events, the registry, the key chain, the dock, movies and media, and the
 * handles of other systems' drivers and windows.
 *
 * Every function here is safe on nil arguments, takes no reference from its
 * arguments, and returns nil, 0, false or the empty string (nil) unless its
 * comment says otherwise.  A returned object is the caller's reference.
 * Failure channel: a constructor that names something to reach (an OLE
 * program, a registry path, a key chain) raises ServiceNotAvailableException;
 * nothing else raises.
 */
#ifndef KELP_STUBS_H
#define KELP_STUBS_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- OLE: the OLEObject, OLEParameter and OLEContainer classes */
void OLEObjectConstructor(RuntimeObject *self);
void OLEObjectProgramIDConstructor(RuntimeObject *self, KelpString programID); /* raises */
void OLEObjectNewInstanceConstructor(RuntimeObject *self, KelpString programID,
                                     uint8_t newInstance); /* raises */
void OLEObjectDestructor(RuntimeObject *self);
RuntimeObject *OLEObjectInvoke(RuntimeObject *self, KelpString name);
void OLEObjectInvokeNoReturnValue(RuntimeObject *self, KelpString name);
RuntimeObject *OLEObjectInvokeWithParams(RuntimeObject *self, KelpString name,
                                         RuntimeObject *parameters);
void OLEObjectInvokeWithParamsNoReturnValue(RuntimeObject *self, KelpString name,
                                            RuntimeObject *parameters);
RuntimeObject *OLEObjectPropertyGetter(RuntimeObject *self, KelpString name);
void OLEObjectPropertySetter(RuntimeObject *self, KelpString name, RuntimeObject *value);
void OLEObjectPropertySetterWithValue(RuntimeObject *self, KelpString name,
                                      RuntimeObject *parameters, RuntimeObject *value);
RuntimeObject *OLEObjectOperatorLookup(RuntimeObject *self, KelpString name);
void OLEObjectOperatorLookupSetter(RuntimeObject *self, KelpString name, RuntimeObject *value);
void OLEObjectNoReturnOperatorLookup(RuntimeObject *self, KelpString name);
/* Operators on an OLE value: nil, 0 for Compare. */
RuntimeObject *OLEObjectOperatorAdd(RuntimeObject *self, RuntimeObject *other);
RuntimeObject *OLEObjectOperatorAddRight(RuntimeObject *self, RuntimeObject *other);
RuntimeObject *OLEObjectOperatorSubtract(RuntimeObject *self, RuntimeObject *other);
RuntimeObject *OLEObjectOperatorSubtractRight(RuntimeObject *self, RuntimeObject *other);
RuntimeObject *OLEObjectOperatorMultiply(RuntimeObject *self, RuntimeObject *other);
RuntimeObject *OLEObjectOperatorMultiplyRight(RuntimeObject *self, RuntimeObject *other);
RuntimeObject *OLEObjectOperatorDivide(RuntimeObject *self, RuntimeObject *other);
RuntimeObject *OLEObjectOperatorDivideRight(RuntimeObject *self, RuntimeObject *other);
RuntimeObject *OLEObjectOperatorIntegerDivide(RuntimeObject *self, RuntimeObject *other);
RuntimeObject *OLEObjectOperatorIntegerDivideRight(RuntimeObject *self, RuntimeObject *other);
RuntimeObject *OLEObjectOperatorModulo(RuntimeObject *self, RuntimeObject *other);
RuntimeObject *OLEObjectOperatorModuloRight(RuntimeObject *self, RuntimeObject *other);
RuntimeObject *OLEObjectOperatorAnd(RuntimeObject *self, RuntimeObject *other);
RuntimeObject *OLEObjectOperatorOr(RuntimeObject *self, RuntimeObject *other);
RuntimeObject *OLEObjectOperatorNot(RuntimeObject *self);
RuntimeObject *OLEObjectOperatorNegate(RuntimeObject *self);
RuntimeObject *OLEObjectOperatorConvert(RuntimeObject *self);
int32_t OLEObjectOperatorCompare(RuntimeObject *self, RuntimeObject *other);
void OLEParameterDestructor(RuntimeObject *self);
RuntimeObject *OLEParameterValueGetter(RuntimeObject *self, int32_t unused);
void OLEParameterValueSetter(RuntimeObject *self, int32_t unused, RuntimeObject *value);
void OLEParameterValueArraySetter(RuntimeObject *self, RuntimeObject *array);
RuntimeObject *OLEContainerContentGetter(RuntimeObject *self, int32_t unused);
uint8_t OLEContainerCreateObject(RuntimeObject *self);
void OLEContainerDestroyObject(RuntimeObject *self);
void OLEContainerShowPropertyPages(RuntimeObject *self);
void *OLEContainerCreatePane(RuntimeObject *self, void *parent);
void OLEContainerDestructor(RuntimeObject *self);

/* ---- Apple events, their lists, records, targets and templates */
void appleEventDestructor(RuntimeObject *self);
void appleEventItemDestructor(RuntimeObject *self);
void appleEventTemplateDestructor(RuntimeObject *self);
void appleEventDescListConstructor(RuntimeObject *self);
void appleEventRecordConstructor(RuntimeObject *self);
uint8_t appleEventSend(RuntimeObject *self);
void *appleEventPtrGetter(RuntimeObject *self, int32_t unused);
void appleEventLoadFromTemplate(RuntimeObject *self, RuntimeObject *templ);
void appleEventDescListAppendBoolean(RuntimeObject *self, uint8_t value);
void appleEventDescListAppendInteger(RuntimeObject *self, int32_t value);
void appleEventDescListAppendString(RuntimeObject *self, KelpString value);
void appleEventDescListAppendFolderItem(RuntimeObject *self, RuntimeObject *value);
void appleEventDescListAppendRecord(RuntimeObject *self, RuntimeObject *value);
int32_t appleEventDescListCount(RuntimeObject *self);
uint8_t appleEventDescListGetBooleanItem(RuntimeObject *self, int32_t index);
int32_t appleEventDescListGetIntItem(RuntimeObject *self, int32_t index);
KelpString appleEventDescListGetStrItem(RuntimeObject *self, int32_t index);
RuntimeObject *appleEventDescListGetDescListItem(RuntimeObject *self, int32_t index);
RuntimeObject *appleEventDescListGetFolderItemItem(RuntimeObject *self, int32_t index);
RuntimeObject *appleEventDescListGetObjSpecItem(RuntimeObject *self, int32_t index);
RuntimeObject *appleEventDescListGetRecordItem(RuntimeObject *self, int32_t index);
/* Parameters of an event, by keyword. */
uint8_t appleEventGetBooleanParam(RuntimeObject *self, KelpString keyword);
int32_t appleEventGetIntParam(RuntimeObject *self, KelpString keyword);
int32_t appleEventGetEnumeratedParam(RuntimeObject *self, KelpString keyword);
KelpString appleEventGetMacTypeParam(RuntimeObject *self, KelpString keyword);
KelpString appleEventGetStringParam(RuntimeObject *self, KelpString keyword);
double appleEventGetDoubleParam(RuntimeObject *self, KelpString keyword);
float appleEventGetSingleParam(RuntimeObject *self, KelpString keyword);
RuntimeObject *appleEventGetDescListParam(RuntimeObject *self, KelpString keyword);
RuntimeObject *appleEventGetDescParam(RuntimeObject *self, KelpString keyword);
RuntimeObject *appleEventGetFolderItemParam(RuntimeObject *self, KelpString keyword);
RuntimeObject *appleEventGetRecordParam(RuntimeObject *self, KelpString keyword);
void appleEventSetBooleanParam(RuntimeObject *self, KelpString keyword, uint8_t value);
void appleEventSetIntParam(RuntimeObject *self, KelpString keyword, int32_t value);
void appleEventSetEnumeratedParam(RuntimeObject *self, KelpString keyword, KelpString value);
void appleEventSetMacTypeParam(RuntimeObject *self, KelpString keyword, KelpString value);
void appleEventSetStringParam(RuntimeObject *self, KelpString keyword, KelpString value);
void appleEventSetDoubleParam(RuntimeObject *self, KelpString keyword, double value);
void appleEventSetSingleParam(RuntimeObject *self, KelpString keyword, float value);
void appleEventSetDescParam(RuntimeObject *self, KelpString keyword, RuntimeObject *value);
void appleEventSetFolderItemParam(RuntimeObject *self, KelpString keyword, RuntimeObject *value);
void appleEventSetNullParam(RuntimeObject *self, KelpString keyword);
/* The reply of a sent event. */
KelpString appleEventReply4CharCodeGetter(RuntimeObject *self, int32_t unused);
void appleEventReply4CharCodeSetter(RuntimeObject *self, int32_t unused, KelpString value);
uint8_t appleEventReplyBooleanGetter(RuntimeObject *self, int32_t unused);
void appleEventReplyBooleanSetter(RuntimeObject *self, int32_t unused, uint8_t value);
int32_t appleEventReplyIntegerGetter(RuntimeObject *self, int32_t unused);
void appleEventReplyIntegerSetter(RuntimeObject *self, int32_t unused, int32_t value);
double appleEventReplyDoubleGetter(RuntimeObject *self, int32_t unused);
void appleEventReplyDoubleSetter(RuntimeObject *self, int32_t unused, double value);
float appleEventReplySingleGetter(RuntimeObject *self, int32_t unused);
void appleEventReplySingleSetter(RuntimeObject *self, int32_t unused, float value);
KelpString appleEventReplyStringGetter(RuntimeObject *self, int32_t unused);
void appleEventReplyStringSetter(RuntimeObject *self, int32_t unused, KelpString value);
RuntimeObject *appleEventReplyDescListGetter(RuntimeObject *self, int32_t unused);
RuntimeObject *appleEventReplyFolderItemGetter(RuntimeObject *self, int32_t unused);
void appleEventReplyFolderItemSetter(RuntimeObject *self, int32_t unused, RuntimeObject *value);
RuntimeObject *appleEventReplyObjSpecGetter(RuntimeObject *self, int32_t unused);
void appleEventReplyObjSpecSetter(RuntimeObject *self, int32_t unused, RuntimeObject *value);
RuntimeObject *appleEventReplyRecordGetter(RuntimeObject *self, int32_t unused);
KelpString aeTargetComputerGetter(RuntimeObject *self, int32_t unused);
KelpString aeTargetNameGetter(RuntimeObject *self, int32_t unused);
KelpString aeTargetPortTypeGetter(RuntimeObject *self, int32_t unused);
uint8_t aeTargetRemoteGetter(RuntimeObject *self, int32_t unused);
KelpString aeTargetZoneGetter(RuntimeObject *self, int32_t unused);
RuntimeObject *aeTargetNewAppleEvent(RuntimeObject *self, KelpString eventClass,
                                     KelpString eventID);
void aeTemplateSetIntParam(RuntimeObject *self, KelpString keyword, int32_t value);
void aeTemplateSetStringParam(RuntimeObject *self, KelpString keyword, KelpString value);
void aeTemplateSetFolderItemParam(RuntimeObject *self, KelpString keyword, RuntimeObject *value);
/* Module functions: events, targets and object specifiers to build. */
RuntimeObject *newAppleEventObject(KelpString eventClass, KelpString eventID, KelpString app);
RuntimeObject *newAppleEventTarget(KelpString app);
RuntimeObject *getAppleEventTarget(KelpString app);
RuntimeObject *getIndexedObjectDescriptor(KelpString classID, RuntimeObject *container,
                                          int32_t index);
RuntimeObject *getNamedObjectDescriptor(KelpString classID, RuntimeObject *container,
                                        KelpString name);
RuntimeObject *getOrdinalObjectDescriptor(KelpString classID, RuntimeObject *container,
                                          KelpString ordinal);
RuntimeObject *getPropertyObjectDescriptor(RuntimeObject *container, KelpString propertyID);
RuntimeObject *getRangeObjectDescriptor(KelpString classID, RuntimeObject *container,
                                        RuntimeObject *first, RuntimeObject *last);
RuntimeObject *getStringComparisonObjectDescriptor(KelpString classID, RuntimeObject *container,
                                                   KelpString op, KelpString text);
RuntimeObject *getTestObjectDescriptor(KelpString classID, RuntimeObject *container,
                                       RuntimeObject *test);
RuntimeObject *getUniqueIDObjectDescriptor(KelpString classID, RuntimeObject *container,
                                           int32_t id);

/* ---- The registry */
void RegistryItemPathCtor(RuntimeObject *self, KelpString path); /* raises */
void RegistryItemCopyCtor(RuntimeObject *self, RuntimeObject *other);
void RegistryItemDestructor(RuntimeObject *self);
RuntimeObject *RuntimeGetDefaultApplicationRegistryItem(void);
RuntimeObject *RegistryItemAddFolder(RuntimeObject *self, KelpString name);
RuntimeObject *RegistryItemChild(RuntimeObject *self, KelpString name);
RuntimeObject *RegistryItemItem(RuntimeObject *self, int32_t index);
RuntimeObject *RegistryParentGetter(RuntimeObject *self, int32_t unused);
void RegistryItemDelete(RuntimeObject *self, KelpString name);
int32_t RegistryItemFolderCountGetter(RuntimeObject *self, int32_t unused);
int32_t RegistryItemKeyCountGetter(RuntimeObject *self, int32_t unused);
int32_t RegistryItemKeyTypeGetter(RuntimeObject *self, int32_t index);
KelpString RegistryItemNameGetter(RuntimeObject *self, int32_t index);
KelpString RegistryItemPathGetter(RuntimeObject *self, int32_t unused);
RuntimeObject *RegistryItemValueGetter(RuntimeObject *self, KelpString name);
void RegistryItemValueSetter(RuntimeObject *self, KelpString name, RuntimeObject *value);
RuntimeObject *RegistryItemNumValueGetter(RuntimeObject *self, int32_t index);
void RegistryItemNumValueSetter(RuntimeObject *self, int32_t index, RuntimeObject *value);
RuntimeObject *RegistryItemDefaultValueGetter(RuntimeObject *self, int32_t unused);
void RegistryItemDefaultValueSetter(RuntimeObject *self, int32_t unused, RuntimeObject *value);

/* ---- The key chain */
void KeyChainConstructor(RuntimeObject *self, int32_t index); /* raises */
void KeyChainItemConstructor(RuntimeObject *self);
void KeyChainItemDestructor(RuntimeObject *self);
void KeyChainLock(RuntimeObject *self);
uint8_t KeyChainUnlock(RuntimeObject *self, KelpString password);
void KeyChainAddPassword(RuntimeObject *self, RuntimeObject *item, KelpString password);
KelpString KeyChainFindPassword(RuntimeObject *self, RuntimeObject *item);
KelpString KeyChainItemAttributeGetter(RuntimeObject *self, int32_t selector);
void KeyChainItemAttributeSetter(RuntimeObject *self, int32_t selector, KelpString value);
void KeyChainItemDelete(RuntimeObject *self);

/* ---- The dock: Application.DockItem is nil here. */
RuntimeObject *AppDockItemGetter(RuntimeObject *self, int32_t unused);
void DockItemInitializer(RuntimeObject *self);
void DockItemFinalizer(RuntimeObject *self);
RuntimeObject *DockItemIconGraphicsGetter(RuntimeObject *self, int32_t unused);
void DockItemIconUpdate(RuntimeObject *self);
void DockItemResetIcon(RuntimeObject *self);

/* ---- Movies and the movie player control */
RuntimeObject *openURLMovie(KelpString url);
RuntimeObject *RuntimeGetMovieFromResource(RuntimeObject *file, int32_t index);
void RuntimeMovieDestructor(RuntimeObject *self);
int32_t movieWidthGetter(RuntimeObject *self, int32_t unused);
int32_t movieHeightGetter(RuntimeObject *self, int32_t unused);
int32_t movieBaseWidthGetter(RuntimeObject *self, int32_t unused);
int32_t movieBaseHeightGetter(RuntimeObject *self, int32_t unused);
void *movieHandleGetter(RuntimeObject *self, int32_t unused);
void RuntimeMediaDestructor(RuntimeObject *self);
void RuntimeMediaPlay(RuntimeObject *self);
void RuntimeMediaStop(RuntimeObject *self);
void *MediaCreatePane(RuntimeObject *self, void *parent);
void mediaMovieSetter(RuntimeObject *self, int32_t unused, RuntimeObject *movie);
RuntimeObject *mediaMovieControllerGetter(RuntimeObject *self, int32_t unused);
void MediaControllerSetter(RuntimeObject *self, int32_t unused, int32_t kind);
int32_t mediaControllerWidthGetter(RuntimeObject *self, int32_t unused);
int32_t mediaControllerHeightGetter(RuntimeObject *self, int32_t unused);
void mediaControllerLoopingSetter(RuntimeObject *self, int32_t unused, uint8_t value);
void mediaControllerPalindromeSetter(RuntimeObject *self, int32_t unused, uint8_t value);
RuntimeObject *mediaGetBoundPart(RuntimeObject *self, KelpString name);
void mediaActionDestructor(RuntimeObject *self);
void mediaActionPerformAction(RuntimeObject *self, RuntimeObject *control);

/* ---- Handles of other systems: always 0 here */
uint8_t IsCMMClick(void);
int32_t GetMacInputDriverRef(RuntimeObject *self, int32_t unused);
int32_t GetMacOutputDriverRef(RuntimeObject *self, int32_t unused);
int32_t GetWin32DriverHandle(RuntimeObject *self, int32_t unused);
int32_t getterWinHWND(RuntimeObject *self, int32_t unused);

/* ---- Scripts of the system's script engine: there is none here.  Running
 * one raises; adding parameters to a script that never starts does nothing. */
void RuntimeScriptExecute(KelpString source, KelpString language);        /* raises */
KelpString RuntimeScriptFunction(KelpString source, KelpString language); /* raises */
void RuntimeStartParamScript(KelpString source, KelpString language);     /* raises */
void RuntimeAddStringScriptParam(KelpString value);
void RuntimeAddIntegerScriptParam(int32_t value);
void RuntimeCompleteParamScriptExecute(void);
KelpString RuntimeCompleteParamScriptFunction(void);

/* ---- Speech and notes: no speech engine and no instrument synthesizer
 * here, so Speak says nothing and a NotePlayer plays nothing. */
void RuntimeSpeak(KelpString text, uint8_t interrupt);
void RuntimeNotePlayerConstructor(RuntimeObject *self);
void RuntimeNotePlayerDestructor(RuntimeObject *self);
void notePlayerInstrumentSetter(RuntimeObject *self, int32_t unused, int32_t instrument);
void notePlayerPlayNote(RuntimeObject *self, int32_t note, int32_t velocity);

#ifdef __cplusplus
}
#endif

#endif
