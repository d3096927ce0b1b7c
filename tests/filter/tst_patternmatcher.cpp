#include <zelkoguibase/filter/patternmatcher_p.h>

#include <QRandomGenerator>
#include <QtTest>

using ZelkoGUI::Filter::FixedTextSearch;
using ZelkoGUI::Filter::PatternMatcher;

namespace {

constexpr Qt::CaseSensitivity bothCases[] = {Qt::CaseSensitive, Qt::CaseInsensitive};

// Letters whose case is one to one, one to many and special, signs of expressions and wildcards, blanks, zeros, and
// surrogates in pairs that differ in case, in other pairs, and alone.
const QString pieces[] = {
    QStringLiteral("a"),          QStringLiteral("A"),          QStringLiteral("b"),
    QStringLiteral("k"),          QStringLiteral("K"),          QStringLiteral("\u212A"),
    QStringLiteral("s"),          QStringLiteral("S"),          QStringLiteral("\u017F"),
    QStringLiteral("\u03C3"),     QStringLiteral("\u03C2"),     QStringLiteral("\u03A3"),
    QStringLiteral("\u00DF"),     QStringLiteral("\u1E9E"),     QStringLiteral("i"),
    QStringLiteral("I"),          QStringLiteral("\u0130"),     QStringLiteral("\u0131"),
    QStringLiteral("e\u0301"),    QStringLiteral("\u00E9"),     QStringLiteral("\u03B8"),
    QStringLiteral("\u03D1"),     QStringLiteral("\u0398"),     QStringLiteral("\u03F4"),
    QStringLiteral("."),          QStringLiteral("*"),          QStringLiteral("["),
    QStringLiteral("]"),          QStringLiteral("\\"),         QStringLiteral("^"),
    QStringLiteral("$"),          QStringLiteral("?"),          QStringLiteral("("),
    QStringLiteral("|"),          QStringLiteral("{"),          QStringLiteral(" "),
    QStringLiteral("\t"),         QStringLiteral("\n"),         QString(QChar(0)),
    QStringLiteral("\uFFFF"),     QStringLiteral("\U00010400"), QStringLiteral("\U00010428"),
    QStringLiteral("\U0001F4E1"), QString(QChar(0xD801)),       QString(QChar(0xDC00)),
    QString(QChar(0xDC28)),
};

class Texts
{
public:
    explicit Texts(quint32 seed)
        : m_random(seed)
    {}

    QString text(int mostPieces)
    {
        QString text;
        for (int count = m_random.bounded(mostPieces + 1); count > 0; --count) {
            text += pieces[m_random.bounded(static_cast<quint32>(std::size(pieces)))];
        }
        return text;
    }

    /// A text that often holds `wanted`, in this case or that.
    QString around(const QString& wanted, int mostPieces)
    {
        QString found = wanted;
        for (QChar& c : found) {
            c = m_random.bounded(2) == 0 ? c : m_random.bounded(2) == 0 ? c.toUpper() : c.toLower();
        }
        return text(mostPieces) + (m_random.bounded(3) == 0 ? QString() : found) + text(mostPieces);
    }

private:
    QRandomGenerator m_random;
};

void requireSameAnswer(const QRegExp& expression, const PatternMatcher& matcher, const QString& text)
{
    if (matcher.isFoundIn(text) != expression.containedIn(text)) {
        const QByteArray which = expression.pattern().toUtf8().toHex(' ') + " in " + text.toUtf8().toHex(' ');
        QTest::qFail(which.constData(), __FILE__, __LINE__);
    }
}

void requireSameAnswer(const QString& pattern, const QString& text)
{
    for (const Qt::CaseSensitivity cs : bothCases) {
        const QRegExp expression(pattern, cs, QRegExp::FixedString);
        requireSameAnswer(expression, PatternMatcher(expression), text);
    }
}

/// All that one case makes of a character, and what could be taken for it.
QSet<QChar> relativesOf(QChar c)
{
    return {c,
            c.toLower(),
            c.toUpper(),
            c.toTitleCase(),
            c.toCaseFolded(),
            c.toCaseFolded().toUpper(),
            QChar(c.unicode() ^ 0x20),
            QChar(c.unicode() ^ 0x100)};
}

bool hasCase(QChar c)
{
    return c.toLower() != c || c.toUpper() != c || c.toCaseFolded() != c;
}

} // namespace

class PatternMatcherTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anEmptyPatternIsInEveryText();
    void fixedTextsAreSearchedTheQuickWay_data();
    void fixedTextsAreSearchedTheQuickWay();
    void findsATextAtEachPlaceOfTextsOfEachLength();
    void doesNotLookBeyondTheEnd();
    void answersAsTheExpressionForEachCharacterWithACase();
    void answersAsTheExpressionForEachCharacterWithoutACase();
    void answersAsTheExpressionForRandomFixedTexts_data();
    void answersAsTheExpressionForRandomFixedTexts();
    void answersAsTheExpressionForOtherSyntaxes();
    void answersAsTheExpressionForLongTexts();
};

void PatternMatcherTest::anEmptyPatternIsInEveryText()
{
    for (const auto syntax : {QRegExp::FixedString, QRegExp::Wildcard, QRegExp::RegExp}) {
        const PatternMatcher matcher(QRegExp(QString(), Qt::CaseSensitive, syntax));
        QVERIFY(matcher.isFoundIn(QString()));
        QVERIFY(matcher.isFoundIn(QStringLiteral("text")));
    }
}

