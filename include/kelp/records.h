/*
 * Records shared between the runtime and compiled code.
 *
 * Compiled code reads and writes these records directly, by field position,
 * so their layout is part of the image format.  On x86_64 every field that
 * holds an address is pointer-sized and every other field keeps its width;
 * the field order never changes.  The static assertions at the bottom pin
 * every offset: a change that moves a field breaks the build, not the images.
 *
 * This header is plain C11 and C++ alike.
 */
#ifndef KELP_RECORDS_H
#define KELP_RECORDS_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* ---------------------------------------------------------------- strings */

/* Encoding words (text-encoding numbers: base | variant << 16 | format << 26). */
#define kEncodingUnknown 0x0000FFFFu
#define kEncodingASCII 0x00000600u
#define kEncodingUTF8 0x08000100u
#define kEncodingUTF16 0x00000100u
#define kEncodingLatin1 0x00000201u

/*
 * A string is one pointer to a stringStorage, or null for the empty string.
 * buffer[0] is a length byte (the length, or 255 from 255 on), the text starts
 * at buffer[1], and a NUL follows the text.  A new buffer is length + 2 bytes.
 */
typedef struct stringStorage {
    int32_t referenceCount; /* holders; 1 when created */
    uint8_t *buffer;        /* length byte, text, NUL */
    uint32_t capacity;      /* bytes in buffer; needed to free it */
    int32_t length;         /* text length in bytes */
    uint32_t encoding;      /* encoding word */
} stringStorage;

typedef stringStorage *KelpString;

/*
 * A string literal in an image's data segment: the record, then at offset 32
 * the length byte, the text and a NUL.  The binder points a null buffer at the
 * length byte.  The next literal starts at the next multiple of 8.
 */
#define KELP_LITERAL_TEXT_OFFSET 32
#define KELP_LITERAL_ALIGN 8

/* ------------------------------------------------------ objects and classes */

struct RuntimeClass;

/* Six words, then the class's own fields. */
typedef struct RuntimeObject {
    void *methodTable;              /* the class's method table */
    struct RuntimeClass *klass;     /* the object's class */
    void *eventTable;               /* class table, or a private copy */
    int32_t referenceCount;         /* 1 when created */
    struct RuntimeObject *previous; /* all-objects list */
    struct RuntimeObject *next;     /* all-objects list */
} RuntimeObject;

/* The first field of a class lies here, behind the six header words. */
#define KELP_OBJECT_FIELDS_OFFSET ((uint32_t)sizeof(RuntimeObject))

typedef void (*RuntimeObjectHook)(RuntimeObject *object);

/* Row of a method table, a direct method table or an interface's table. */
typedef struct RuntimeMethodRow {
    void *code;
    stringStorage *signature;
} RuntimeMethodRow;

/* Row of an event table: handler code, or null when the event does nothing. */
typedef struct RuntimeEventRow {
    void *handler;
    stringStorage *name;
} RuntimeEventRow;

/* Row of a property table.  getter and setter are code, 0 for none, or 1 for
 * plain access to the field at fieldOffset. */
typedef struct RuntimePropertyRow {
    stringStorage *signature;
    int32_t fieldOffset;
    void *getter;
    void *setter;
} RuntimePropertyRow;

/* Row of an interface table, held in place behind the class header. */
typedef struct RuntimeInterfaceRow {
    struct RuntimeClass *interfaceClass;
    int32_t slotCount;
    RuntimeMethodRow *methodTable;
} RuntimeInterfaceRow;

/*
 * A class: the header, then in one block the interface rows, the method rows,
 * the event rows, the direct method rows and the property rows.
 */
typedef struct RuntimeClass {
    struct RuntimeClass *base;      /* null for a root class */
    stringStorage *name;            /* holds a reference */
    struct RuntimeClass *nextClass; /* all-classes list, newest first */
    uint32_t instanceSize;          /* bytes, header words included */
    uint32_t isInterface;           /* not 0: can't be instantiated */
    RuntimeObjectHook initializer;
    RuntimeObjectHook destructor;
    RuntimeObjectHook finalizer;
    int32_t methodCount;
    RuntimeMethodRow *methodTable;
    int32_t eventCount;
    RuntimeEventRow *eventTable;
    int32_t directMethodCount;
    RuntimeMethodRow *directMethodTable;
    int32_t propertyCount;
    RuntimePropertyRow *propertyTable;
    int32_t interfaceCount;
    RuntimeInterfaceRow interfaceTable[]; /* rows in place */
} RuntimeClass;

