#include "signallog.h"

#include <zelkoguibase/filter/selectablemetaenummodel.h>

#include <QAbstractItemModelTester>
#include <QMetaEnum>
#include <QtTest>

using ZelkoGUI::Filter::SelectableMetaEnumModel;

class SelectableMetaEnumModelTest : public QObject
{
    Q_OBJECT

public:
    enum Band { Low = 100, Middle = 7, High = -1 };
    Q_ENUM(Band)

private Q_SLOTS:
    void offersTheKeys();
    void aValueIsTheIndexOfItsKey();
};

void SelectableMetaEnumModelTest::offersTheKeys()
{
    SelectableMetaEnumModel model(QMetaEnum::fromType<Band>(), nullptr);
    const QAbstractItemModelTester tester(&model);
    QCOMPARE(columnTexts(model, 0),
             (QStringList{QStringLiteral("Select All"), QStringLiteral("Nothing"), QStringLiteral("Low"),
                          QStringLiteral("Middle"), QStringLiteral("High")}));
}

void SelectableMetaEnumModelTest::aValueIsTheIndexOfItsKey()
{
    QObject parent;
    auto* const model = new SelectableMetaEnumModel(QMetaEnum::fromType<Band>(), &parent);
    QCOMPARE(model->parent(), &parent);
    model->setAll(true);
    QCOMPARE(model->selectedValues(), (QList<int>{0, 1, 2}));
    model->setSelectedValues({2, Low});
    QCOMPARE(model->selectedNames(), QStringList(QStringLiteral("High")));
}

QTEST_MAIN(SelectableMetaEnumModelTest)
#include "tst_selectablemetaenummodel.moc"
