// The two ways other code holds a picture: compiled code taking a counted
// reference where it keeps one, and a plug-in drawing into it.
#include "kelp/objects.h"
#include "kelp/pictures.h"

extern "C" RuntimeObject *RuntimePictureReference(RuntimeObject *picture) {
    RuntimeLockObject(picture);
    return picture;
}

extern "C" RuntimeObject *pluginPictureGraphicsGetter(RuntimeObject *picture) {
    return pictureGraphicsGetter(picture, 0);
}
