#include <zelkobase/data/recordfiles.h>

namespace ZELKO_XML {

QString sampleFileExtension(ZELKO_RecordData::DataFormat format)
{
    return format == ZELKO_RecordData::DataFormat::Symbols ? QStringLiteral(".sym") : QStringLiteral(".dat");
}

QString sampleFileName(const QString& recordID, ZELKO_RecordData::DataFormat format)
{
    return recordID + sampleFileExtension(format);
}

bool hasIndexFile(ZELKO_RecordData::DataFormat format)
{
    return format == ZELKO_RecordData::DataFormat::IQ16 || format == ZELKO_RecordData::DataFormat::IQ32;
}

} // namespace ZELKO_XML
