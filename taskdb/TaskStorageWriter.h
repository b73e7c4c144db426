// Writing the database file.
#pragma once

class QIODevice;
class TaskStorageSnapsot;

/// Turns a snapshot of lists into the database document.
class TaskStorageWriter
{
public:
    /// Writes to an open device. Returns false only without a device; what the device could not
    /// take is the device owner's to find out.
    [[nodiscard]] bool write(QIODevice* device, const TaskStorageSnapsot& snapshot) const;
};
