// The language's shape classes.  Every class has the size of the one shared
// record, so that a subclass of any of them starts its own fields after it.
#include "shapes/shape_record.h"

#include "objects/definitions.h"
#include "pictures/picture_object.h"

#include "kelp/objects.h"
#include "kelp/shapes.h"

#include <cstddef>

namespace kelp {
namespace {

const TypeRecord kObject2DType{kTypeObjectOf, nullptr, nullptr, 0, &Object2DDefinition};
const TypeRecord kPictureType{kTypeObjectOf, nullptr, nullptr, 0, &PictureDefinition};

#define KELP_MOVING_ROW(name, field)                                                               \
    PropertyRow {                                                                                  \
        0, name, &kTypeDouble, KELP_ENTRY(doubleGetter), KELP_ENTRY(Object2DDoubleSetter),         \
            offsetof(ShapeRecord, field)                                                           \
    }
#define KELP_DOUBLE_ROW(name, field)                                                               \
    PropertyRow {                                                                                  \
        0, name, &kTypeDouble, KELP_ENTRY(doubleGetter), KELP_ENTRY(doubleSetter),                 \
            offsetof(ShapeRecord, field)                                                           \
    }
#define KELP_FIELD_ROW(name, type, getter, setter, field)                                          \
    PropertyRow {                                                                                  \
        0, name, &type, KELP_ENTRY(getter), KELP_ENTRY(setter), offsetof(ShapeRecord, field)       \
    }

ObjectDefinition *BuildPlain(const char *name, DefinitionAccessor super, EntryPoint initializer,
                             EntryPoint finalizer = {},
                             std::span<const PropertyRow> properties = {},
                             std::span<const MethodRow> methods = {}) {
    return BuildDefinition(ClassDescription{
        .name = name,
        .super = super,
        .instanceSize = sizeof(ShapeRecord),
        .initializer = initializer,
        .finalizer = finalizer,
        .properties = properties,
        .methods = methods,
    });
}

} // namespace

ObjectDefinition *Object2DDefinition() {
    static const PropertyRow properties[] = {
        KELP_MOVING_ROW("X", x),
        KELP_MOVING_ROW("Y", y),
        KELP_MOVING_ROW("Rotation", rotation),
        KELP_MOVING_ROW("Scale", scale),
        KELP_FIELD_ROW("Fill", kTypeDouble, doublePercentGetter, doublePercentSetter, fill),
        KELP_FIELD_ROW("FillColor", kTypeColor, intGetter, intSetter, fillColor),
        KELP_FIELD_ROW("Border", kTypeDouble, doublePercentGetter, doublePercentSetter, border),
        KELP_FIELD_ROW("BorderColor", kTypeColor, intGetter, intSetter, borderColor),
        KELP_DOUBLE_ROW("BorderWidth", borderWidth),
    };
    static ObjectDefinition *definition =
        BuildPlain("Object2D", nullptr, KELP_ENTRY(Object2DConstructor), {}, properties);
    return definition;
}

ObjectDefinition *RectShapeDefinition() {
    static const PropertyRow properties[] = {
        KELP_DOUBLE_ROW("Width", width),
        KELP_DOUBLE_ROW("Height", height),
    };
    static const ParameterRow xy[] = {{"x", &kTypeDouble}, {"y", &kTypeDouble}};
    static const MethodRow methods[] = {
        {"Contains", &kTypeBoolean, xy, 2, KELP_ENTRY(RectShapeContains)},
    };
    static ObjectDefinition *definition =
        BuildPlain("RectShape", &Object2DDefinition, KELP_ENTRY(RectShapeConstructor), {},
                   properties, methods);
    return definition;
}

ObjectDefinition *RoundRectShapeDefinition() {
    static const PropertyRow properties[] = {
        KELP_DOUBLE_ROW("CornerWidth", cornerWidth),
        KELP_DOUBLE_ROW("CornerHeight", cornerHeight),
        KELP_FIELD_ROW("Segments", kTypeInteger, intGetter, intSetter, segments),
    };
    static ObjectDefinition *definition =
        BuildPlain("RoundRectShape", &RectShapeDefinition, KELP_ENTRY(RoundRectShapeConstructor),
                   {}, properties);
    return definition;
}

ObjectDefinition *OvalShapeDefinition() {
    static const PropertyRow properties[] = {
        KELP_FIELD_ROW("Segments", kTypeInteger, intGetter, intSetter, segments),
    };
    static ObjectDefinition *definition = BuildPlain(
        "OvalShape", &RectShapeDefinition, KELP_ENTRY(OvalShapeConstructor), {}, properties);
    return definition;
}

ObjectDefinition *ArcShapeDefinition() {
    static const PropertyRow properties[] = {
        KELP_FIELD_ROW("StartAngle", kTypeDouble, doubleGetter, ArcStartAngleSetter, startAngle),
        KELP_DOUBLE_ROW("ArcAngle", arcAngle),
    };
    static ObjectDefinition *definition = BuildPlain(
        "ArcShape", &OvalShapeDefinition, KELP_ENTRY(ArcShapeConstructor), {}, properties);
    return definition;
}

ObjectDefinition *PixmapShapeDefinition() {
    static const PropertyRow properties[] = {
        KELP_FIELD_ROW("Image", kPictureType, objGetter, objSetter, image),
        KELP_DOUBLE_ROW("SourceLeft", sourceLeft),
        KELP_DOUBLE_ROW("SourceTop", sourceTop),
        KELP_DOUBLE_ROW("SourceWidth", sourceWidth),
        KELP_DOUBLE_ROW("SourceHeight", sourceHeight),
    };
    static const ParameterRow picture[] = {{"image", &kPictureType}};
    static const MethodRow methods[] = {
        {"Constructor", nullptr, picture, 1, KELP_ENTRY(PixmapShapeImageCtor)},
    };
    static ObjectDefinition *definition =
        BuildPlain("PixmapShape", &RectShapeDefinition, KELP_ENTRY(PixmapShapeConstructor),
                   KELP_ENTRY(PixmapShapeDestructor), properties, methods);
    return definition;
}

ObjectDefinition *StringShapeDefinition() {
    static const PropertyRow properties[] = {
        KELP_DOUBLE_ROW("TextSize", textSize),
        KELP_FIELD_ROW("Text", kTypeString, StringToSSGetter, SSToStringSetter, text),
        KELP_FIELD_ROW("TextFont", kTypeString, stringGetter, stringSetter, textFont),
        KELP_FIELD_ROW("Bold", kTypeBoolean, boolGetter, boolSetter, bold),
        KELP_FIELD_ROW("Italic", kTypeBoolean, boolGetter, boolSetter, italic),
        KELP_FIELD_ROW("Underline", kTypeBoolean, boolGetter, boolSetter, underline),
    };
    static ObjectDefinition *definition =
        BuildPlain("StringShape", &Object2DDefinition, KELP_ENTRY(StringShapeConstructor),
                   KELP_ENTRY(StringShapeDestructor), properties);
    return definition;
}

ObjectDefinition *CurveShapeDefinition() {
    static const PropertyRow properties[] = {
        KELP_DOUBLE_ROW("X2", x2),
        KELP_DOUBLE_ROW("Y2", y2),
        KELP_FIELD_ROW("Order", kTypeInteger, intGetter, CurveOrderSetter, order),
        KELP_FIELD_ROW("Segments", kTypeInteger, intGetter, intSetter, segments),
    };
    static const ParameterRow index[] = {{"index", &kTypeInteger}};
    static const MethodRow methods[] = {
        {"ControlX", &kTypeDouble, index, 1, KELP_ENTRY(CurveGetControlX),
         KELP_ENTRY(CurveSetControlX)},
        {"ControlY", &kTypeDouble, index, 1, KELP_ENTRY(CurveGetControlY),
         KELP_ENTRY(CurveSetControlY)},
    };
    static ObjectDefinition *definition =
        BuildPlain("CurveShape", &Object2DDefinition, KELP_ENTRY(CurveShapeConstructor), {},
                   properties, methods);
    return definition;
}

ObjectDefinition *Group2DDefinition() {
    static const ParameterRow item[] = {{"obj", &kObject2DType}};
    static const ParameterRow index[] = {{"index", &kTypeInteger}};
    static const ParameterRow indexItem[] = {{"index", &kTypeInteger}, {"obj", &kObject2DType}};
    static const MethodRow methods[] = {
        {"Count", &kTypeInteger, nullptr, 0, KELP_ENTRY(Group2DCount)},
        {"Append", nullptr, item, 1, KELP_ENTRY(Group2DAppend)},
        {"Insert", nullptr, indexItem, 2, KELP_ENTRY(Group2DInsert)},
        {"Item", &kObject2DType, index, 1, KELP_ENTRY(Group2DGetItem), KELP_ENTRY(Group2DSetItem)},
        {"Remove", nullptr, item, 1, KELP_ENTRY(Group2DRemoveByObject)},
        {"Remove", nullptr, index, 1, KELP_ENTRY(Group2DRemoveByIndex)},
    };
    static ObjectDefinition *definition =
        BuildPlain("Group2D", &Object2DDefinition, KELP_ENTRY(Group2DConstructor),
                   KELP_ENTRY(Group2DDestructor), {}, methods);
    return definition;
}

ObjectDefinition *FigureShapeDefinition() {
    static const ParameterRow line[] = {
        {"x1", &kTypeSingle}, {"y1", &kTypeSingle}, {"x2", &kTypeSingle}, {"y2", &kTypeSingle}};
    static const ParameterRow quad[] = {{"x1", &kTypeSingle},  {"y1", &kTypeSingle},
                                        {"x2", &kTypeSingle},  {"y2", &kTypeSingle},
                                        {"cx1", &kTypeSingle}, {"cy1", &kTypeSingle}};
    static const ParameterRow cubic[] = {
        {"x1", &kTypeSingle},  {"y1", &kTypeSingle},  {"x2", &kTypeSingle},  {"y2", &kTypeSingle},
        {"cx1", &kTypeSingle}, {"cy1", &kTypeSingle}, {"cx2", &kTypeSingle}, {"cy2", &kTypeSingle}};
    static const MethodRow methods[] = {
        {"AddLine", nullptr, line, 4, KELP_ENTRY(FigureShapeAddLine)},
        {"AddQuad", nullptr, quad, 6, KELP_ENTRY(FigureShapeAddQuad)},
        {"AddCubic", nullptr, cubic, 8, KELP_ENTRY(FigureShapeAddCubic)},
    };
    static ObjectDefinition *definition =
        BuildPlain("FigureShape", &Group2DDefinition, KELP_ENTRY(FigureShapeConstructor),
                   KELP_ENTRY(FigureShapeDestructor), {}, methods);
    return definition;
}

} // namespace kelp
