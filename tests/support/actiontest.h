#pragma once

#include "actionsite.h"
#include "dialoganswers.h"

#include <resources/zelkoicons.h>

namespace ZelkoTest {

/// The base of tests of what a user does to a real recorder: an ORB for all tests of a class, a site for each, and what
/// he does again and again. ZELKO_RECORDER is the program.
class ActionTest : public QObject
{
protected:
    using Action = ZelkoGUI::IZelkoGUIController;

    static constexpr int patience = ActionSite::patience;

    void openOrb()
    {
        registerZelkoIcons();
        m_orb = std::make_unique<ZelkoCommon::Orb>(ZelkoCommon::OrbOptions());
    }
    void closeOrb() { m_orb.reset(); }

    /// A new site, whose recorder is yet to be started.
    void makeSite() { m_site = std::make_unique<ActionSite>(*m_orb, QStringLiteral(ZELKO_RECORDER)); }
    void leaveSite() { m_site.reset(); }

    /// Has the site work for a user of that role, and waits until it can.
    void connectAs(ZelkoCommon::Role role)
    {
        m_site->connectAs(role);
        m_site->watchModel();
        QTRY_VERIFY_WITH_TIMEOUT(m_site->isReady(), patience);
    }

    /// Clicks on the action, and answers the question that follows.
    static void deleteRecords(ActionSite& site, const QStringList& ids,
                              QMessageBox::StandardButton button = QMessageBox::Yes)
    {
        const ZelkoConsole::DialogAnswer answer(answers::click(button));
        QVERIFY(site.click(Action::UserActionDelete, ids));
        QVERIFY(answer.wasGiven());
    }
    static void rename(ActionSite& site, const QString& id, const QString& name)
    {
        const ZelkoConsole::DialogAnswer answer(answers::type(name));
        QVERIFY(site.click(Action::UserActionRename, {id}));
        QVERIFY(answer.wasGiven());
    }

    std::unique_ptr<ZelkoCommon::Orb> m_orb;
    std::unique_ptr<ActionSite> m_site;
};

} // namespace ZelkoTest
