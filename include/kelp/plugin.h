/*
 * The plug-in interface: what a shared library sees of the runtime.
 *
 * A plug-in is a shared library that exports one function, KELPPluginMain.
 * The runtime calls it once at start-up with a resolver: a function from a
 * name to the address of a runtime function (null for a name it doesn't
 * know).  Everything else the plug-in finds through the resolver.  A
 * minimal plug-in:
 *
 *     #include "kelp/plugin.h"
 *
 *     static KELPResolver gResolve;
 *     static int32_t Twice(RuntimeObject *self, int32_t n) { (void)self; return 2 * n; }
 *     static KELPmethodDefinition gMethods[] = {
 *         {(void *)Twice, KELP_NO_SETTER, "Twice(n As Integer) As Integer", 0},
 *     };
 *     static KELPclassDefinition gClass = {
 *         7, "Doubler", NULL, 0, 0, NULL, NULL, NULL, 0, gMethods, 1, NULL, 0, NULL, 0, NULL,
 *     };
 *     void KELPPluginMain(KELPResolver resolve) {
 *         gResolve = resolve;
 *         ((KELPRegisterVersionProc)resolve("RegisterPluginVersion"))(7);
 *         ((KELPRegisterClassProc)resolve("PluginRegisterClass"))(&gClass);
 *     }
 *
 * built with `cc -shared -fPIC -I<runtime>/include`, and packed into an image
 * with `kelp-image pack ... --plugin 65535:libDoubler.so`.  Compiled code
 * then reaches the method as the entry "Doubler.Twice(n As Integer) As
 * Integer" (RuntimeLookupPluginEntrypoint); see plugins/example for a plug-in
 * with a class, a control, a module and an interface.
 *
 * Records.  The runtime keeps the pointers to the plug-in's records for the
 * life of the process and writes into them (forSystemUse, the flag bit
 * 0x2000 of a property), so they must be static and writable.  Each record
 * starts with its format version; write 7.  Every field that holds an
 * address (text, tables, functions) is pointer-sized on this port; counts,
 * flags and sizes are 32-bit.  The layouts are pinned at the end of this
 * header.
 *
 * Declarations are text in the language's own syntax: "Name(a As Integer,
 * ByRef b As String) As Boolean"; up to 32 parameters; types Integer,
 * Boolean, Color, String, Single, Double, Object or a class name.  A
 * declaration that doesn't parse drops its row without a word.
 *
 * Instance data.  A class's own data lie in the object at the offset the
 * runtime writes to forSystemUse when it links the class (KELP_CLASS_DATA_OFFSET
 * for a root class); a control's at KELP_CONTROL_DATA_OFFSET.
 *
 * This header is plain C11 and C++ alike.
 */
#ifndef KELP_PLUGIN_H
#define KELP_PLUGIN_H

#include "kelp/records.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ------------------------------------------------------------- the entry */

typedef void *(*KELPResolver)(const char *name);
/* The one symbol the runtime looks up in a plug-in. */
void KELPPluginMain(KELPResolver resolver);

/* A getter or setter of -1: the runtime's default accessor on the field at
 * the property's parameter.  0: none. */
#define KELP_DEFAULT_ACCESSOR ((void *)(intptr_t)-1)
/* A method row without a setter form. */
#define KELP_NO_SETTER ((void *)(intptr_t)-1)
/* A method function that stands for "no implementation": looking its entry
 * up is a fatal report. */
#define KELPnoImplementation ((void *)(intptr_t)-1)

/* The interface version this header describes. */
#define KELP_PLUGIN_VERSION 7

/* --------------------------------------------------------------- records */

/* A property: 10 words.  flags 0x01: a control's default setter redraws the
 * control when the value changes; 0x02: read-only.  The runtime sets 0x2000
 * when it registers the row. */
typedef struct KELPproperty {
    const char *group;  /* design-time grouping; not read at run time */
    const char *name;   /* "Value" */
    const char *type;   /* "Boolean", "Integer", "String", a class name, ... */
    uint32_t flags;     /* 0x01 redraw, 0x02 read-only, 0x2000 registered */
    void *getter;       /* 0 none, KELP_DEFAULT_ACCESSOR, or getter(object, parameter) */
    void *setter;       /* 0 none, KELP_DEFAULT_ACCESSOR, or setter(object, parameter, value) */
    int32_t parameter;  /* offset of the field in the instance data */
    const char *editor; /* design-time only */
    int32_t enumerationCount;
    const char *const *enumeration;
} KELPproperty;