/* RuntimeException and all its subclasses: the object, then ErrorNumber and
 * Message (holds a reference). */
typedef struct RuntimeExceptionObject {
    RuntimeObject object;
    int32_t errorNumber;
    stringStorage *message;
} RuntimeExceptionObject;

/* ---------------------------------------------------------------- arrays */

/* Element kinds of CreateArray. */
enum {
    kArrayInt32 = 0,
    kArrayFloat32 = 1,
    kArrayFloat64 = 2,
    kArrayString = 3,
    kArrayObject = 4,
    kArrayUInt8 = 5,
    kArrayInt8 = 6,
    kArrayUInt16 = 7,
    kArrayInt16 = 8,
    kArrayUInt32 = 9
};

#define KELP_ARRAY_SLOT_COUNT 16

/*
 * An array: compiled code loads `operations` and calls a slot by position
 * (Get, Set, GetUnchecked, SetUnchecked, Redim, Insert, Remove, Sort, IndexOf,
 * Shuffle, UBoundOf, LockElement, UnlockElement, ReleaseElements, -, -).
 */
typedef struct RuntimeArray {
    uint32_t referenceCount; /* 1 when created */
    void *const *operations; /* 16 slots */
    void *buffer;            /* element storage, null when empty */
    int32_t dimensions;      /* at least 1 */
    int32_t bufferLength;    /* bytes */
    int32_t growthStep;      /* elements; 16 at creation */
    int32_t upperBounds[];   /* one per dimension; -1 means empty */
} RuntimeArray;

/* A typed view of an object array, checking stores against a class. */
typedef struct RuntimeCastArray {
    uint32_t referenceCount;
    void *const *operations;
    void *buffer;        /* the inner array's buffer */
    RuntimeArray *inner; /* holds a reference */
    struct RuntimeClass *klass;
} RuntimeCastArray;

/* ------------------------------------------------ memory blocks and encodings */

/* A MemoryBlock: a sized buffer that it owns (mSizeKnown set, every access
 * checked against mSize), or an unsized view on memory it doesn't own. */
typedef struct MemoryBlockObject {
    RuntimeObject object;
    int32_t mSize;        /* bytes; 0 on an unsized view */
    uint8_t *mData;       /* the bytes, or null */
    uint8_t mSizeKnown;   /* 1: owned and checked; 0: unsized view */
    uint8_t littleEndian; /* byte order of multi-byte accessors; 1 at start */
} MemoryBlockObject;

/* A TextEncoding: base | variant << 16 | format << 26 in parts, and the word. */
typedef struct TextEncodingObject {
    RuntimeObject object;
    uint32_t base;
    uint32_t variant;
    uint32_t format;
    uint32_t valid; /* always 1 */
    uint32_t word;  /* 0x08000100 for base 256 format 2, else the base */
} TextEncodingObject;

/* A TextConverter: the source and target encoding words. */
typedef struct TextConverterObject {
    RuntimeObject object;
    uint32_t source;
    uint32_t target;
} TextConverterObject;

/* ------------------------------------------------------------ export rows */

/* A row of the export table: a name and the function it binds to. */
typedef struct RelocEntry {
    const char *name; /* not owned */
    void *code;
    void *reserved1; /* always 0 */
    void *reserved2; /* always 0 */
} RelocEntry;

/* ---------------------------------------------------------------- controls */

/* The four edges of a rectangle in the order the language's Rect keeps. */
typedef struct KelpRect {
    int16_t top, left, bottom, right;
} KelpRect;

/*
 * Every control of a layout: the object, then these fields, then the fields
 * of its class.  `bounds` is in root-window coordinates, so that it
 * survives without a pane; `index` 0x80000000 means not in a control array.
 */
