#pragma once

#include <zelkobase/data/zelko_recorddata.h>

#include <QLatin1String>

namespace ZELKO_XML {

/// Name of the file with a record's metadata, in the folder that is named after the record's ID.
inline constexpr QLatin1String metaDataFileName{"RecordData.xml"};

/// Extension of the file with the samples, with its dot: ".sym" for symbols and ".dat" for every other format.
ZELKOBASEDATA_EXPORT QString sampleFileExtension(ZELKO_RecordData::DataFormat format);

/// Name of the file with the samples: the record's ID and the extension.
ZELKOBASEDATA_EXPORT QString sampleFileName(const QString& recordID, ZELKO_RecordData::DataFormat format);

/// Whether recordings of this format come with an index file, and can be shown as a spectrum.
ZELKOBASEDATA_EXPORT bool hasIndexFile(ZELKO_RecordData::DataFormat format);

} // namespace ZELKO_XML
