#pragma once

#include <QString>

#include <memory>

class QLockFile;

namespace ZelkoConsole {

/// A folder for recordings that no other console of this machine uses: the one that is asked for while it is free, else
/// the first free one of that name with "-2", "-3" and so on behind it. Taken for as long as this object lives; a
/// process that was killed leaves its folder free.
class StoreFolder
{
public:
    /// Makes the folder above the wanted one if need be. Where no lock can be kept at all the wanted folder is taken as
    /// it is.
    explicit StoreFolder(const QString& wanted);
    ~StoreFolder();

    const QString& path() const { return m_path; }

private:
    QString m_path;
    std::unique_ptr<QLockFile> m_lock;
};

} // namespace ZelkoConsole
