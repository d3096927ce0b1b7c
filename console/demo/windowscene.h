#pragma once

#include <console/demo/samplesite.h>
#include <console/session/consoleuser.h>

#include <QSettings>
#include <QTemporaryDir>

namespace ZelkoConsole {

class ConsoleWindow;

/// A window of the console over a site of samples, for its pictures: the operator works there, and every sub system but
/// the first is out of reach.
class WindowScene
{
public:
    /// `knownUsers`: as with a recorder of the console's own, otherwise one has to log in.
    explicit WindowScene(const QStringList& subSystems = {north(), south()}, const QString& firstDevice = recorder1(),
                         bool knownUsers = true);
    ~WindowScene();

    /// Makes the window and shows it.
    ConsoleWindow& open();

    /// The same with the first device connected, as connectNorth() does, and with that many recordings.
    ConsoleWindow& openFilled(int count);

    /// Connects the sub system of the device that the window shows, and waits until that can be worked on.
    void connect(const QString& subSystem);
    void connectNorth() { connect(north()); }

    /// Recordings in different states, the first one being recorded.
    void fill(const QString& subSystem, const QString& device, int count);

    SampleSite& site() { return m_site; }
    ConsoleUser& user() { return *m_user; }

    static QString north() { return QStringLiteral("north"); }
    static QString south() { return QStringLiteral("south"); }
    static QString recorder1() { return QStringLiteral("Recorder1"); }

private:
    QTemporaryDir m_folder;
    SampleSite m_site;
    std::unique_ptr<ConsoleUser> m_user;
    QSettings m_settings;
    std::unique_ptr<ConsoleWindow> m_window;
};

} // namespace ZelkoConsole