typedef struct RuntimeControl {
    RuntimeObject object;
    RuntimeObject *initialParent; /* control named by InitialParent */
    void *pane;                   /* bound pane, null before binding and after close */
    stringStorage *name;          /* Name (holds a reference) */
    int32_t index;                /* array element, or 0x80000000 */
    int32_t tabPanelIndex;        /* page of the panel it lies on */
    uint8_t visible, enabled, autoDeactivate, mouseInside;
    uint8_t isWindowChild; /* made by the window's own layout */
    uint8_t lockLeft, lockTop, lockRight, lockBottom;
    KelpRect bounds;                    /* window coordinates */
    void *paneWindow;                   /* the window pane holding the pane */
    RuntimeObject *view;                /* the Window that owns the control */
    RuntimeObject *mouseCursor;         /* counted */
    stringStorage *balloonHelp;         /* counted */
    stringStorage *disabledBalloonHelp; /* counted */
    stringStorage *helpTag;             /* counted */
    void *menuHandlers;                 /* name -> code, made on first use */
} RuntimeControl;

#define KELP_NOT_IN_ARRAY ((int32_t)0x80000000u)

/* ---------------------------------------------------------------- menus */

/* MenuItem and its subclasses (MenuBar, QuitMenuItem, ...): one field, the
 * runtime's implementation of the item, made by the initialiser. */
typedef struct RuntimeMenuItem {
    RuntimeObject object;
    void *mImp; /* the item's master implementation; never null while alive */
} RuntimeMenuItem;

#ifdef __cplusplus
} /* extern "C" */
#define KELP_STATIC_ASSERT static_assert
#else
#define KELP_STATIC_ASSERT _Static_assert
#endif

/* ------------------------------------------------------- layout, pinned */

KELP_STATIC_ASSERT(sizeof(void *) == 8, "this port is x86_64");

KELP_STATIC_ASSERT(offsetof(stringStorage, referenceCount) == 0, "stringStorage.referenceCount");
KELP_STATIC_ASSERT(offsetof(stringStorage, buffer) == 8, "stringStorage.buffer");
KELP_STATIC_ASSERT(offsetof(stringStorage, capacity) == 16, "stringStorage.capacity");
KELP_STATIC_ASSERT(offsetof(stringStorage, length) == 20, "stringStorage.length");
KELP_STATIC_ASSERT(offsetof(stringStorage, encoding) == 24, "stringStorage.encoding");
KELP_STATIC_ASSERT(sizeof(stringStorage) == 32, "stringStorage size");
KELP_STATIC_ASSERT(KELP_LITERAL_TEXT_OFFSET == sizeof(stringStorage),
                   "literal text follows the record");

KELP_STATIC_ASSERT(offsetof(RuntimeObject, methodTable) == 0, "RuntimeObject.methodTable");
KELP_STATIC_ASSERT(offsetof(RuntimeObject, klass) == 8, "RuntimeObject.klass");
KELP_STATIC_ASSERT(offsetof(RuntimeObject, eventTable) == 16, "RuntimeObject.eventTable");
KELP_STATIC_ASSERT(offsetof(RuntimeObject, referenceCount) == 24, "RuntimeObject.referenceCount");
KELP_STATIC_ASSERT(offsetof(RuntimeObject, previous) == 32, "RuntimeObject.previous");
KELP_STATIC_ASSERT(offsetof(RuntimeObject, next) == 40, "RuntimeObject.next");
KELP_STATIC_ASSERT(sizeof(RuntimeObject) == 48, "RuntimeObject size");

KELP_STATIC_ASSERT(sizeof(RuntimeMethodRow) == 16, "method row");
KELP_STATIC_ASSERT(sizeof(RuntimeEventRow) == 16, "event row");
KELP_STATIC_ASSERT(offsetof(RuntimePropertyRow, fieldOffset) == 8, "property row offset");
KELP_STATIC_ASSERT(offsetof(RuntimePropertyRow, getter) == 16, "property row getter");
KELP_STATIC_ASSERT(offsetof(RuntimePropertyRow, setter) == 24, "property row setter");
KELP_STATIC_ASSERT(sizeof(RuntimePropertyRow) == 32, "property row");
KELP_STATIC_ASSERT(offsetof(RuntimeInterfaceRow, slotCount) == 8, "interface row slots");
KELP_STATIC_ASSERT(offsetof(RuntimeInterfaceRow, methodTable) == 16, "interface row table");
KELP_STATIC_ASSERT(sizeof(RuntimeInterfaceRow) == 24, "interface row");

