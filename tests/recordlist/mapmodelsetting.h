#pragma once

#include "recordsignallog.h"
#include "testrecords.h"

#include <valuecore/tree.h>
#include <zelkobase/maps/recorditemmap.h>
#include <zelkoguibase/recordlist/recorditemmapmodel.h>

#include <QAbstractItemModelTester>
#include <QtTest>

#include <memory>
#include <optional>
#include <utility>
#include <vector>

using namespace Qt::StringLiterals;

/// A record map on the tree and a model that may be connected to it: what the tests of RecordItemMapModel stand on.
/// Each test begins with `setUp` and ends with `tearDown`, which looks whether the model can still find its rows.
class MapModelSetting
{
protected:
    using RecordItemMap = zelko::recordmap::RecordItemMap;
    using RecordMapData = zelko::recordmap::RecordMapData;
    using RecordItemMapModel = ZelkoGUI::RecordItemMapModel;

    static inline const QString folder = QStringLiteral("/SubSystems/north/ZELKO/Device/A1/Records");
    static inline const QString mapPath = folder + QStringLiteral("/Map");

    static constexpr int recording = 2;
    static constexpr int loopRecording = 3;
    static constexpr int atRest = 5;

    static QStringList lines(std::initializer_list<const char*> texts)
    {
        QStringList result;
        for (const char* text : texts) {
            result.append(QString::fromLatin1(text));
        }
        return result;
    }

    void setUp()
    {
        m_map = Tree::Instance()->Emplace(folder, std::make_unique<RecordItemMap>(u"Map"_s, TValueState::Open));
        QVERIFY(m_map);
        m_model = std::make_unique<RecordItemMapModel>(nullptr);
        m_tester.emplace(m_model.get(), QAbstractItemModelTester::FailureReportingMode::QtTest);
        m_log.emplace(m_model.get());
    }

    void tearDown()
    {
        if (m_model) {
            checkLookUps();
        }
        m_log.reset();
        m_tester.reset();
        m_model.reset();
        Tree::Instance()->Remove(u"/SubSystems"_s);
    }

    static RecordMapData item(const QString& id, int status = atRest, quint64 size = 0)
    {
        return RecordMapData(makeRecord(id, status, size));
    }
    static QString numbered(int number) { return QString::number(number); }
    static std::vector<std::pair<QString, int>> manyAtRest(int count)
    {
        std::vector<std::pair<QString, int>> result;
        for (int i = 0; i < count; ++i) {
            result.emplace_back(numbered(i), atRest);
        }
        return result;
    }

    void set(const QString& id, int status, quint64 size = 0) { m_map->SetAt(id, item(id, status, size), nullptr); }

    template <typename Changes>
    void fold(Changes changes)
    {
        const auto keepAlive = m_map;
        keepAlive->StartTransaction(nullptr);
        changes();
        keepAlive->EndTransaction(TChangeCode::ValueChanged, nullptr);
    }

    // More changes than the log keeps.
    void overrun()
    {
        for (int i = 0; i <= 250; ++i) {
            set(u"overrun"_s, atRest, m_size++);
        }
    }

    void connectFilled(const std::vector<std::pair<QString, int>>& records)
    {
        for (const auto& [id, status] : records) {
            set(id, status);
        }
        QVERIFY(m_model->connect(mapPath));
        m_log->take();
    }

    QString ids() const { return columnTexts(*m_model, RecordItemMapModel::RecordIDColumn).join(QLatin1Char(' ')); }

    void checkLookUps() const
    {
        for (int row = 0; row < m_model->rowCount(); ++row) {
            const QString id = m_model->recordID(row);
            QVERIFY(!id.isEmpty());
            QCOMPARE(m_model->recordIndex(id).row(), row);
            QCOMPARE(m_model->getRecordData(id).get(), m_model->recordData(row).get());
        }
    }

    RecordItemMap* m_map = nullptr;
    std::unique_ptr<RecordItemMapModel> m_model;
    std::optional<QAbstractItemModelTester> m_tester;
    std::optional<RecordSignalLog> m_log;
    quint64 m_size = 0;
};
