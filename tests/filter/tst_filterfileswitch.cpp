#include <zelkoguibase/filter/extendedfilterdialog.h>

#include "filterfolder.h"
#include "filterwindow.h"
#include "tracetexts.h"

/// Which rows a file switches on and off that have no check box for it.
class FilterFileSwitchTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_folder = std::make_unique<FilterFolder>(); }

    void aHiddenInterfaceFilterStaysOff();
    void aFileOfAListWithoutInterfacesDisablesTheRow();
    void onlyTheListRevivesTheRowOfInterfaces();
    void aFileDisablesOtherRowsUntilOneRevivesThem_data();
    void aFileDisablesOtherRowsUntilOneRevivesThem();

private:
    QString file() const { return m_folder->file(); }

    std::unique_ptr<FilterFolder> m_folder;
};

void FilterFileSwitchTest::aHiddenInterfaceFilterStaysOff()
{
    FilterWindow window;
    window.toggleValues(QStringLiteral("InterfaceFilterWidget"), {QStringLiteral("USB")});
    window.check(QStringLiteral("DeletableFilterWidget"), QStringLiteral("EnableFilter"));
    window.saveAs(file());
    FilterWindow hidden;
    hidden.dialog().enableInterfaceFilter(false);
    const QString before = hidden.state()[QStringLiteral("InterfaceFilter")];
    const TraceTexts traces;
    QCOMPARE(hidden.restoreFrom(file()), QString());
    QCOMPARE(hidden.state()[QStringLiteral("InterfaceFilter")], before);
    QVERIFY(!hidden.condition(QStringLiteral("InterfaceFilter"))->enabled());
    QVERIFY(hidden.condition(QStringLiteral("DeletableFlag"))->enabled());
    QVERIFY(traces.withSources().isEmpty());
}

void FilterFileSwitchTest::aFileOfAListWithoutInterfacesDisablesTheRow()
{
    FilterWindow hidden;
    hidden.dialog().enableInterfaceFilter(false);
    hidden.saveAs(file());
    FilterWindow window;
    window.toggleValues(QStringLiteral("InterfaceFilterWidget"), {QStringLiteral("USB")});
    QCOMPARE(window.restoreFrom(file()), QString());
    QVERIFY(!window.condition(QStringLiteral("InterfaceFilter"))->enabled());
    QVERIFY(!window.editor(QStringLiteral("InterfaceFilterWidget"))->isEnabled());
}

void FilterFileSwitchTest::onlyTheListRevivesTheRowOfInterfaces()
{
    const QString shown = m_folder->file(QStringLiteral("shown.xml"));
    FilterWindow window;
    window.saveAs(shown);
    window.condition(QStringLiteral("InterfaceFilter"))->setEnabled(false);
    window.saveAs(file());
    window.condition(QStringLiteral("InterfaceFilter"))->setEnabled(true);
    QWidget* const row = window.editor(QStringLiteral("InterfaceFilterWidget"));

    QCOMPARE(window.restoreFrom(file()), QString());
    QVERIFY(!row->isEnabled());
    window.dialog().resetFilter();
    QVERIFY(!row->isEnabled());
    QCOMPARE(window.restoreFrom(shown), QString());
    QVERIFY(!row->isEnabled());
    window.dialog().enableInterfaceFilter(true);
    QVERIFY(row->isEnabled());
    QVERIFY(window.condition(QStringLiteral("InterfaceFilter"))->enabled());
}

void FilterFileSwitchTest::aFileDisablesOtherRowsUntilOneRevivesThem_data()
{
    QTest::addColumn<QString>("condition");
    QTest::addColumn<QString>("editor");

    QTest::newRow("a text") << "NameFilter"
                            << "NameFilterWidget";
    QTest::newRow("an enumeration") << "StatusFilter"
                                    << "StatusFilterWidget";
}

void FilterFileSwitchTest::aFileDisablesOtherRowsUntilOneRevivesThem()
{
    QFETCH(QString, condition);
    QFETCH(QString, editor);
    const QString on = m_folder->file(QStringLiteral("on.xml"));
    FilterWindow window;
    window.saveAs(on);
    window.condition(condition)->setEnabled(false);
    window.saveAs(file());

    FilterWindow other;
    const QWidget* const row = other.editor(editor);
    QCOMPARE(other.restoreFrom(file()), QString());
    QVERIFY(!row->isEnabled());
    other.dialog().resetFilter();
    QVERIFY(!row->isEnabled());
    QVERIFY(!other.condition(condition)->enabled());
    QCOMPARE(other.restoreFrom(on), QString());
    QVERIFY(row->isEnabled());
    QVERIFY(other.condition(condition)->enabled());
}

QTEST_MAIN(FilterFileSwitchTest)
#include "tst_filterfileswitch.moc"
