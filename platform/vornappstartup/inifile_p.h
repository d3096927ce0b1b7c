#pragma once

#include <vornappstartup/initext_p.h>

/// The values of an INI file, written whole or not at all. Several processes may have the same file: each adds what it
/// has changed to what the others wrote. What cannot be read is never overwritten: it is set aside as
/// "NAME.unreadable", or "NAME.unreadable-2" and so on, and the user is told; what was known of the file until then is
/// in the new one. Who sets a file aside or writes it holds "NAME.lock".
class IniFile
{
public:
    /// Reads the file, if there is one. Only what cannot be read makes it wait for the lock, for up to lockPatience;
    /// what another process holds for longer is left to write().
    explicit IniFile(const QString& fileName);

    /// Writes what has changed.
    ~IniFile();

    IniFile(const IniFile&) = delete;
    IniFile& operator=(const IniFile&) = delete;

    const IniValues& values() const { return m_values; }

    /// An empty key is none and is passed over.
    void setValue(const QString& key, const QString& value);

    /// Whether a file can be written in its place. The folder is made if it is missing.
    bool isWritable() const;

    /// Writes what has changed. False if that fails; the file is the old one then, and the changes are kept for the
    /// next time. Waits for up to lockPatience while another process writes.
    bool write();

private:
    static constexpr int lockPatience = 2000; // milliseconds; another process holds it for the time of a write

    QString lockName() const;

    /// False if there is a file that cannot be read.
    bool read();

    void mend();
    bool writeWithLock();

    /// With the lock. False if what cannot be read could not be set aside.
    bool readOrSetAside();
    bool setAside();
    void leaveInPlace();
    void tellUser();

    const QString m_fileName;
    IniValues m_values;
    IniValues m_changes;    ///< of them since the file was written
    bool m_isStuck = false; ///< what cannot be read could not be set aside, and the user knows
    QString m_toTell;       ///< to the user, who may take his time, once others have the lock
};
