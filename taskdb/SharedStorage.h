// The store that the records' setters write through to.
#pragma once

class TaskStorage;

/// The shared store, or null while there is none: then records change only themselves.
/// Interface thread.
[[nodiscard]] TaskStorage* sharedStorage();

/// Hands the store down; the caller owns it and takes it back with null before it goes.
void setSharedStorage(TaskStorage* storage);