/* A method row from format version 7 on: four words.  Below 7 a row has
 * only the first three (KELPmethodDefinitionV6). */
typedef struct KELPmethodDefinition {
    void *function;          /* called with the object first, then the parameters */
    void *setterFunction;    /* the "Assigns" form, or KELP_NO_SETTER */
    const char *declaration; /* "Twice(n As Integer) As Integer" */
    void *reserved;          /* not read */
} KELPmethodDefinition;

typedef struct KELPmethodDefinitionV6 {
    void *function;
    void *setterFunction;
    const char *declaration;
} KELPmethodDefinitionV6;

/* An event the class declares: "Action" or "MouseDown(X As Integer, Y As
 * Integer) As Boolean".  forSystemUse receives the runtime's event record,
 * which GetEventInstance takes. */
typedef struct KELPevent {
    const char *declaration;
    void *forSystemUse;
} KELPevent;

/* An implementation of an inherited event. */
typedef struct KELPeventInstance {
    const char *name;
    void *function;
} KELPeventInstance;

typedef struct KELPclassDefinition {
    int32_t version;
    const char *name;
    const char *superName; /* null or "" for a root class */
    int32_t dataSize;      /* bytes of the plug-in's own instance data */
    int32_t forSystemUse;  /* written by the runtime: offset of the data */
    void (*constructor)(RuntimeObject *object);
    void (*destructor)(RuntimeObject *object);
    KELPproperty *properties;
    int32_t propertyCount;
    void *methods; /* KELPmethodDefinition rows, stride by version */
    int32_t methodCount;
    KELPevent *events;
    int32_t eventCount;
    KELPeventInstance *eventInstances;
    int32_t eventInstanceCount;
    const char *interfaces; /* names joined by ","; may be null */
} KELPclassDefinition;

/* The twenty-five behaviour entries of a control, each a function or null.
 * Mouse positions are in window coordinates: subtract the control's bounds
 * (GetControlBounds) for a local point. */
typedef struct KELPcontrolBehaviour {
    void (*constructor)(RuntimeObject *control);
    void (*destructor)(RuntimeObject *control);
    void (*redraw)(RuntimeObject *control, RuntimeObject *graphics);
    int32_t (*mouseDown)(RuntimeObject *control, int32_t x, int32_t y);
    void (*mouseDrag)(RuntimeObject *control, int32_t x, int32_t y);
    void (*mouseUp)(RuntimeObject *control, int32_t x, int32_t y);
    void (*gainedFocus)(RuntimeObject *control);
    void (*lostFocus)(RuntimeObject *control);
    int32_t (*keyDown)(RuntimeObject *control, int32_t character, int32_t keyCode,
                       int32_t modifiers);
    void (*open)(RuntimeObject *control);
    void (*close)(RuntimeObject *control);
    void (*backgroundIdle)(RuntimeObject *control);
    void (*drawOffscreen)(RuntimeObject *control, RuntimeObject *graphics);
    void (*setSpecialBackground)(RuntimeObject *control);
    void (*constantChanging)(RuntimeObject *control, KelpString name);
    void (*droppedNewInstance)(RuntimeObject *control);
    void (*mouseEnter)(RuntimeObject *control);
    void (*mouseExit)(RuntimeObject *control);
    void (*mouseMove)(RuntimeObject *control, int32_t x, int32_t y);
    void (*stateChanged)(RuntimeObject *control, int32_t code); /* 2: enabled changed */
    void (*actionEvent)(RuntimeObject *control, int32_t code);
    void *(*controlHandleGetter)(RuntimeObject *control); /* a GtkWidget, or null */
    int32_t (*mouseWheel)(RuntimeObject *control, int32_t x, int32_t y, int32_t delta);
    void (*enableMenuItems)(RuntimeObject *control);
    int32_t (*menuItemAction)(RuntimeObject *control, RuntimeObject *item);
} KELPcontrolBehaviour;

