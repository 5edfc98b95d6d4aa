#pragma once
// The language's FolderItemDialog and its three kinds (open a file, save a
// file, choose a folder) on the toolkit's file chooser.
#include "kelp/records.h"

#include <span>
#include <string>
#include <vector>

namespace kelp {

struct ObjectDefinition;

enum FileDialogKind : int32_t {
    kFileDialogAbstract = -1,
    kFileDialogOpen = 0,
    kFileDialogSave = 1,
    kFileDialogSelectFolder = 2,
};

struct FileDialogRecord {
    RuntimeObject object;
    int32_t mType;     // FileDialogKind
    int32_t left, top; // kept; the chooser places itself
    KelpString title, actionButtonCaption, cancelButtonCaption, suggestedFileName, promptText;
    RuntimeObject *initialDirectory; // a FolderItem, or nil
    RuntimeObject *result;           // the last answer, or nil
    RuntimeObject *parent;           // for the length of ShowModalWithin, not counted
    KelpString filter;
};

// FolderItemDialog and its three subclasses.
std::span<ObjectDefinition *(*const)()> FileDialogDefinitions();

// The chooser's patterns for a filter text: each ";"-separated ending,
// "*" before one that starts with "." and "*." before any other.
std::vector<std::string> FilterPatterns(const std::string &filter);

} // namespace kelp
