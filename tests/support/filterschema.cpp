#include "filterschema.h"

#include "patience.h"

#include <QProcess>
#include <QtTest>

namespace ZelkoTest {

QString objectionsOfFilterSchema(const QString& fileName)
{
    constexpr int noSchema = 5; // says xmllint of a schema that is none itself
    QProcess xmllint;
    xmllint.start(QStringLiteral("xmllint"), {QStringLiteral("--noout"), QStringLiteral("--schema"),
                                              QStringLiteral(ZELKO_FILTER_SCHEMA), fileName});
    const bool ended = xmllint.waitForFinished(patience) && xmllint.exitStatus() == QProcess::NormalExit;
    const QString said = QString::fromUtf8(xmllint.readAllStandardError());
    [&] { QVERIFY2(ended, "xmllint, of the package libxml2-utils, is missing or did not end"); }();
    [&] { QVERIFY2(xmllint.exitCode() != noSchema, qPrintable(said)); }();
    return xmllint.exitCode() == 0 ? QString() : said;
}

} // namespace ZelkoTest
