#include "exactbytes.h"

#include <valuecore/icommandtransmitter.h>
#include <valuecore/valuefactory.h>
#include <valuecore/valuetypes.h>

#include <QTest>

#include <functional>
#include <random>

namespace {

constexpr int randomRounds = 20000;

// Keeps each command by itself, as its bytes.
class CommandBytes final : public ICommandTransmitter
{
public:
    void Transmit(ValueBase&, const Command& command, IObserver*) override
    {
        std::string bytes;
        command.AddCommandString(bytes);
        const std::unique_ptr<Command> copy(command.Clone());
        std::string copied;
        copy->AddCommandString(copied);
        QCOMPARE(copied, bytes);
        QCOMPARE(copy->GetCommandId(), command.GetCommandId());
        all.push_back(bytes);
    }
    std::vector<std::string> all;
};

void changeText(ValueBase& value)
{
    value.SetStringValue("ä;\n1;", nullptr);
}
void changeNumber(ValueBase& value)
{
    value.SetStringValue("17", nullptr);
}
void changeFlag(ValueBase& value)
{
    value.SetStringValue("true", nullptr);
}
void changeLimited(ValueBase& value)
{
    if (auto* const number = dynamic_cast<ValueNumeric<double>*>(&value)) {
        number->SetLimits(-1.0, 59.0, nullptr);
    } else {
        dynamic_cast<ValueNumeric<qint64>&>(value).SetLimits(-1, 59, nullptr);
    }
    value.SetStringValue("17", nullptr);
}
void changeSelection(ValueBase& value)
{
    auto& selection = dynamic_cast<ValueSelection&>(value);
    selection.SetChoices({{1, "one;"}, {59, QString()}}, nullptr);
    selection.SetCurrentKey(59, nullptr);
}

using Change = void (*)(ValueBase&);

void eachKind()
{
    QTest::addColumn<std::string>("typeName");
    QTest::addColumn<Change>("change");
    QTest::newRow("text") << std::string("Text") << &changeText;
    QTest::newRow("int") << std::string("Integer") << &changeNumber;
    QTest::newRow("bool") << std::string("Boolean") << &changeFlag;
    QTest::newRow("double") << std::string("Number") << &changeNumber;
    QTest::newRow("64-bit integer") << std::string("Integer64") << &changeNumber;
    QTest::newRow("double with limits") << std::string("NumericDouble") << &changeLimited;
    QTest::newRow("64-bit integer with limits") << std::string("NumericInteger64") << &changeLimited;
    QTest::newRow("selection") << std::string("Selection") << &changeSelection;
}

// Every command that a value of this kind can write, each by itself.
std::vector<std::string> commandsOf(ValueBase& value, Change change)
{
    CommandBytes bytes;
    value.SetTransmitter(&bytes);
    change(value);
    value.SetState(TValueState::Locked, nullptr);
    value.HasChanged(TChangeCode::ValueChanged, nullptr);
    value.HasChanged(TChangeCode::ValueRefreshed, nullptr);
    value.SetTransmitter(nullptr);
    return bytes.all;
}

std::string joined(const std::vector<std::string>& commands)
{
    std::string stream;
    for (const std::string& command : commands) {
        stream += command;
    }
    return stream;
}

bool rebuildsFromItsState(ValueBase& value)
{
    std::string state;
    value.AddObjectStateStringForTransmission(state, 0);
    const ExactBytes bytes(state);
    const auto fresh = valuefactory::create(value.GetTypeName());
    return fresh->SetCommandString(bytes.view(), nullptr) && fresh->Compare(&value);
}

} // namespace

Q_DECLARE_METATYPE(Change)

class tst_CommandStream : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyCommandReadsBack_data() { eachKind(); }
    void everyCommandReadsBack();
    void aStreamOfAllCommandsMakesAnEqualValue_data() { eachKind(); }
    void aStreamOfAllCommandsMakesAnEqualValue();
    void aCommandCutOffAnywhereIsRefused_data() { eachKind(); }
    void aCommandCutOffAnywhereIsRefused();
    void aWrongEndSignIsRefused_data() { eachKind(); }
    void aWrongEndSignIsRefused();
    void mutatedStreamsAreReadWithinTheirBytes_data() { eachKind(); }
    void mutatedStreamsAreReadWithinTheirBytes();
    void randomBytesAreReadWithinTheirBytes_data() { eachKind(); }
    void randomBytesAreReadWithinTheirBytes();
};

