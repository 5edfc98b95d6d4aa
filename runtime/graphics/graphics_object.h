#pragma once
// The language's "Graphics" object: a thin handle on a Graphics*.
//
// A Canvas's Paint event wraps the GraphicsGTK of its paint in one for the
// length of the event (owns = false); Canvas.Graphics, Window.Graphics and
// Picture.Graphics hand out one that their owner holds (owns decides whether
// the object deletes the Graphics when it dies).
#include "kelp/records.h"

#include "graphics/graphics_base.h"

namespace kelp {

struct ObjectDefinition;

struct GraphicsObject {
    RuntimeObject object;
    Graphics *handle;
    uint8_t ownsHandle;
    uint8_t useOldRenderer;
};

// The class definition of "Graphics".
ObjectDefinition *GraphicsDefinition();

// A new object (one reference, the caller's) around `g`.
RuntimeObject *NewGraphicsObject(Graphics *g, bool owns);
// The Graphics of such an object; null for null or a detached object.
Graphics *GraphicsOfObject(RuntimeObject *object);
// Lets go of the Graphics (deleting it if owned), so that an object that
// outlives its paint draws nothing.
void DetachGraphicsObject(RuntimeObject *object);

} // namespace kelp