/* Control flags the runtime reads. */
#define KELP_CONTROL_FOCUSABLE 0x01     /* takes the keyboard focus */
#define KELP_CONTROL_PLAIN_CONTROL 0x04 /* superclass Control, not RectControl */
/* Left and Top read and write the stored bounds as they are, in window
 * coordinates, also inside a container control. */
#define KELP_CONTROL_STORED_POSITION 0x08
/* The control sets the pointer's shape itself (with GDK, on its widget's
 * parent window); the window leaves it so while the pointer is over it. */
#define KELP_CONTROL_OWN_CURSOR 0x20

typedef struct KELPcontrol {
    int32_t version;
    const char *name;
    int32_t dataSize;
    uint32_t flags;
    int32_t toolbarPicture, toolbarPicturePressed; /* design-time only */
    int32_t defaultWidth, defaultHeight;
    KELPproperty *properties;
    int32_t propertyCount;
    void *methods; /* KELPmethodDefinition rows, stride by version */
    int32_t methodCount;
    KELPevent *events;
    int32_t eventCount;
    KELPcontrolBehaviour *behaviour;
    int32_t forSystemUse; /* written by the runtime: KELP_CONTROL_DATA_OFFSET */
    /* from version 4 on */
    KELPeventInstance *eventInstances;
    int32_t eventInstanceCount;
    const char *interfaces;
} KELPcontrol;

typedef struct KELPmoduleDefinition {
    int32_t version;
    const char *name;
    void *methods; /* KELPmethodDefinition rows, stride by version */
    int32_t methodCount;
} KELPmoduleDefinition;

typedef struct KELPinterfaceDefinition {
    int32_t version;
    const char *name;
    void *methods;
    int32_t methodCount;
} KELPinterfaceDefinition;

/* ------------------------------------------- records of interface version 1
 *
 * Plug-ins of the first interface wrote shorter records and named their
 * functions by index into a table of their own (RegisterPluginExports).
 * The runtime converts them when they are registered; new plug-ins have no
 * use for these. */

/* A row of the exports table: the code is the second word.  The table ends
 * at the first row whose code is null. */
typedef struct KELPexportRow {
    const char *name; /* for the plug-in's own use */
    void *code;
    intptr_t reserved;
} KELPexportRow;

/* A property of version 1: five words, always on the default accessors. */
typedef struct KELPpropertyV1 {
    const char *group;
    const char *name;
    const char *type;
    uint32_t flags;
    int32_t parameter; /* offset of the field in the instance data */
} KELPpropertyV1;

/* A method row of version 1: the functions are indexes into the exports
 * table; a setter index of -1 is none. */
typedef struct KELPmethodDefinitionV1 {
    intptr_t function;
    intptr_t setterFunction;
    const char *declaration;
} KELPmethodDefinitionV1;

/* A control of record version 1.  `klass` receives the class the runtime
 * made for it, once the plug-ins are linked. */
typedef struct KELPcontrolV1 {
    int32_t version; /* 1 */
    const char *name;
    int32_t dataSize;
    uint32_t flags;
    int32_t toolbarPicture, toolbarPicturePressed;
    KELPpropertyV1 *properties;
    int32_t propertyCount;
    KELPmethodDefinitionV1 *methods;
    int32_t methodCount;
    KELPevent *events;
    int32_t eventCount;
    KELPcontrolBehaviour *behaviour;
    RuntimeClass *klass;
} KELPcontrolV1;

/* A control object: the control fields, the definition the runtime found
 * for it, its custom flag, then the plug-in's data. */
typedef struct RuntimeCustomControl {
    RuntimeControl control;
    const KELPcontrol *definition;
    uint8_t customFlag;
} RuntimeCustomControl;

#define KELP_CLASS_DATA_OFFSET ((int32_t)sizeof(RuntimeObject))
#define KELP_CONTROL_DATA_OFFSET 176

/* ----------------------------------------------- calls through the resolver */

