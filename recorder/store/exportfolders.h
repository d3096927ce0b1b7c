#pragma once

#include <recorder/store/storestatus.h>

#include <QStringList>

namespace ZelkoRecorder {

/// A folder that was opened, by its descriptor: whatever becomes of its name, it stays the same folder.
class OpenFolder
{
public:
    OpenFolder() = default;
    explicit OpenFolder(int descriptor);
    ~OpenFolder();
    OpenFolder(OpenFolder&& other) noexcept;
    OpenFolder& operator=(OpenFolder&& other) noexcept;

    bool isOpen() const { return m_descriptor >= 0; }
    int descriptor() const { return m_descriptor; }

    /// A path under which the folder can be worked in while this object lives, whatever stands at its name.
    QString path() const;

    /// @name Entries of the folder. `name` is a single name; no link of that name is followed
    /// @{
    bool has(const QString& name) const;

    /// Not open if there is no such folder.
    OpenFolder open(const QString& name) const;

    /// As `open`, but a folder that is missing is made, durably; not open if that fails.
    OpenFolder make(const QString& name) const;

    /// Durable when it returns true; otherwise all is as before, or, where it could not be taken back, `to` is there
    /// and may be lost when the machine goes down. A folder takes the place of nothing but an empty folder.
    bool rename(const QString& from, const QString& to) const;

    /// With all that is in it.
    void remove(const QString& name) const;
    /// @}

private:
    int m_descriptor = -1;
};

/// The folders below which records may be exported. Without any, nothing may.
class ExportFolders
{
public:
    /// `folders` exist and are given with absolute paths; they may be links themselves, below them none is followed.
    explicit ExportFolders(const QStringList& folders = {});

    bool isEmpty() const { return m_folders.isEmpty(); }

    /// Opens the folder of an absolute path at or below an allowed folder, and makes what is missing of it. `BadFolder`
    /// for any other path, for one with "." or ".." in it or with an "@", which would break the ID of an export, and
    /// for one that leads over a link; `DiskRefused` if it cannot be opened or made.
    StoreStatus open(const QString& path, OpenFolder* folder) const;

    /// As `open`, but makes nothing: what is missing is no failure. `folder` is the last one of the path that is there,
    /// `isWhole` tells whether that is the folder of the path itself.
    StoreStatus look(const QString& path, OpenFolder* folder, bool* isWhole) const;

private:
    StoreStatus begin(const QString& path, OpenFolder* folder, QStringList* below) const;
    static StoreStatus descend(const QStringList& steps, OpenFolder* folder);

    const QStringList m_folders;
};

} // namespace ZelkoRecorder
