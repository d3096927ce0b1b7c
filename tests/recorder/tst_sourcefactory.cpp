#include <recorder/source/sourcefactory.h>

#include <recorder/source/generatorsource.h>
#include <recorder/source/sigmfsource.h>

#include <sigmfpair.h>

#include <QDir>
#include <QTest>

using namespace ZelkoRecorder;

class TestSourceFactory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void makesAGenerator();
    void opensARecording_data();
    void opensARecording();
    void tellsSourcesApart();
    void refusesWithTheReason_data();
    void refusesWithTheReason();

private:
    QTemporaryDir m_folder;
};

void TestSourceFactory::initTestCase()
{
    QVERIFY(m_folder.isValid());
    QVERIFY(ZelkoTest::SigmfPair().write(m_folder.filePath(QStringLiteral("rec"))));
}

void TestSourceFactory::makesAGenerator()
{
    QString error;
    const auto source = SourceFactory::create(
        QStringLiteral("generator:fm,rate=96000,seconds=5,frequency=145000000,name=Tower"), &error);
    QVERIFY2(dynamic_cast<GeneratorSource*>(source.get()), qPrintable(error));
    QCOMPARE(source->description().sampleRate, quint64{96'000});
    QCOMPARE(source->description().totalFrames, qint64{480'000});
    QCOMPARE(source->description().name, QStringLiteral("Tower"));
}

void TestSourceFactory::opensARecording_data()
{
    QTest::addColumn<QString>("text");
    const QString stem = m_folder.filePath(QStringLiteral("rec"));
    QTest::newRow("stem behind the word") << QStringLiteral("sigmf:") + stem;
    QTest::newRow("metadata behind the word") << QStringLiteral("sigmf:") + stem + QStringLiteral(".sigmf-meta");
    QTest::newRow("bare metadata") << stem + QStringLiteral(".sigmf-meta");
    QTest::newRow("bare data") << stem + QStringLiteral(".sigmf-data");
}

void TestSourceFactory::opensARecording()
{
    QFETCH(const QString, text);
    QString error;
    const auto source = SourceFactory::create(text, &error);
    QVERIFY2(dynamic_cast<SigmfSource*>(source.get()), qPrintable(error));
    QCOMPARE(source->description().totalFrames, qint64{4});
    const QString other = QStringLiteral("sigmf:") + QDir::current().relativeFilePath(m_folder.filePath("rec"));
    QCOMPARE(SourceFactory::fingerprint(text), SourceFactory::fingerprint(other));
}

void TestSourceFactory::tellsSourcesApart()
{
    QVERIFY(ZelkoTest::SigmfPair().write(m_folder.filePath(QStringLiteral("other"))));
    const QStringList texts{QStringLiteral("generator:fm"),
                            QStringLiteral("generator:fm,rate=48000"),
                            QStringLiteral("sigmf:") + m_folder.filePath(QStringLiteral("rec")),
                            QStringLiteral("sigmf:") + m_folder.filePath(QStringLiteral("other")),
                            QStringLiteral("sigmf:/nowhere/rec"),
                            QString()};
    QSet<QString> fingerprints;
    for (const QString& text : texts) {
        fingerprints.insert(SourceFactory::fingerprint(text));
        QCOMPARE(SourceFactory::fingerprint(text), SourceFactory::fingerprint(text));
    }
    QCOMPARE(fingerprints.size(), texts.size());
}

void TestSourceFactory::refusesWithTheReason_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("reason");
    QTest::newRow("nothing") << ""
                             << "\"\" is not a source";
    QTest::newRow("bare stem") << m_folder.filePath(QStringLiteral("rec")) << "is not a source";
    QTest::newRow("another word") << "antenna:1"
                                  << "\"antenna:1\" is not a source";
    QTest::newRow("generator without a kind") << "generator:"
                                              << "unknown kind \"\"";
    QTest::newRow("unknown key") << "generator:fm,tone=1"
                                 << "unknown key \"tone\"";
    QTest::newRow("bad value") << "generator:fm,rate=x"
                               << "\"rate\" must be a whole number";
    QTest::newRow("no such recording") << "sigmf:/nowhere/rec"
                                       << "\"/nowhere/rec.sigmf-meta\" cannot be read";
    QTest::newRow("no path") << "sigmf:"
                             << "\".sigmf-meta\" cannot be read";
    QTest::newRow("no such bare recording") << "/nowhere/rec.sigmf-data"
                                            << "\"/nowhere/rec.sigmf-meta\" cannot be read";
}

void TestSourceFactory::refusesWithTheReason()
{
    QFETCH(const QString, text);
    QFETCH(const QString, reason);
    QString error;
    QVERIFY(!SourceFactory::create(text, &error));
    QVERIFY2(error.contains(reason), qPrintable(error));
    QVERIFY(!SourceFactory::create(text, nullptr));
}

QTEST_APPLESS_MAIN(TestSourceFactory)
#include "tst_sourcefactory.moc"
