#include <widgetbase/rowheaderkeys.h>

#include "patience.h"

#include <QHeaderView>
#include <QShortcut>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QTableView>
#include <QtTest>

#include <memory>

using guiHelper::RowHeaderKeys;

/// A table whose vertical header has buttons, without a mouse.
class RowHeaderKeysTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_view = std::make_unique<QTableView>();
        m_view->setModel(&m_model);
        new RowHeaderKeys(m_view.get());
        m_view->show();
    }
    void cleanup() { m_view.reset(); }

    void aKeyPressesAButton_data();
    void aKeyPressesAButton();
    void insertGoesToTheLastRow();
    void aTableWithoutRowsHasNoButtons();
    void aShortcutOfTheWindowComesSecond();
    void anEditorKeepsItsKeys();

private:
    QStandardItemModel m_model{3, 2};
    std::unique_ptr<QTableView> m_view;
};

void RowHeaderKeysTest::aKeyPressesAButton_data()
{
    QTest::addColumn<int>("current");
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<QList<int>>("pressed");
    const Qt::KeyboardModifiers none;
    QTest::newRow("Delete in the first row") << 0 << Qt::Key_Delete << none << QList<int>{0};
    QTest::newRow("Delete in another row") << 1 << Qt::Key_Delete << none << QList<int>{1};
    QTest::newRow("Delete on the keypad")
        << 1 << Qt::Key_Delete << Qt::KeyboardModifiers(Qt::KeypadModifier) << QList<int>{1};
    QTest::newRow("Delete in the last row") << 2 << Qt::Key_Delete << none << QList<int>();
    QTest::newRow("Delete in no row") << -1 << Qt::Key_Delete << none << QList<int>();
    QTest::newRow("Delete with a modifier")
        << 1 << Qt::Key_Delete << Qt::KeyboardModifiers(Qt::ShiftModifier) << QList<int>();
    QTest::newRow("Insert in any row") << 0 << Qt::Key_Insert << none << QList<int>{2};
    QTest::newRow("Insert in no row") << -1 << Qt::Key_Insert << none << QList<int>{2};
    QTest::newRow("Insert with a modifier")
        << 0 << Qt::Key_Insert << Qt::KeyboardModifiers(Qt::ControlModifier) << QList<int>();
    QTest::newRow("another key") << 0 << Qt::Key_Down << none << QList<int>();
}

void RowHeaderKeysTest::aKeyPressesAButton()
{
    QFETCH(const int, current);
    QFETCH(const Qt::Key, key);
    QFETCH(const Qt::KeyboardModifiers, modifiers);
    m_view->setCurrentIndex(m_model.index(current, 0));
    QList<int> sections;
    connect(m_view->verticalHeader(), &QHeaderView::sectionClicked, this, [&](int section) { sections << section; });
    QTest::keyClick(m_view.get(), key, modifiers);
    QTEST(sections, "pressed");
}

void RowHeaderKeysTest::insertGoesToTheLastRow()
{
    QTest::keyClick(m_view.get(), Qt::Key_Insert);
    QCOMPARE(m_view->currentIndex(), m_model.index(2, 0));
    m_view->setCurrentIndex(m_model.index(0, 1));
    QTest::keyClick(m_view.get(), Qt::Key_Insert);
    QCOMPARE(m_view->currentIndex(), m_model.index(2, 1));
}

void RowHeaderKeysTest::aTableWithoutRowsHasNoButtons()
{
    QStandardItemModel none;
    m_view->setModel(&none);
    const QSignalSpy clicked(m_view->verticalHeader(), &QHeaderView::sectionClicked);
    QTest::keyClick(m_view.get(), Qt::Key_Insert);
    QTest::keyClick(m_view.get(), Qt::Key_Delete);
    QCOMPARE(clicked.size(), 0);
    m_view->setModel(&m_model);
}

void RowHeaderKeysTest::aShortcutOfTheWindowComesSecond()
{
    const QShortcut shortcut(QKeySequence(Qt::Key_Delete), m_view.get());
    const QSignalSpy activated(&shortcut, &QShortcut::activated);
    const QSignalSpy clicked(m_view->verticalHeader(), &QHeaderView::sectionClicked);
    m_view->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_view.get(), patience));
    m_view->setFocus();
    m_view->setCurrentIndex(m_model.index(1, 0));
    QTest::keyClick(m_view->windowHandle(), Qt::Key_Delete);
    QCOMPARE(clicked.size(), 1);
    QCOMPARE(activated.size(), 0);
}

void RowHeaderKeysTest::anEditorKeepsItsKeys()
{
    const QSignalSpy clicked(m_view->verticalHeader(), &QHeaderView::sectionClicked);
    m_view->setCurrentIndex(m_model.index(1, 0));
    m_view->edit(m_model.index(1, 0));
    QWidget* const editor = m_view->indexWidget(m_model.index(1, 0));
    QVERIFY(editor);
    QTest::keyClicks(editor, QStringLiteral("text"));
    QTest::keyClick(editor, Qt::Key_Home);
    QTest::keyClick(editor, Qt::Key_Delete);
    QCOMPARE(clicked.size(), 0);
}

QTEST_MAIN(RowHeaderKeysTest)
#include "tst_rowheaderkeys.moc"
