#include <zelkoguibase/controller/izelkoguiactionprovider.h>

#include "fixedrecordmodel.h"
#include "scriptedcontroller.h"

#include <QAction>
#include <QtTest>

#include <optional>

using namespace Qt::StringLiterals;
using Controller = ZelkoGUI::IZelkoGUIController;

namespace {

/// Provides two actions, and writes down for which controller it was called.
class TwoActions final : public ZelkoGUI::IZelkoGuiActionProvider
{
public:
    QList<QAction*> providedActions() override { return {&first, &second}; }
    void updateActions(Controller* controller) override
    {
        updated.append(controller);
        selections.append(controller->selectedRecords().join(','));
    }
    bool prependActions() const override { return inFront; }

    QAction first{u"first"_s};
    QAction second{u"second"_s};
    bool inFront = false;
    QList<Controller*> updated;
    QStringList selections;
};

/// One that leaves the place of its actions open.
class NoOpinion final : public ZelkoGUI::IZelkoGuiActionProvider
{
public:
    QList<QAction*> providedActions() override { return {}; }
    void updateActions(Controller*) override {}
};

constexpr auto copyAndRename =
    Controller::UserActions(QFlag(Controller::UserActionCopy | Controller::UserActionRename));

} // namespace

class IZelkoGuiActionProviderTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itsActionsStandBehindUnlessItSaysOtherwise()
    {
        const NoOpinion provider;
        QVERIFY(!provider.prependActions());
    }

    void itsActionsStandBehindTheControllers()
    {
        TwoActions provider;
        const ScriptedController controller(&m_model, copyAndRename, &provider);
        QCOMPARE(controller.recordActions(), (QList<QAction*>{controller.recordAction(Controller::UserActionCopy),
                                                              controller.recordAction(Controller::UserActionRename),
                                                              &provider.first, &provider.second}));
    }

    void itsActionsStandInFrontIfItSaysSo()
    {
        TwoActions provider;
        provider.inFront = true;
        const ScriptedController controller(&m_model, copyAndRename, &provider);
        QCOMPARE(controller.recordActions(), (QList<QAction*>{&provider.first, &provider.second,
                                                              controller.recordAction(Controller::UserActionCopy),
                                                              controller.recordAction(Controller::UserActionRename)}));
    }

    void itIsNotCalledWhileAControllerIsMade()
    {
        TwoActions provider;
        const ScriptedController controller(&m_model, copyAndRename, &provider);
        QCOMPARE(provider.updated, QList<Controller*>());
    }

    void itIsCalledAfterTheSelectionWasTold()
    {
        TwoActions provider;
        ScriptedController controller(&m_model, copyAndRename, &provider);
        QStringList order;
        connect(&controller, &Controller::si_selectedRecordsChanged, this,
                [&] { order << u"told, %1 calls"_s.arg(provider.updated.size()); });
        controller.sl_selectedRecordsChanged({u"A"_s});
        QCOMPARE(order, QStringList{u"told, 0 calls"_s});
        QCOMPARE(provider.updated, QList<Controller*>{&controller});
        QCOMPARE(provider.selections, QStringList{u"A"_s});
    }

    void itIsCalledAlsoIfTheSelectionIsTheSame()
    {
        TwoActions provider;
        ScriptedController controller(&m_model, copyAndRename, &provider);
        controller.sl_selectedRecordsChanged({});
        controller.sl_activeUserChanged({});
        QCOMPARE(provider.updated, (QList<Controller*>{&controller, &controller}));
    }

    void itServesSeveralControllers()
    {
        TwoActions provider;
        ScriptedController left(&m_model, copyAndRename, &provider);
        ScriptedController right(&m_model, copyAndRename, &provider);
        right.sl_selectedRecordsChanged({u"A"_s});
        left.sl_selectedRecordsChanged({u"B"_s});
        QCOMPARE(provider.updated, (QList<Controller*>{&right, &left}));
    }

    void controllersDoWithoutItOnceItIsGone()
    {
        std::optional<TwoActions> provider(std::in_place);
        ScriptedController left(&m_model, copyAndRename, &*provider);
        ScriptedController right(&m_model, copyAndRename, &*provider);
        provider.reset();
        for (ScriptedController* const controller : {&left, &right}) {
            controller->sl_selectedRecordsChanged({u"A"_s});
            QCOMPARE(controller->recordActions().size(), 2);
            QVERIFY(controller->recordAction(Controller::UserActionCopy)->isEnabled());
        }
    }

    void itOutlivesAControllerThatHadEverything()
    {
        TwoActions provider;
        SilentScheduler scheduler;
        {
            ScriptedController controller(&m_model, copyAndRename, &provider);
            controller.setTransferScheduler(&scheduler);
            controller.sl_selectedRecordsChanged({u"A"_s});
            provider.updated.clear();
        }
        QCOMPARE(provider.updated, QList<Controller*>());
        Q_EMIT scheduler.si_transferAvailable(true);
        QCOMPARE(provider.updated, QList<Controller*>());
    }

private:
    FixedRecordModel m_model{{}};
};

QTEST_MAIN(IZelkoGuiActionProviderTest)
#include "tst_izelkoguiactionprovider.moc"
