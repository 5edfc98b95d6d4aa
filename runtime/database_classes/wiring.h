#pragma once
// The database classes: Database, KELPDatabase, the record sets and their
// fields, DatabaseRecord and ScrollableCursor.
namespace kelp {
void WireDatabaseClasses();
} // namespace kelp
