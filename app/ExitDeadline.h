// Not waiting for the system when everything is saved.
#pragma once

/// From here on the process has 0.3 s to end; then it ends with `exitCode`, without any clean-up
/// but that the log is flushed. For when nothing is left to save: looking up names and proxies
/// takes as long as the system has patience with a server that is gone, and nothing ends it before.
void armExitDeadline(int exitCode);

/// Destroys the log, other than while the deadline flushes it.
void destroyLog();