typedef void (*KELPRegisterVersionProc)(int32_t version);
typedef void (*KELPRegisterClassProc)(KELPclassDefinition *record);
typedef void (*KELPRegisterControlProc)(KELPcontrol *record);
typedef void (*KELPRegisterModuleProc)(KELPmoduleDefinition *record);
typedef void (*KELPRegisterInterfaceProc)(KELPinterfaceDefinition *record);
typedef void (*KELPRegisterMethodProc)(KELPmethodDefinition *record);

/* ------------------------------------------------- the runtime's side */

/* Registration: each needs a plug-in whose main entry is running. */
void RegisterPluginVersion(int32_t version);
void RegisterPluginExports(void *exports);
void PluginRegisterClass(KELPclassDefinition *record);
/* Kept only: the running program adds nothing to an existing class. */
void PluginRegisterClassExtension(KELPclassDefinition *record);
void PluginRegisterControl(KELPcontrol *record);
void PluginRegisterModule(KELPmoduleDefinition *record);
void PluginRegisterInterface(KELPinterfaceDefinition *record);
void PluginRegisterMethod(KELPmethodDefinition *record);

/* The table compiled code fills from RuntimeLookupPluginEntrypoint: count
 * pointer-sized words, never freed; null for a count of 0. */
void **RuntimeAllocatePluginEntrypointsTable(int32_t count);
/* The code (or event record) of an entry name such as "Class.Method(x As
 * Integer)", "Class.Prop.Get" or "Class.Events.Action"; 0 for "_".  An
 * unknown name is a fatal report and gives 0. */
void *RuntimeLookupPluginEntrypoint(KelpString name);

/* Links the classes plug-ins registered, down the list until `stop` (null:
 * all).  Loading does it; a test may call it after registering by hand. */
void LinkPluginClasses(void *stop);

/* Control classes of plug-ins: the class's initializer, finalizer and
 * CreatePane.  Not for plug-ins to call. */
void CustomControlConstructor(RuntimeObject *control);
void CustomControlDestructor(RuntimeObject *control);
void CustomControlCreatePane(RuntimeObject *control);

/* The default setters of a control property with flag 0x01: the plain store,
 * then a redraw of the control when the value changed. */
void intInvalidateSetter(RuntimeObject *control, int32_t offset, int32_t value);
void boolInvalidateSetter(RuntimeObject *control, int32_t offset, uint8_t value);
void stringInvalidateSetter(RuntimeObject *control, int32_t offset, KelpString value);
void objInvalidateSetter(RuntimeObject *control, int32_t offset, RuntimeObject *value);

/* Objects and classes. */
RuntimeObject *PluginNewInstance(const char *className);
RuntimeClass *pluginObjectType(const char *className);
RuntimeObject *PluginNewOfSameClass(RuntimeObject *object);
void *KELPLoadObjectMethod(RuntimeObject *object, const char *declaration);
void *GetInterfaceRoutine(RuntimeObject *object, const char *interfaceName,
                          const char *routineName);
/* By name: true when the object has such a property (or a method of that
 * name returning the type) and the value was read or written. */
int32_t KELPGetPropValueInt(RuntimeObject *object, const char *name, int32_t *out);
int32_t KELPGetPropValueDouble(RuntimeObject *object, const char *name, double *out);
int32_t KELPGetPropValueString(RuntimeObject *object, const char *name, KelpString *out);
int32_t KELPGetPropValueBool(RuntimeObject *object, const char *name, int32_t *out);
int32_t KELPGetPropValueObject(RuntimeObject *object, const char *name, RuntimeObject **out);
int32_t KELPSetPropValueInt(RuntimeObject *object, const char *name, int32_t value);
int32_t KELPSetPropValueDouble(RuntimeObject *object, const char *name, double value);
int32_t KELPSetPropValueString(RuntimeObject *object, const char *name, KelpString value);
int32_t KELPSetPropValueBoolean(RuntimeObject *object, const char *name, int32_t value);
int32_t KELPSetPropValueObject(RuntimeObject *object, const char *name, RuntimeObject *value);
void KELPLockObject(RuntimeObject *object);
void KELPUnlockObject(RuntimeObject *object);

/* A class's rows as the language declares them: methods ("Function
 * Add(p1 As Integer) As Integer", the virtual table's rows first, then the
 * direct ones) and properties ("Count As Integer").  False, and nothing
 * written, for a null class or an index out of range. */