KELP_STATIC_ASSERT(offsetof(RuntimeClass, base) == 0, "RuntimeClass.base");
KELP_STATIC_ASSERT(offsetof(RuntimeClass, name) == 8, "RuntimeClass.name");
KELP_STATIC_ASSERT(offsetof(RuntimeClass, nextClass) == 16, "RuntimeClass.nextClass");
KELP_STATIC_ASSERT(offsetof(RuntimeClass, instanceSize) == 24, "RuntimeClass.instanceSize");
KELP_STATIC_ASSERT(offsetof(RuntimeClass, isInterface) == 28, "RuntimeClass.isInterface");
KELP_STATIC_ASSERT(offsetof(RuntimeClass, initializer) == 32, "RuntimeClass.initializer");
KELP_STATIC_ASSERT(offsetof(RuntimeClass, destructor) == 40, "RuntimeClass.destructor");
KELP_STATIC_ASSERT(offsetof(RuntimeClass, finalizer) == 48, "RuntimeClass.finalizer");
KELP_STATIC_ASSERT(offsetof(RuntimeClass, methodCount) == 56, "RuntimeClass.methodCount");
KELP_STATIC_ASSERT(offsetof(RuntimeClass, methodTable) == 64, "RuntimeClass.methodTable");
KELP_STATIC_ASSERT(offsetof(RuntimeClass, eventCount) == 72, "RuntimeClass.eventCount");
KELP_STATIC_ASSERT(offsetof(RuntimeClass, eventTable) == 80, "RuntimeClass.eventTable");
KELP_STATIC_ASSERT(offsetof(RuntimeClass, directMethodCount) == 88,
                   "RuntimeClass.directMethodCount");
KELP_STATIC_ASSERT(offsetof(RuntimeClass, directMethodTable) == 96,
                   "RuntimeClass.directMethodTable");
KELP_STATIC_ASSERT(offsetof(RuntimeClass, propertyCount) == 104, "RuntimeClass.propertyCount");
KELP_STATIC_ASSERT(offsetof(RuntimeClass, propertyTable) == 112, "RuntimeClass.propertyTable");
KELP_STATIC_ASSERT(offsetof(RuntimeClass, interfaceCount) == 120, "RuntimeClass.interfaceCount");
KELP_STATIC_ASSERT(offsetof(RuntimeClass, interfaceTable) == 128, "RuntimeClass.interfaceTable");

KELP_STATIC_ASSERT(offsetof(RuntimeExceptionObject, errorNumber) == 48,
                   "RuntimeException.ErrorNumber");
KELP_STATIC_ASSERT(offsetof(RuntimeExceptionObject, message) == 56, "RuntimeException.Message");
KELP_STATIC_ASSERT(sizeof(RuntimeExceptionObject) == 64, "RuntimeException size");

KELP_STATIC_ASSERT(offsetof(RuntimeArray, referenceCount) == 0, "RuntimeArray.referenceCount");
KELP_STATIC_ASSERT(offsetof(RuntimeArray, operations) == 8, "RuntimeArray.operations");
KELP_STATIC_ASSERT(offsetof(RuntimeArray, buffer) == 16, "RuntimeArray.buffer");
KELP_STATIC_ASSERT(offsetof(RuntimeArray, dimensions) == 24, "RuntimeArray.dimensions");
KELP_STATIC_ASSERT(offsetof(RuntimeArray, bufferLength) == 28, "RuntimeArray.bufferLength");
KELP_STATIC_ASSERT(offsetof(RuntimeArray, growthStep) == 32, "RuntimeArray.growthStep");
KELP_STATIC_ASSERT(offsetof(RuntimeArray, upperBounds) == 36, "RuntimeArray.upperBounds");