void tst_CommandStream::everyCommandReadsBack()
{
    QFETCH(std::string, typeName);
    QFETCH(Change, change);
    const auto writer = valuefactory::create(typeName);
    for (const std::string& command : commandsOf(*writer, change)) {
        const ExactBytes bytes(command);
        const char* stream = bytes.begin();
        CommandReader reader(&stream, static_cast<std::ptrdiff_t>(command.size()));
        const int id = reader.commandId();
        const auto target = valuefactory::create(typeName);
        const std::unique_ptr<Command> read(target->CreateNextCommand(id, &stream, nullptr, reader.remainingAsInt()));
        QVERIFY(read);
        QVERIFY(stream == bytes.end());
        QCOMPARE(read->GetCommandId(), id);
        std::string again;
        read->AddCommandString(again);
        QCOMPARE(again, command);
    }
}

void tst_CommandStream::aStreamOfAllCommandsMakesAnEqualValue()
{
    QFETCH(std::string, typeName);
    QFETCH(Change, change);
    const auto writer = valuefactory::create(typeName);
    const auto commands = commandsOf(*writer, change);
    QVERIFY(commands.size() >= 4);
    const auto target = valuefactory::create(typeName);
    QVERIFY(target->SetCommandString(joined(commands), nullptr));
    QVERIFY(target->Compare(writer.get()));
    QVERIFY(rebuildsFromItsState(*writer));
}

void tst_CommandStream::aCommandCutOffAnywhereIsRefused()
{
    QFETCH(std::string, typeName);
    QFETCH(Change, change);
    const auto writer = valuefactory::create(typeName);
    const auto target = valuefactory::create(typeName);
    const auto untouched = valuefactory::create(typeName);
    for (const std::string& command : commandsOf(*writer, change)) {
        for (std::size_t length = 1; length < command.size(); ++length) {
            const ExactBytes bytes(std::string_view(command).substr(0, length));
            QVERIFY2(!target->SetCommandString(bytes.view(), nullptr), qPrintable(QString::number(length)));
        }
    }
    QVERIFY(target->Compare(untouched.get()));
}

void tst_CommandStream::aWrongEndSignIsRefused()
{
    QFETCH(std::string, typeName);
    QFETCH(Change, change);
    const auto writer = valuefactory::create(typeName);
    const auto target = valuefactory::create(typeName);
    for (std::string command : commandsOf(*writer, change)) {
        QCOMPARE(command.back(), ';');
        command.back() = ',';
        QVERIFY(!target->SetCommandString(ExactBytes(command).view(), nullptr));
    }
}

void tst_CommandStream::mutatedStreamsAreReadWithinTheirBytes()
{
    QFETCH(std::string, typeName);
    QFETCH(Change, change);
    std::mt19937 random(20240229);
    const auto writer = valuefactory::create(typeName);
    const std::string stream = joined(commandsOf(*writer, change));
    int accepted = 0;
    for (int round = 0; round < randomRounds; ++round) {
        std::string mutated = stream.substr(0, 1 + random() % stream.size());
        for (auto left = random() % 4; left > 0; --left) {
            mutated[random() % mutated.size()] = static_cast<char>(random());
        }
        const auto target = valuefactory::create(typeName);
        const auto untouched = valuefactory::create(typeName);
        if (target->SetCommandString(ExactBytes(mutated).view(), nullptr)) {
            ++accepted;
            QVERIFY(rebuildsFromItsState(*target));
        } else {
            QVERIFY(target->Compare(untouched.get()));
        }
    }
    QVERIFY(accepted > 0);
    QVERIFY(accepted < randomRounds);
}

void tst_CommandStream::randomBytesAreReadWithinTheirBytes()
{
    QFETCH(std::string, typeName);
    std::mt19937 random(17);
    const char* const starts[] = {"1;", "2;", "10;", "11;", "20;", ""};
    for (int round = 0; round < randomRounds; ++round) {
        std::string bytes = starts[random() % std::size(starts)];
        for (auto left = random() % 40; left > 0; --left) {
            bytes.push_back(static_cast<char>(random()));
        }
        const auto target = valuefactory::create(typeName);
        if (target->SetCommandString(ExactBytes(bytes).view(), nullptr)) {
            QVERIFY(rebuildsFromItsState(*target));
        }
    }
}

QTEST_GUILESS_MAIN(tst_CommandStream)
#include "tst_commandstream.moc"
