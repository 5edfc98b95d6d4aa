// The VirtualVolume class and the exports that make, open and show volumes.
#include "volumes/virtual_volume_object.h"

#include "volumes/folder_item_virtual.h"

#include "dates/date_common.h"
#include "exceptions/raise.h"
#include "files/unix_data_file.h"
#include "folder_items/folder_item_object.h"
#include "objects/definitions.h"

#include "kelp/objects.h"
#include "kelp/volumes.h"

#include <cstdio>

namespace kelp {
namespace {

const TypeRecord kVirtualVolumeType{kTypeObjectOf, nullptr, nullptr, 0, &VirtualVolumeDefinition};
const TypeRecord kFolderItemType{kTypeObjectOf, nullptr, nullptr, 0, &FolderItemDefinition};

VirtualVolumeRecord *Record(RuntimeObject *self) {
    return reinterpret_cast<VirtualVolumeRecord *>(self);
}

RuntimeObject *NewVirtualVolume(std::unique_ptr<volume::VHFSVolume> vhfs) {
    if (!vhfs || !vhfs->IsValid())
        return nullptr;
    vhfs->SetClock(&NowTotalSeconds);
    RuntimeObject *object = NewObjectOfDefinition(VirtualVolumeDefinition());
    if (object)
        Record(object)->volume = vhfs.release();
    return object;
}

} // namespace

bool SyncHostFile(RandomAccessMechanism &disk) {
    auto *file = dynamic_cast<UnixDataFile *>(&disk);
    return file ? file->Sync() : disk.Flush();
}

volume::VHFSVolume *VolumeOf(RuntimeObject *volumeObject) {
    return volumeObject ? Record(volumeObject)->volume : nullptr;
}

ObjectDefinition *VirtualVolumeDefinition() {
    static const PropertyRow properties[] = {
        {0, "Root", &kFolderItemType, KELP_ENTRY(VirtVolRootGetter), {}},
    };
    static const ClassDescription description = {
        .name = "VirtualVolume",
        .instanceSize = sizeof(VirtualVolumeRecord),
        .finalizer = KELP_ENTRY(VirtVolDestructor),
        .properties = properties,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

void AddVolumeRowsToFolderItem() {
    static const PropertyRow properties[] = {
        {0, "VirtualVolume", &kVirtualVolumeType, KELP_ENTRY(folderVirtVolGetter), {}},
    };
    static const MethodRow methods[] = {
        {"CreateVirtualVolume", &kVirtualVolumeType, nullptr, 0,
         KELP_ENTRY(FolderItemCreateVirtualVolume)},
        {"OpenAsVirtualVolume", &kVirtualVolumeType, nullptr, 0,
         KELP_ENTRY(FolderItemOpenAsVirtualVolume)},
    };
    ExtendDefinition(FolderItemDefinition(), properties, methods);
}

} // namespace kelp

using namespace kelp;

extern "C" RuntimeObject *FolderItemCreateVirtualVolume(RuntimeObject *self) {
    FolderItemImp *imp = ImpOf(self);
    if (!imp || imp->Locked())
        return nullptr;
    std::unique_ptr<RandomAccessMechanism> disk = imp->CreateData();
    if (!disk)
        return nullptr;
    return NewVirtualVolume(
        volume::VHFSVolume::CreateVolume(disk.release(), true, &SyncHostFile, &NowTotalSeconds));
}

// Read-write when the file allows it, else read-only.  Why a file holds no
// usable volume goes to the log; the program sees nil.
extern "C" RuntimeObject *FolderItemOpenAsVirtualVolume(RuntimeObject *self) {
    FolderItemImp *imp = ImpOf(self);
    if (!imp)
        return nullptr;
    std::unique_ptr<RandomAccessMechanism> disk = imp->OpenData(true);
    if (!disk)
        disk = imp->OpenData(false);
    if (!disk)
        return nullptr;
    auto vhfs = std::make_unique<volume::VHFSVolume>(disk.release(), true, &SyncHostFile);
    if (!vhfs->IsValid() || vhfs->Core().IsReadOnly())
        std::fprintf(stderr, "%s\n", vhfs->Core().Diagnostic().c_str());
    return NewVirtualVolume(std::move(vhfs));
}

extern "C" RuntimeObject *folderVirtVolGetter(RuntimeObject *self, int32_t) {
    FolderItemImp *imp = ImpOf(self);
    auto *virtualItem =
        imp && imp->IsVirtual() ? dynamic_cast<FolderItemImpVirtual *>(imp) : nullptr;
    if (!virtualItem)
        return nullptr;
    RuntimeLockObject(virtualItem->VolumeObject());
    return virtualItem->VolumeObject();
}

extern "C" void VirtVolDestructor(RuntimeObject *self) {
    if (!self)
        return;
    delete Record(self)->volume;
    Record(self)->volume = nullptr;
}

extern "C" RuntimeObject *VirtVolRootGetter(RuntimeObject *self, int32_t) {
    if (!self) {
        RaiseNilObject();
        return nullptr;
    }
    return NewFolderItem(FolderItemImpVirtual::RootOf(self));
}