KELP_STATIC_ASSERT(offsetof(RuntimeCastArray, referenceCount) == 0,
                   "RuntimeCastArray.referenceCount");
KELP_STATIC_ASSERT(offsetof(RuntimeCastArray, operations) == 8, "RuntimeCastArray.operations");
KELP_STATIC_ASSERT(offsetof(RuntimeCastArray, buffer) == 16, "RuntimeCastArray.buffer");
KELP_STATIC_ASSERT(offsetof(RuntimeCastArray, inner) == 24, "RuntimeCastArray.inner");
KELP_STATIC_ASSERT(offsetof(RuntimeCastArray, klass) == 32, "RuntimeCastArray.klass");
KELP_STATIC_ASSERT(sizeof(RuntimeCastArray) == 40, "RuntimeCastArray size");

KELP_STATIC_ASSERT(offsetof(RelocEntry, code) == 8, "RelocEntry.code");
KELP_STATIC_ASSERT(sizeof(RelocEntry) == 32, "RelocEntry size");

KELP_STATIC_ASSERT(offsetof(MemoryBlockObject, mSize) == 48, "MemoryBlock.mSize");
KELP_STATIC_ASSERT(offsetof(MemoryBlockObject, mData) == 56, "MemoryBlock.mData");
KELP_STATIC_ASSERT(offsetof(MemoryBlockObject, mSizeKnown) == 64, "MemoryBlock.mSizeKnown");
KELP_STATIC_ASSERT(offsetof(MemoryBlockObject, littleEndian) == 65, "MemoryBlock.LittleEndian");
KELP_STATIC_ASSERT(sizeof(MemoryBlockObject) == 72, "MemoryBlock size");
KELP_STATIC_ASSERT(offsetof(TextEncodingObject, base) == 48, "TextEncoding.base");
KELP_STATIC_ASSERT(offsetof(TextEncodingObject, variant) == 52, "TextEncoding.variant");
KELP_STATIC_ASSERT(offsetof(TextEncodingObject, format) == 56, "TextEncoding.format");
KELP_STATIC_ASSERT(offsetof(TextEncodingObject, valid) == 60, "TextEncoding.valid");
KELP_STATIC_ASSERT(offsetof(TextEncodingObject, word) == 64, "TextEncoding.word");
KELP_STATIC_ASSERT(sizeof(TextEncodingObject) == 72, "TextEncoding size");
KELP_STATIC_ASSERT(offsetof(TextConverterObject, source) == 48, "TextConverter.source");
KELP_STATIC_ASSERT(offsetof(TextConverterObject, target) == 52, "TextConverter.target");
KELP_STATIC_ASSERT(sizeof(TextConverterObject) == 56, "TextConverter size");
/* ------------------------------------------------- dates and variants */

#ifdef __cplusplus
extern "C" {
#endif

/* A Date: the object, then its calendar fields (owned by the runtime). */
typedef struct RuntimeDateObject {
    RuntimeObject object;
    void *imp; /* the DateImpUnix; made by AutoInitDate */
} RuntimeDateObject;

/* The hidden classes that box a value in a Variant: the object, then the
 * value.  Integer, UInteger and Color share the 32-bit form. */
typedef struct RuntimeVariantWord {
    RuntimeObject object;
    uint32_t value;
} RuntimeVariantWord;
typedef struct RuntimeVariantDouble {
    RuntimeObject object;
    double value;
} RuntimeVariantDouble;
typedef struct RuntimeVariantString {
    RuntimeObject object;
    stringStorage *value; /* holds a reference; may be null */
} RuntimeVariantString;
typedef struct RuntimeVariantBoolean {
    RuntimeObject object;
    uint8_t value;
} RuntimeVariantBoolean;

#ifdef __cplusplus
} /* extern "C" */
#endif