void PatternMatcherTest::fixedTextsAreSearchedTheQuickWay_data()
{
    QTest::addColumn<QString>("wanted");
    QTest::addColumn<bool>("exactly");
    QTest::addColumn<bool>("inAnyCase");

    QTest::newRow("a word") << QStringLiteral("Beacon") << true << true;
    QTest::newRow("signs of expressions") << QStringLiteral("[a]*\\.") << true << true;
    QTest::newRow("other letters") << QStringLiteral("\u0414\u03C3\u00DF") << true << true;
    QTest::newRow("a dotted capital I") << QStringLiteral("\u0130") << true << false;
    QTest::newRow("a character of two units") << QStringLiteral("\U00010400") << true << false;
    QTest::newRow("nothing") << QString() << false << false;
}

void PatternMatcherTest::fixedTextsAreSearchedTheQuickWay()
{
    QFETCH(QString, wanted);
    QFETCH(bool, exactly);
    QFETCH(bool, inAnyCase);
    QCOMPARE(FixedTextSearch::prepare(wanted, Qt::CaseSensitive).has_value(), exactly);
    QCOMPARE(FixedTextSearch::prepare(wanted, Qt::CaseInsensitive).has_value(), inAnyCase);
}

void PatternMatcherTest::findsATextAtEachPlaceOfTextsOfEachLength()
{
    for (const QString& wanted : {QStringLiteral("x"), QStringLiteral("xy"), QStringLiteral("xyz"),
                                  QStringLiteral("x23456789y"), QStringLiteral("x2345678901234567890y")}) {
        const auto search = FixedTextSearch::prepare(wanted.toUpper(), Qt::CaseInsensitive);
        QVERIFY(search);
        for (qsizetype length = 0; length < 40; ++length) {
            const QString text(length, u'-');
            QVERIFY(!search->isIn(text));
            for (qsizetype place = 0; place <= length; ++place) {
                QVERIFY(search->isIn(QString(text).insert(place, wanted)));
                QVERIFY(!search->isIn(QString(text).insert(place, wanted.chopped(1))));
            }
        }
    }
}

void PatternMatcherTest::doesNotLookBeyondTheEnd()
{
    const auto search = FixedTextSearch::prepare(QStringLiteral("end"), Qt::CaseSensitive);
    QVERIFY(search);
    const QString text = QStringLiteral("from the start to the end");
    for (qsizetype length = 0; length < text.size(); ++length) {
        // A copy of its own lets a sanitizer see a read behind it.
        const std::vector<char16_t> copy(text.utf16(), text.utf16() + length);
        QVERIFY(!search->isIn(QStringView(copy.data(), length)));
    }
    QVERIFY(search->isIn(text));
}

void PatternMatcherTest::answersAsTheExpressionForEachCharacterWithACase()
{
    for (unsigned int unit = 0; unit <= 0xFFFF; ++unit) {
        const QChar c(unit);
        if (!hasCase(c)) {
            continue;
        }
        for (const QChar relative : relativesOf(c)) {
            requireSameAnswer(c, relative);
            requireSameAnswer(relative, c);
            requireSameAnswer(QStringLiteral("a") + c + QStringLiteral("b"),
                              QStringLiteral("----------A") + relative + QStringLiteral("B-"));
        }
    }
}

void PatternMatcherTest::answersAsTheExpressionForEachCharacterWithoutACase()
{
    for (unsigned int unit = 0; unit <= 0xFFFF; unit += 7) {
        const QChar c(unit);
        requireSameAnswer(c, c);
        requireSameAnswer(c, QStringLiteral("no such character is in it"));
    }
}

void PatternMatcherTest::answersAsTheExpressionForRandomFixedTexts_data()
{
    QTest::addColumn<quint32>("seed");
    for (const quint32 seed : {1U, 2U, 3U, 4U}) {
        QTest::addRow("random texts %u", seed) << seed;
    }
}

void PatternMatcherTest::answersAsTheExpressionForRandomFixedTexts()
{
    QFETCH(quint32, seed);
    Texts texts(seed);
    for (int i = 0; i < 3000; ++i) {
        const QString pattern = texts.text(6);
        if (!pattern.isEmpty()) {
            requireSameAnswer(pattern, texts.around(pattern, 20));
        }
    }
}

void PatternMatcherTest::answersAsTheExpressionForOtherSyntaxes()
{
    Texts texts(5);
    for (int i = 0; i < 1000; ++i) {
        const QString pattern = texts.text(4);
        for (const auto syntax : {QRegExp::RegExp, QRegExp::Wildcard, QRegExp::WildcardUnix, QRegExp::RegExp2}) {
            const QRegExp expression(pattern, Qt::CaseInsensitive, syntax);
            if (!pattern.isEmpty()) {
                requireSameAnswer(expression, PatternMatcher(expression), texts.around(pattern, 10));
            }
        }
    }
}

void PatternMatcherTest::answersAsTheExpressionForLongTexts()
{
    Texts texts(6);
    for (int i = 0; i < 50; ++i) {
        const QString pattern = texts.text(300);
        if (!pattern.isEmpty()) {
            requireSameAnswer(pattern, texts.around(pattern, 2000));
            requireSameAnswer(pattern.first(1), texts.around(pattern, 2000));
        }
    }
}

QTEST_APPLESS_MAIN(PatternMatcherTest)
#include "tst_patternmatcher.moc"
