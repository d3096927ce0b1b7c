#include <host/userrights.h>

#include <QSignalSpy>
#include <QtTest>

Q_DECLARE_METATYPE(UserRights::Right)

using Query = bool (*)();

namespace {

const std::pair<UserRights::Right, Query> queries[] = {{UserRights::DeleteRecords, &UserRights::DeleteRecordsAllowed},
                                                       {UserRights::Archiving, &UserRights::ArchivingAllowed},
                                                       {UserRights::HistoryComment, &UserRights::HistoryCommentAllowed},
                                                       {UserRights::ResetRecord, &UserRights::ResetRecordAllowed},
                                                       {UserRights::RemoteConfig, &UserRights::RemoteConfigAllowed},
                                                       {UserRights::PerformBite, &UserRights::PerformBiteAllowed},
                                                       {UserRights::Admin, &UserRights::AdminAllowed}};

UserRights::Rights allowed()
{
    UserRights::Rights rights;
    for (const auto& [right, query] : queries) {
        rights.setFlag(right, query());
    }
    return rights;
}

} // namespace

class UserRightsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void allowsNothingToNobody();
    void eachRightAllowsOneThing();
    void tellsOfAnotherUserOrOtherRightsOnly();
    void theRightsHoldWhenTheyAreTold();
};

void UserRightsTest::allowsNothingToNobody()
{
    QCOMPARE(UserRights::Instance()->GetUser(), QString());
    QCOMPARE(allowed(), UserRights::Rights());
}

void UserRightsTest::eachRightAllowsOneThing()
{
    for (const auto& [right, query] : queries) {
        UserRights::Instance()->SetUser(QStringLiteral("op"), right);
        QCOMPARE(allowed(), UserRights::Rights(right));
    }
}

void UserRightsTest::tellsOfAnotherUserOrOtherRightsOnly()
{
    UserRights* const rights = UserRights::Instance();
    rights->SetUser(QStringLiteral("op"), UserRights::Archiving);
    QSignalSpy told(rights, &UserRights::UpdateUserRights);
    rights->SetUser(QStringLiteral("op"), UserRights::Archiving);
    QCOMPARE(told.size(), 0);
    rights->SetUser(QStringLiteral("chief"), UserRights::Archiving);
    rights->SetUser(QStringLiteral("chief"), UserRights::Archiving | UserRights::Admin);
    rights->SetUser(QString(), {});
    QCOMPARE(told, (QList<QVariantList>{{QStringLiteral("chief")}, {QStringLiteral("chief")}, {QString()}}));
}

void UserRightsTest::theRightsHoldWhenTheyAreTold()
{
    UserRights* const rights = UserRights::Instance();
    UserRights::Rights seen;
    connect(rights, &UserRights::UpdateUserRights, this, [&] { seen = allowed(); });
    rights->SetUser(QStringLiteral("admin"), UserRights::Admin);
    QCOMPARE(seen, UserRights::Rights(UserRights::Admin));
}

QTEST_APPLESS_MAIN(UserRightsTest)
#include "tst_userrights.moc"
