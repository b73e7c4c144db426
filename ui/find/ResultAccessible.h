// What the column of results tells screen readers.
#pragma once

class ResultList;

/// Has every column of results describe itself as a list of all its rows. Further calls do nothing.
void installResultAccessible();

// Heard by whoever listens.

/// Another row is current.
void announceCurrentResult(ResultList* list);
/// The rows have been replaced.
void announceResults(ResultList* list);
