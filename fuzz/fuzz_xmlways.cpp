// Foreign bytes as the XML of an object with fields of every kind, through each way that leads in: as a text, from a
// stream reader and from a file. What one way refuses the others refuse, and what they take is the same.
#include "require.h"
#include "sampleobject.h"

#include <reportcore/rgexception.h>

#include <QFile>
#include <QXmlStreamReader>

#include <cstdint>

#include <sys/mman.h>
#include <unistd.h>

namespace {

/// What came of a document on one way.
struct Outcome
{
    bool taken = false;
    SampleObject object;

    bool operator==(const Outcome&) const = default;
};

template <typename Read>
Outcome outcomeOf(bool validate, Read read)
{
    Outcome outcome;
    outcome.object.SetValidate(validate);
    try {
        outcome.taken = read(outcome.object);
    } catch (const RGException&) {
    }
    require(outcome.taken || outcome.object == SampleObject());
    return outcome;
}

bool readFromText(SampleObject& object, const QString& text)
{
    return object.SetXmlString(text, true);
}

/// The object and whatever follows it.
bool readFromStream(SampleObject& object, const QString& text)
{
    QXmlStreamReader reader(text);
    const SampleObject before = object;
    bool taken = object.ProcessXml(reader);
    while (!reader.atEnd()) {
        taken = reader.readNext() != QXmlStreamReader::DTD && taken;
    }
    taken = taken && !reader.hasError();
    if (!taken) {
        object = before;
    }
    return taken;
}

bool readFromFile(SampleObject& object, const QByteArray& bytes)
{
    const int descriptor = memfd_create("document", MFD_CLOEXEC);
    require(descriptor >= 0 &&
            write(descriptor, bytes.constData(), static_cast<std::size_t>(bytes.size())) == bytes.size());
    require(lseek(descriptor, 0, SEEK_SET) == 0);
    QFile file;
    require(file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle));
    return object.LoadXml(&file);
}

void compareWays(const QByteArray& bytes, bool validate)
{
    const QString text = QString::fromUtf8(bytes);
    const Outcome fromText = outcomeOf(validate, [&](auto& object) { return readFromText(object, text); });
    const Outcome fromStream = outcomeOf(validate, [&](auto& object) { return readFromStream(object, text); });
    require(fromText == fromStream);
    const Outcome fromFile = outcomeOf(validate, [&](auto& object) { return readFromFile(object, bytes); });
    const bool isPlainUtf8 = bytes.isValidUtf8() && !bytes.contains("encoding");
    require(!fromFile.taken || fromFile == fromText);
    require(!isPlainUtf8 || fromFile == fromText);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    compareWays(bytes, true);
    compareWays(bytes, false);
    return 0;
}
