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

// One showing of the chooser.
struct ChooserRequest {
    int32_t kind = kFileDialogOpen; // FileDialogKind, not the abstract one
    std::string title, filter, suggestedName;
    std::string startFolder;               // "" or a missing folder: where the chooser starts
    RuntimeObject *parentWindow = nullptr; // nil: over the front window
};
// Shows the chooser, modal, and answers the chosen path ("" for none, and
// always "" without a display).  The process's working folder stays.
std::string RunChooser(const ChooserRequest &request);
// The same as a new FolderItem (the caller's reference), or nil.
RuntimeObject *ChooseItem(const ChooserRequest &request);

// FolderItemDialog and its three subclasses.
std::span<ObjectDefinition *(*const)()> FileDialogDefinitions();

// The chooser's patterns for a filter text: each ";"-separated ending,
// "*" before one that starts with "." and "*." before any other.
std::vector<std::string> FilterPatterns(const std::string &filter);

} // namespace kelp
