#pragma once

#include <vornappstartup/cfgcenter.h>

#include <QTemporaryDir>
#include <QtTest>

/// A folder for filter files, and a user whose configuration knows no such folder yet.
class FilterFolder
{
public:
    FilterFolder()
    {
        [this] { QVERIFY(m_folder.isValid()); }();
        CfgCenter::SetFile(ICfg::UserView, file(QStringLiteral("user.ini")));
        CfgCenter::SetFile(ICfg::ApplicationView, file(QStringLiteral("application.ini")));
    }

    QString path() const { return m_folder.path(); }
    QString file(const QString& name = QStringLiteral("filter.xml")) const { return m_folder.filePath(name); }

    /// Makes that file in place of one that is there.
    void write(const QByteArray& bytes, const QString& name = QStringLiteral("filter.xml")) const
    {
        QFile target(file(name));
        QVERIFY(target.open(QIODevice::WriteOnly));
        QCOMPARE(target.write(bytes), bytes.size());
    }

    QString makeFolder(const QString& name) const
    {
        [&] { QVERIFY(QDir(path()).mkdir(name)); }();
        return file(name);
    }

    /// The folder of the file that was last saved or restored, as the user's configuration has it.
    static QString remembered()
    {
        return CfgCenter::GetAppCfg(ICfg::UserView)->GetString(QStringLiteral("ExtendedRecordListFilterFolder"), {});
    }

private:
    const QTemporaryDir m_folder;
};
