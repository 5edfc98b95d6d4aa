/*
 * The runtime's object and class exports, as compiled code calls them.
 *
 * Ownership: an argument is borrowed; an object returned by RuntimeNewObject,
 * CreateInstance, RuntimeCheckCast or objGetter carries a reference that the
 * caller owns.  Null is a valid object everywhere; locking it does nothing.
 */
#ifndef KELP_OBJECTS_H
#define KELP_OBJECTS_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ------------------------------------------------------------- classes */

/* A new class whose tables have room for the given rows.  The base's rows
 * are copied over the front of each table; the caller fills name, size,
 * initializer, finalizer and its own rows. */
RuntimeClass *RuntimeNewClass(RuntimeClass *base, int32_t methods, int32_t interfaces,
                              int32_t events, int32_t directMethods, int32_t properties);

/* A cleared table of `slots` method rows for one interface row of a class. */
RuntimeMethodRow *RuntimeNewVtable(int32_t slots);

/* The class of a library class by name, built on first use, or null. */
RuntimeClass *RuntimeLookupClass(KelpString name);

/* The method table of the object's row for `interfaceClass`; null with an
 * IllegalCastException when the class has none, NilObjectException for null. */
RuntimeMethodRow *RuntimeLookupInterfaceVtable(RuntimeObject *object, RuntimeClass *interfaceClass);

/* ------------------------------------------------------------- objects */

/* A new object holding one reference, the caller's.  Initializers run from
 * the root class down. */
RuntimeObject *RuntimeNewObject(RuntimeClass *klass);
RuntimeObject *CreateInstance(RuntimeClass *klass);

void RuntimeLockObject(RuntimeObject *object);
void RuntimeUnlockObject(RuntimeObject *object);
/* Assignment of an object variable: lock `newValue`, then unlock `oldValue`,
 * unless they are the same object. */
void RuntimeLockUnlockObjects(RuntimeObject *newValue, RuntimeObject *oldValue);

/* Whether the object is of the class (or implements the interface). */
uint8_t RuntimeObjectIsa(RuntimeObject *object, RuntimeClass *klass);
/* The object with a new reference, or null with an IllegalCastException. */
RuntimeObject *RuntimeCheckCast(RuntimeObject *object, RuntimeClass *klass);
/* Raises NilObjectException; compiled code calls it after a null test. */
void RuntimeNilObject(void);

/* ----------------------------------------------------- events and hooks */

/* Binds `handler` to the named event of this one object (a private copy of
 * the event table is made the first time). */
void RuntimeInstallInstanceEventHandler(RuntimeObject *object, KelpString eventName, void *handler);

/* The code of the hook instance with this id in a class definition (an
 * ObjectDefinition*) or its supers, or null. */
void *RuntimeFindHookCode(void *definition, int32_t hookId);

/* The code of the intrinsic function a declaration names ("Left(s As
 * String, count As Integer) As String"): name and types must match a row of
 * the function table.  Null when none does.  The module is not consulted. */
void *KELPLoadGlobalMethod(void *module, const char *declaration);

/* Event code running in a control's context: *meSlot receives the object
 * of *selfSlot, and *selfSlot its window.  Both slots hold references. */
void RuntimeExchangeSelfAndMe(RuntimeObject **selfSlot, RuntimeObject **meSlot);
/* As above, but *selfSlot becomes the nearest container of class `klass`. */
void RuntimeExchangeSelfAndMeClass(RuntimeObject **selfSlot, RuntimeObject **meSlot,
                                   RuntimeClass *klass);
/* As above, but *selfSlot becomes `object`. */
void RuntimeExchangeSelfAndMeObj(RuntimeObject **selfSlot, RuntimeObject **meSlot,
                                 RuntimeObject *object);

/* ------------------------------------------------ registration at start */

/* Registers the library's classes, modules and functions and puts their
 * entry points in the export table.  Runs once; later calls do nothing. */
void RuntimeInitExternalClasses(void);

/* ------------------------------------------------ the class "Runtime" */

/* Objects are numbered from 0 in the all-objects list, newest first. */
int32_t RuntimeDebugObjectCount(void);
KelpString RuntimeDebugObjectClass(int32_t index); /* owned; empty when out of range */
int32_t RuntimeDebugObjectRefs(int32_t index);     /* -1 when out of range */
int32_t RuntimeDebugMemoryUsed(void);              /* small-block bytes in use */
RuntimeObject *RuntimeDebugInstance(void);         /* owned; the one "Runtime" object */

/* ----------------------------------------------------- generic accessors */

/* Accessors of a field at a byte offset from the object's start, shared by
 * many classes' property rows.  A null object reads as 0 / null / empty and
 * raises NilObjectException; a store to a null object does the same. */
int32_t intGetter(RuntimeObject *object, int32_t offset);
void intSetter(RuntimeObject *object, int32_t offset, int32_t value);
uint8_t boolGetter(RuntimeObject *object, int32_t offset);
void boolSetter(RuntimeObject *object, int32_t offset, uint8_t value);
int16_t shortGetter(RuntimeObject *object, int32_t offset);
void shortSetter(RuntimeObject *object, int32_t offset, int16_t value);
float singleGetter(RuntimeObject *object, int32_t offset);
void singleSetter(RuntimeObject *object, int32_t offset, float value);
double doubleGetter(RuntimeObject *object, int32_t offset);
void doubleSetter(RuntimeObject *object, int32_t offset, double value);
/* Returns the field's object with a new reference (owned by the caller). */
RuntimeObject *objGetter(RuntimeObject *object, int32_t offset);
/* Stores with a lock of the new value and an unlock of the old one. */
void objSetter(RuntimeObject *object, int32_t offset, RuntimeObject *value);
/* Returns the field's string with a new reference (owned by the caller). */
KelpString stringGetter(RuntimeObject *object, int32_t offset);
void stringSetter(RuntimeObject *object, int32_t offset, KelpString value);

/* ObjectCursor: the live objects, newest first, each as a new reference;
 * nil past the last.  Count is the number alive now. */
void objectCursorConstructor(RuntimeObject *self);
void objectCursorDestructor(RuntimeObject *self);
int32_t objectCursorCountGetter(RuntimeObject *self, int32_t unused);
RuntimeObject *objectCursorGetItem(RuntimeObject *self, int32_t index);
RuntimeObject *objectCursorNextObject(RuntimeObject *self);

#ifdef __cplusplus
}
#endif

#endif
