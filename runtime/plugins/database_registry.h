#pragma once
// What plug-ins hand over for the database classes: engine and cursor
// definitions (the tables of functions a Database and a RecordSet dispatch
// through) and named data sources.  The host only keeps them, in the order
// given; the database classes read them when a program opens a database.
#include <string>
#include <vector>

namespace kelp::plugins {

struct DataSource {
    std::string name;
    void *opener = nullptr;  // the plug-in's function that opens it
    bool designOnly = false; // listed by the design environment, never opened here
};

const std::vector<void *> &RegisteredDBEngines();
const std::vector<void *> &RegisteredDBCursors();
const std::vector<void *> &RegisteredDataSourceInterfaces();
const std::vector<DataSource> &RegisteredDataSources();

} // namespace kelp::plugins
