#include <recorder/source/sourcefactory.h>

#include <recorder/source/generatorsource.h>
#include <recorder/source/sigmfsource.h>

namespace ZelkoRecorder {

namespace {

std::unique_ptr<SignalSource> createGenerator(const QString& text, QString* error)
{
    const std::optional<GeneratorParameters> parameters = GeneratorParameters::parse(text, error);
    return parameters ? std::make_unique<GeneratorSource>(*parameters) : nullptr;
}

// The path in a description of a SigMF recording; nothing if it describes something else.
std::optional<QString> sigmfPath(const QString& description)
{
    constexpr QLatin1StringView sigmf("sigmf:");
    if (description.startsWith(sigmf)) {
        return description.mid(sigmf.size());
    }
    const bool isFile = description.endsWith(u".sigmf-meta") || description.endsWith(u".sigmf-data");
    return isFile ? std::optional(description) : std::nullopt;
}

} // namespace

std::unique_ptr<SignalSource> SourceFactory::create(const QString& description, QString* error)
{
    constexpr QLatin1StringView generator("generator:");
    if (description.startsWith(generator)) {
        return createGenerator(description.mid(generator.size()), error);
    }
    if (const auto path = sigmfPath(description)) {
        return SigmfSource::open(*path, error);
    }
    if (error != nullptr) {
        *error = QStringLiteral("\"%1\" is not a source: it must begin with \"generator:\" or \"sigmf:\", or end in "
                                "\".sigmf-meta\" or \".sigmf-data\"")
                     .arg(description);
    }
    return nullptr;
}

QString SourceFactory::fingerprint(const QString& description)
{
    const auto path = sigmfPath(description);
    return path ? SigmfSource::fingerprint(*path) : description;
}

} // namespace ZelkoRecorder