int32_t KELPCountClassMethods(RuntimeClass *klass);
int32_t KELPGetClassMethod(RuntimeClass *klass, int32_t index, KelpString *declaration,
                           void **code);
int32_t KELPCountClassProperties(RuntimeClass *klass);
int32_t KELPGetClassProperty(RuntimeClass *klass, int32_t index, KelpString *declaration);

/* Strings. */
void KELPLockString(KelpString s);
void KELPUnlockString(KelpString s);
/* A new string (one reference, the caller's) of length bytes of UTF-8. */
KelpString KELPBuildString(const char *text, int32_t length);
uint32_t KELPGetStringEncoding(KelpString s);
void KELPSetStringEncoding(KelpString s, uint32_t encoding);
/* A new string of the caption without "&" marks ("&&" stays as "&"). */
KelpString KELPStripAmpersands(KelpString caption);

/* Controls. */
void GetControlBounds(RuntimeObject *control, KelpRect *out);
int32_t GetControlVisible(RuntimeObject *control);
void SetControlVisible(RuntimeObject *control, int32_t visible);
int32_t KELPGetControlEnabled(RuntimeObject *control);
void *KELPGetControlHandle(RuntimeObject *control); /* the pane's GtkWidget */
void KELPInvalidateControl(RuntimeObject *control);
KelpString KELPGetControlName(RuntimeObject *control); /* a reference the caller owns */
RuntimeObject *KELPGetControlParent(RuntimeObject *control);
RuntimeObject *getControlWindow(RuntimeObject *control);
int32_t KELPGetControlFocus(RuntimeObject *control);
void KELPSetControlFocus(RuntimeObject *control);
/* False while the control's page of a panel isn't shown. */
int32_t GetTabPanelVisible(RuntimeObject *control);
/* Mnemonics: none on this port's self-drawn controls. */
void KELPSetAccelerator(RuntimeObject *control, KelpString caption);
void KELPInvalidateControlRect(RuntimeObject *control, int32_t left, int32_t top, int32_t right,
                               int32_t bottom);
/* A Graphics object on the control's pane (one reference, the caller's), or
 * null when the control has no pane. */
RuntimeObject *KELPGetControlGraphics(RuntimeObject *control);
/* The code that handles the event (a KELPevent's forSystemUse) for this
 * object, or null. */
void *GetEventInstance(RuntimeObject *object, void *eventRecord);
void *GetEventInstancePPC(RuntimeObject *object, void *eventRecord);

/* Graphics. */
void *KELPGraphicsGdkDrawable(RuntimeObject *graphics); /* a GdkDrawable, or null */
void KELPGetGraphicsOrigin(RuntimeObject *graphics, int32_t *x, int32_t *y);

/* System. */
KelpString PluginDefaultControlFont(void);    /* "System" */
KelpString PluginDefaultControlCaption(void); /* "Untitled" */
int32_t PluginDefaultControlFontSize(void);
int32_t KELPinRuntime(void);
int32_t KELPInDebugMode(void);                     /* 1 after DebugRuntimeInit, else 0 */
int32_t KELPIsHIViewWindow(RuntimeObject *window); /* 0 */
void KELPYieldToKP(void);
KelpString PluginInterpretConstantValue(KelpString value); /* the value, a new reference */
void PluginMarkSocketUsage(void);

/* Pictures.  A picture built here is a new Picture object, one reference
 * the caller's.  Pixels handed over are copied; nothing keeps the buffer. */

/* Pixel layouts of KELPBuildPictureFromBuffer; rows top first, no padding. */
#define KELP_PIXELS_RGB24 0  /* three bytes a pixel: red, green, blue */
#define KELP_PIXELS_XRGB32 1 /* a 32-bit word a pixel: 0x00RRGGBB */
#define KELP_PIXELS_RGBA32 2 /* four bytes: red, green, blue, alpha; alpha below 255 gives a mask */

/* What a picture's pixels are when a plug-in locks them. */
#define KELP_PICTURE_GDK_PIXBUF 1 /* pictureData: a GdkPixbuf, RGB with alpha, 8 bits */
#define KELP_PICTURE_GDK_PIXMAP 2 /* pictureData: the picture's own GdkPixmap */

