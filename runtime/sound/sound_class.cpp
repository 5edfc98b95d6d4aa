#include "sound/sound_class.h"

#include "sound/sound_imp.h"

#include "objects/definitions.h"
#include "objects/object_model.h"
#include "process/process_state.h"
#include "resources/sound_file.h"

#include "kelp/objects.h"
#include "kelp/sound.h"

#include <unistd.h>

#include <algorithm>
#include <cstddef>

namespace kelp {
namespace {

SoundImp *Imp(RuntimeObject *sound) {
    return sound ? reinterpret_cast<SoundRecord *>(sound)->imp : nullptr;
}

void ReplaceImp(RuntimeObject *sound, SoundImp *imp) {
    auto *record = reinterpret_cast<SoundRecord *>(sound);
    delete record->imp;
    record->imp = imp;
}

RuntimeObject *NewSound() { return RuntimeNewObject(ClassForDefinition(SoundDefinition())); }

// The program's own file, for a resource that can't be written out: the
// process's executable, else what the command line says it is.
std::string OwnExecutable() {
    char path[4096];
    const ssize_t n = readlink("/proc/self/exe", path, sizeof path - 1);
    if (n > 0)
        return std::string(path, size_t(n));
    return ProcessArgumentCount() > 0 ? ProcessArguments()[0] : "";
}

} // namespace

ObjectDefinition *SoundDefinition() {
    static const TypeRecord soundType = {kTypeObjectOf, "Sound", nullptr, 0, &SoundDefinition};
    static const PropertyRow properties[] = {
        {0, "Pan", &kTypeInteger, KELP_ENTRY(SoundPanGetter), KELP_ENTRY(SoundPanSetter), 0},
        {0, "Volume", &kTypeInteger, KELP_ENTRY(SoundVolumeGetter), KELP_ENTRY(SoundVolumeSetter),
         0},
    };
    static const MethodRow methods[] = {
        {"Play", nullptr, nullptr, 0, KELP_ENTRY(soundPlay)},
        {"Stop", nullptr, nullptr, 0, KELP_ENTRY(soundStop)},
        {"PlayLooping", nullptr, nullptr, 0, KELP_ENTRY(soundPlayLooping)},
        {"IsPlaying", &kTypeBoolean, nullptr, 0, KELP_ENTRY(soundIsPlaying)},
        {"Clone", &soundType, nullptr, 0, KELP_ENTRY(SoundClone)},
    };
    static const ClassDescription description = {
        .name = "Sound",
        .instanceSize = sizeof(SoundRecord),
        .initializer = KELP_ENTRY(RuntimeSoundConstructor),
        .finalizer = KELP_ENTRY(RuntimeSoundDestructor),
        .properties = properties,
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

void SetSound(RuntimeObject *sound, const char *path, uint32_t offset) {
    if (auto *imp = dynamic_cast<SoundImpUnix *>(Imp(sound)))
        imp->SetSource(path ? path : "", offset);
}

} // namespace kelp

using namespace kelp;

extern "C" void RuntimeSoundConstructor(RuntimeObject *sound) {
    if (sound)
        reinterpret_cast<SoundRecord *>(sound)->imp = new SoundImpUnix;
}

extern "C" void RuntimeSoundDestructor(RuntimeObject *sound) {
    if (sound)
        ReplaceImp(sound, nullptr);
}

extern "C" void soundPlay(RuntimeObject *sound) {
    if (SoundImp *imp = Imp(sound))
        imp->Play();
}

extern "C" void soundPlayLooping(RuntimeObject *sound) {
    if (SoundImp *imp = Imp(sound))
        imp->PlayLooping();
}

extern "C" void soundStop(RuntimeObject *sound) {
    if (SoundImp *imp = Imp(sound))
        imp->Stop();
}

extern "C" uint8_t soundIsPlaying(RuntimeObject *sound) {
    SoundImp *imp = Imp(sound);
    return imp && imp->IsPlaying() ? 1 : 0;
}

extern "C" int32_t SoundVolumeGetter(RuntimeObject *sound, int32_t) {
    SoundImp *imp = Imp(sound);
    return imp ? imp->GetVolume() : 0;
}

extern "C" void SoundVolumeSetter(RuntimeObject *sound, int32_t, int32_t volume) {
    if (SoundImp *imp = Imp(sound))
        imp->SetVolume(std::clamp(volume, 0, 100));
}

extern "C" int32_t SoundPanGetter(RuntimeObject *sound, int32_t) {
    SoundImp *imp = Imp(sound);
    return imp ? imp->GetPan() : 0;
}

extern "C" void SoundPanSetter(RuntimeObject *sound, int32_t, int32_t pan) {
    if (SoundImp *imp = Imp(sound))
        imp->SetPan(std::clamp(pan, -100, 100));
}

extern "C" RuntimeObject *SoundClone(RuntimeObject *sound) {
    RuntimeObject *copy = NewSound();
    if (copy && Imp(sound))
        ReplaceImp(copy, Imp(sound)->Clone()); // the fresh imp isn't left behind
    return copy;
}

extern "C" RuntimeObject *RuntimeGetSoundFromResourceManager(int32_t id) {
    SoundSource source;
    if (!SoundResourceSource(uint32_t(id), OwnExecutable(), source))
        return nullptr;
    RuntimeObject *sound = NewSound();
    SetSound(sound, source.path.c_str(), source.offset);
    return sound;
}