KELP_STATIC_ASSERT(offsetof(RuntimeDateObject, imp) == 48, "Date.imp");
KELP_STATIC_ASSERT(sizeof(RuntimeDateObject) == 56, "Date size");
KELP_STATIC_ASSERT(offsetof(RuntimeVariantWord, value) == 48, "Variant(Integer).value");
KELP_STATIC_ASSERT(sizeof(RuntimeVariantWord) == 56, "Variant(Integer) size");
KELP_STATIC_ASSERT(offsetof(RuntimeVariantDouble, value) == 48, "Variant(Double).value");
KELP_STATIC_ASSERT(sizeof(RuntimeVariantDouble) == 56, "Variant(Double) size");
KELP_STATIC_ASSERT(offsetof(RuntimeVariantString, value) == 48, "Variant(String).value");
KELP_STATIC_ASSERT(sizeof(RuntimeVariantString) == 56, "Variant(String) size");
KELP_STATIC_ASSERT(offsetof(RuntimeVariantBoolean, value) == 48, "Variant(Boolean).value");
KELP_STATIC_ASSERT(sizeof(RuntimeVariantBoolean) == 56, "Variant(Boolean) size");
KELP_STATIC_ASSERT(sizeof(KelpRect) == 8, "KelpRect size");
KELP_STATIC_ASSERT(offsetof(RuntimeControl, initialParent) == 48, "Control.initialParent");
KELP_STATIC_ASSERT(offsetof(RuntimeControl, pane) == 56, "Control.pane");
KELP_STATIC_ASSERT(offsetof(RuntimeControl, name) == 64, "Control.Name");
KELP_STATIC_ASSERT(offsetof(RuntimeControl, index) == 72, "Control.Index");
KELP_STATIC_ASSERT(offsetof(RuntimeControl, tabPanelIndex) == 76, "Control.TabPanelIndex");
KELP_STATIC_ASSERT(offsetof(RuntimeControl, visible) == 80, "Control.Visible");
KELP_STATIC_ASSERT(offsetof(RuntimeControl, enabled) == 81, "Control.Enabled");
KELP_STATIC_ASSERT(offsetof(RuntimeControl, autoDeactivate) == 82, "Control.AutoDeactivate");
KELP_STATIC_ASSERT(offsetof(RuntimeControl, mouseInside) == 83, "Control.mouseInside");
KELP_STATIC_ASSERT(offsetof(RuntimeControl, isWindowChild) == 84, "Control.isWindowChild");
KELP_STATIC_ASSERT(offsetof(RuntimeControl, lockLeft) == 85, "Control.LockLeft");
KELP_STATIC_ASSERT(offsetof(RuntimeControl, lockTop) == 86, "Control.LockTop");
KELP_STATIC_ASSERT(offsetof(RuntimeControl, lockRight) == 87, "Control.LockRight");
KELP_STATIC_ASSERT(offsetof(RuntimeControl, lockBottom) == 88, "Control.LockBottom");
KELP_STATIC_ASSERT(offsetof(RuntimeControl, bounds) == 90, "Control.bounds");
KELP_STATIC_ASSERT(offsetof(RuntimeControl, paneWindow) == 104, "Control.paneWindow");
KELP_STATIC_ASSERT(offsetof(RuntimeControl, view) == 112, "Control.m_view");
KELP_STATIC_ASSERT(offsetof(RuntimeControl, mouseCursor) == 120, "Control.MouseCursor");
KELP_STATIC_ASSERT(offsetof(RuntimeControl, balloonHelp) == 128, "Control.BalloonHelp");
KELP_STATIC_ASSERT(offsetof(RuntimeControl, disabledBalloonHelp) == 136,
                   "Control.DisabledBalloonHelp");
KELP_STATIC_ASSERT(offsetof(RuntimeControl, helpTag) == 144, "Control.HelpTag");
KELP_STATIC_ASSERT(offsetof(RuntimeControl, menuHandlers) == 152, "Control.mMenuHandlers");
KELP_STATIC_ASSERT(sizeof(RuntimeControl) == 160, "RuntimeControl size");
KELP_STATIC_ASSERT(offsetof(RuntimeMenuItem, mImp) == 48, "MenuItem.mImp");
KELP_STATIC_ASSERT(sizeof(RuntimeMenuItem) == 56, "RuntimeMenuItem size");

#endif /* KELP_RECORDS_H */