typedef struct KELPpictureDescription {
    int32_t pictureType; /* KELP_PICTURE_GDK_PIXBUF or KELP_PICTURE_GDK_PIXMAP */
    void *pictureData;
    int32_t width, height;
    int32_t transparent; /* the picture's Transparent */
} KELPpictureDescription;

/* Null for an edge below 1 or above 32767, more than 16,777,216 pixels, an
 * unknown layout or no pixels. */
RuntimeObject *KELPBuildPictureFromBuffer(int32_t width, int32_t height, const void *pixels,
                                          int32_t pixelType);
/* A copy of a GdkPixmap (or GdkPixbuf, by the type); with `giveOwnership`
 * the runtime takes the caller's reference of it, whatever the result. */
RuntimeObject *KELPBuildPictureFromPictureDescription(const KELPpictureDescription *description,
                                                      int32_t giveOwnership);
RuntimeObject *KELPBuildPictureFromGWorld(void *pixmap, int32_t giveOwnership);
/* Fills `out` for reading or writing the pixels in the form asked for.
 * A pixbuf is a copy that unlocking writes back; a pixmap is the picture's
 * own.  False (and `out` left empty) for a vector picture or an unknown
 * type.  Every successful lock needs one unlock. */
int32_t lockPictureDescription(RuntimeObject *picture, KELPpictureDescription *out,
                               int32_t pictureType);
int32_t KELPLockPictureDescription(RuntimeObject *picture, KELPpictureDescription *out,
                                   int32_t pictureType);
void unlockPictureDescription(RuntimeObject *picture, KELPpictureDescription *description);
/* The picture's Mask (a reference the caller owns); with `create` 0 only
 * one that exists already, else null. */
RuntimeObject *KELPGetPictureMask(RuntimeObject *picture, int32_t create);
/* Call after drawing into a picture's pixmap with GDK directly. */
void KELPPictureClearCache(RuntimeObject *picture);
/* The whole picture scaled into `rect` (the Graphics' coordinates), its
 * mask or Transparent honoured. */
void KELPDrawPicturePrimitive(RuntimeObject *graphics, RuntimeObject *picture,
                              const KelpRect *rect);

/* Graphics.  The text style of a Graphics as a plug-in reads and sets it;
 * `font` is a reference: Get gives one to the caller, Set only reads it. */
typedef struct KELPgraphicsStyle {
    KelpString font;
    int32_t size;
    int32_t bold, italic, underline;
    uint32_t color; /* the ForeColor, 0xRRGGBB */
} KELPgraphicsStyle;
void KELPGetGraphicsFontStyle(RuntimeObject *graphics, KELPgraphicsStyle *out);
void KELPSetGraphicsStyle(RuntimeObject *graphics, const KELPgraphicsStyle *style);
void KELPSetGraphicsOrigin(RuntimeObject *graphics, int32_t x, int32_t y);
/* A new GdkGC (the caller unrefs it) on the Graphics' drawable, with its
 * ForeColor and clipped to where the Graphics may draw; null off screen. */
void *KELPGraphicsDC(RuntimeObject *graphics);

/* Strings and system. */
/* A new string of the text in `encoding` (a text encoding word). */
KelpString KELPConvertString(KelpString s, uint32_t encoding);
/* Fonts here are Unicode fonts: UTF-8 for every name. */
uint32_t KELPGetFontEncoding(KelpString fontName);
/* The interface version the runtime speaks (KELP_PLUGIN_VERSION). */
int32_t KELPGetKPVersion(void);
/* The folder the program runs in, as a FolderItem the caller owns. */
RuntimeObject *KELPGetProjectFolder(void);
/* The current thread's stack limit, an address; a plug-in that runs code on
 * a stack of its own sets it for that stack and puts it back after. */
uintptr_t KELPGetStackLimit(void);
void KELPSetStackLimit(uintptr_t limit);
/* The GtkWindow of a shown window, or null. */
void *KELPGetWindowHandle(RuntimeObject *window);
/* There is nothing to install on this platform. */
void Win32InstallPlugins(void);

