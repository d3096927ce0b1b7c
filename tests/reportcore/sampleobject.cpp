#include "sampleobject.h"

#include <reportcore/fieldtable.h>

#include <limits>

RG_DEFINE_OBJECT(SamplePart, SAMPLE_PART_FIELDS, Refuse)
RG_DEFINE_ENUM(SampleObject, Colour, COLOURS)
RG_DEFINE_OBJECT(SampleObject, SAMPLE_OBJECT_FIELDS, Skip)

SampleObject smallSample()
{
    SampleObject object;
    object.SetName(QStringLiteral("small"));
    object.SetHead(sampleValue<SamplePart>());
    object.AppendAddress(QStringLiteral("first"));
    return object;
}

SampleObject fullSample()
{
    SampleObject object = smallSample();
    object.AppendAddress(QString());
    object.SetFlag(true);
    object.SetChoice(false);
    object.SetSmall(std::numeric_limits<int>::min());
    object.SetCount(std::numeric_limits<unsigned int>::max());
    object.SetBalance(std::numeric_limits<qint64>::min());
    object.SetTotal(std::numeric_limits<quint64>::max());
    object.SetLevel(-1.0 / 3);
    object.SetText(QStringLiteral("line\nnext \t\\ <&>"));
    object.SetTime(sampleValue<QDateTime>());
    object.SetColour(SampleObject::Colour::Blue);
    object.SetExtra(sampleValue<SamplePart>());
    object.SetFigure({1, -2, 0});
    object.SetPalette({SampleObject::Colour::Green, SampleObject::Colour::Red});
    object.SetItem({sampleValue<SamplePart>(), sampleValue<SamplePart>()});
    return object;
}
