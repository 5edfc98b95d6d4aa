#pragma once
// Reading a list data provider: any object whose class has the methods
// GetCount and GetRow, such as a cursor over a query's rows.  The methods
// are found by name in the class's method tables, so a provider needs no
// interface of ours.  A row of a provider is a record: its FieldCount
// fields, in order, become the cells of one list row (field 1 in column 0),
// and a field's text is the row's Column(name) for the name that
// getIndString(field) gives.
//
// Failure channel: none.  An object without the methods reads as no rows;
// a call that raises stops the reading, with the exception left pending.
#include "kelp/records.h"

#include <string>
#include <vector>

namespace kelp {

using ProviderRow = std::vector<std::string>; // cells, the bytes of the texts

// The code of the object's method of this name (ASCII case ignored), or
// null; with `returns`, only one that gives a result (a getter, not its setter).
void *MethodNamed(RuntimeObject *object, const char *name, bool returns = false);

bool IsListDataProvider(RuntimeObject *object);
// GetCount, at least 0.
int32_t ProviderRowCount(RuntimeObject *provider);
// GetRow(index) as cells; false when the row isn't there.
bool ReadProviderRow(RuntimeObject *provider, int32_t index, ProviderRow *row);
// Every row, up to GetCount.
std::vector<ProviderRow> ReadProviderRows(RuntimeObject *provider);

// addListDataNotificationReceiver and removeListDataNotificationReceiver
// of the provider, when it has them: the receiver then hears of
// listDataInsertedRow, listDataRemovedRow and listDataReload.
void AddListDataReceiver(RuntimeObject *provider, RuntimeObject *receiver);
void RemoveListDataReceiver(RuntimeObject *provider, RuntimeObject *receiver);

} // namespace kelp
