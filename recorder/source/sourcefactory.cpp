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

} // namespace

std::unique_ptr<SignalSource> SourceFactory::create(const QString& description, QString* error)
{
    constexpr QLatin1StringView generator("generator:");
    constexpr QLatin1StringView sigmf("sigmf:");
    if (description.startsWith(generator)) {
        return createGenerator(description.mid(generator.size()), error);
    }
    if (description.startsWith(sigmf)) {
        return SigmfSource::open(description.mid(sigmf.size()), error);
    }
    if (description.endsWith(u".sigmf-meta") || description.endsWith(u".sigmf-data")) {
        return SigmfSource::open(description, error);
    }
    if (error != nullptr) {
        *error = QStringLiteral("\"%1\" is not a source: it must begin with \"generator:\" or \"sigmf:\", or end in "
                                "\".sigmf-meta\" or \".sigmf-data\"")
                     .arg(description);
    }
    return nullptr;
}

} // namespace ZelkoRecorder
