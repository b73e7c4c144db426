// The store that the records' setters write through to.
#pragma once

class TaskStorage;

/// The shared store, or null while there is none: then records change only themselves.
/// Interface thread.
[[nodiscard]] TaskStorage* sharedStorage();

/// Hands the store down; the caller owns it and takes it back with null before it goes.
void setSharedStorage(TaskStorage* storage);

/// Has the shared store, if there is one, do the same as a record just did to itself. Takes copies
/// and no record: what the store's signals set off may replace or delete the record, and whatever
/// the arguments came from.
template <typename... Parameters, typename... Values>
void writeThrough(void (TaskStorage::*operation)(Parameters...), Values... values)
{
    if (TaskStorage* storage = sharedStorage())
        (storage->*operation)(values...);
}