/* Database engines, cursors and data sources: kept for the database
 * classes, which read them when a program opens one. */
void PluginRegisterDBEngine(void *engineDefinition);
void PluginRegisterDBCursor(void *cursorDefinition);
void RegisterDataSource(const char *name, void *opener);
void RegisterDataSourceInterface(void *sourceInterface);
void DesignAddDataSource(const char *name, void *opener);

/* ------------------------------------------------------- layout, pinned */

KELP_STATIC_ASSERT(sizeof(KELPproperty) == 80, "KELPproperty size");
KELP_STATIC_ASSERT(offsetof(KELPproperty, getter) == 32, "KELPproperty.getter");
KELP_STATIC_ASSERT(offsetof(KELPproperty, parameter) == 48, "KELPproperty.parameter");
KELP_STATIC_ASSERT(sizeof(KELPmethodDefinition) == 32, "method row, version 7");
KELP_STATIC_ASSERT(sizeof(KELPmethodDefinitionV6) == 24, "method row, below version 7");
KELP_STATIC_ASSERT(sizeof(KELPevent) == 16, "KELPevent size");
KELP_STATIC_ASSERT(sizeof(KELPeventInstance) == 16, "KELPeventInstance size");
KELP_STATIC_ASSERT(offsetof(KELPclassDefinition, forSystemUse) == 28,
                   "KELPclassDefinition.forSystemUse");
KELP_STATIC_ASSERT(offsetof(KELPclassDefinition, properties) == 48,
                   "KELPclassDefinition.properties");
KELP_STATIC_ASSERT(offsetof(KELPclassDefinition, methods) == 64, "KELPclassDefinition.methods");
KELP_STATIC_ASSERT(offsetof(KELPclassDefinition, interfaces) == 112,
                   "KELPclassDefinition.interfaces");
KELP_STATIC_ASSERT(sizeof(KELPcontrolBehaviour) == 25 * sizeof(void *), "25 behaviour entries");
KELP_STATIC_ASSERT(offsetof(KELPcontrol, properties) == 40, "KELPcontrol.properties");
KELP_STATIC_ASSERT(offsetof(KELPcontrol, behaviour) == 88, "KELPcontrol.behaviour");
KELP_STATIC_ASSERT(offsetof(KELPcontrol, forSystemUse) == 96, "KELPcontrol.forSystemUse");
KELP_STATIC_ASSERT(offsetof(KELPcontrol, eventInstances) == 104, "KELPcontrol.eventInstances");
KELP_STATIC_ASSERT(offsetof(KELPcontrol, interfaces) == 120, "KELPcontrol.interfaces");
KELP_STATIC_ASSERT(offsetof(KELPmoduleDefinition, methods) == 16, "KELPmoduleDefinition.methods");
KELP_STATIC_ASSERT(sizeof(KELPexportRow) == 24, "exports row: three words");
KELP_STATIC_ASSERT(sizeof(KELPpropertyV1) == 32, "property of version 1");
KELP_STATIC_ASSERT(sizeof(KELPmethodDefinitionV1) == 24, "method row of version 1");
KELP_STATIC_ASSERT(offsetof(KELPcontrolV1, properties) == 32, "KELPcontrolV1.properties");
KELP_STATIC_ASSERT(offsetof(KELPcontrolV1, behaviour) == 80, "KELPcontrolV1.behaviour");
KELP_STATIC_ASSERT(offsetof(KELPcontrolV1, klass) == 88, "KELPcontrolV1.klass");
KELP_STATIC_ASSERT(offsetof(KELPpictureDescription, pictureData) == 8, "picture data");
KELP_STATIC_ASSERT(offsetof(KELPgraphicsStyle, color) == 24, "style colour");
KELP_STATIC_ASSERT(offsetof(RuntimeCustomControl, definition) == 160, "custom control definition");
KELP_STATIC_ASSERT(offsetof(RuntimeCustomControl, customFlag) == 168, "custom control flag");
KELP_STATIC_ASSERT(sizeof(RuntimeCustomControl) == KELP_CONTROL_DATA_OFFSET, "control data offset");

#ifdef __cplusplus
}
#endif

#endif
