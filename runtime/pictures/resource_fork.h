#pragma once
// ResourceFork: files here have no resource fork, so the class is there for
// programs written against it, and every member answers nil, 0, false or
// "" and does nothing.  FolderItem.OpenResourceFork never hands one out;
// the Application's ResourceFork is a fresh, empty one.
namespace kelp {

struct ObjectDefinition;
ObjectDefinition *ResourceForkDefinition();

} // namespace kelp
