#pragma once

#include <reportcore/reportcore_export.h>

#include <QString>

class QDataStream;
class QFile;
class QXmlStreamReader;
class QXmlStreamWriter;

namespace REPORTGENERATOR {

/// What every data class that travels as XML or in binary form can do.
///
/// An operation that reads either takes over the whole of what it was given or leaves the object as it was. Invalid
/// content (a text that is not well-formed, a required field that is missing, an impossible value) is reported with
/// RGException. Not thread safe; different objects may be used on different threads.
class REPORTCORE_EXPORT IRGObject
{
public:
    virtual ~IRGObject();

    /// Back to the state of a new object: no field set. The validation switch stays.
    virtual void Reset() = 0;

    /// Whether any field is set.
    virtual bool HasData() const = 0;

    /// Throws RGException if a required field is missing or a value is impossible, here or in a nested object.
    virtual void Check() const = 0;

    /// As Check(), but with `throwing` false the answer is the result instead of an exception.
    virtual bool Check(bool throwing) const = 0;

    /// Validation on reading and on writing XML, on from the start. Off, missing required fields are accepted and
    /// unknown elements skipped; what is not well-formed or an impossible value is refused all the same.
    virtual void SetValidate(bool validate) = 0;

    /// Writes the object as one element. Throws RGException before anything is written if validation is on and the
    /// object does not pass Check().
    virtual void GetXml(QXmlStreamWriter& writer) const = 0;

    /// Reads one element: the one at which `reader` stands, otherwise the next one. False, with the object as it was,
    /// if it is an element of another class. The position of `reader` after a failure is not specified.
    virtual bool ProcessXml(QXmlStreamReader& reader) = 0;

    /// The object as a whole XML document; throws as GetXml() does.
    virtual QString GetXmlString() const = 0;

    /// Reads a whole XML document. With `complain` false, a text that is no document of this class (not well-formed,
    /// too large, or another root element) gives false; with true it throws RGException as well. Invalid content of a
    /// document of this class always throws.
    virtual bool SetXmlString(const QString& text, bool complain) = 0;

    /// Reads a file in UTF-8. False if it cannot be opened or read, or is a document of another class. Files of more
    /// than 32 MiB and such with a document type declaration are refused with RGException.
    virtual bool LoadXml(const QString& fileName) = 0;

    /// As above, from the present position of an open file; a closed one is opened for the time of the call.
    virtual bool LoadXml(QFile* file) = 0;

    /// Writes a file in UTF-8, atomically and durably: when this returns true, file and folder entry are on disk; after
    /// false the file is the old one, unless the last step, making the folder entry durable, has failed and putting the
    /// old file back, too. Throws as GetXml() does, with the file untouched.
    virtual bool SaveXml(const QString& fileName) const = 0;

    /// Writes the binary form. `version` is the version of that form, of which only 1 is known; another one throws
    /// RGException. With `check` the object is checked first.
    virtual void GetBinary(QDataStream& stream, int version, bool check) const = 0;

    /// Reads what GetBinary() wrote. False if the stream ends early, and it then has a status of its own; bytes that
    /// are not of this class or, with validation on, an incomplete object throw RGException.
    virtual bool SetBinary(QDataStream& stream, int version) = 0;

protected:
    IRGObject() = default;
    IRGObject(const IRGObject&) = default;
    IRGObject(IRGObject&&) noexcept = default;
    IRGObject& operator=(const IRGObject&) = default;
    IRGObject& operator=(IRGObject&&) noexcept = default;
};

} // namespace REPORTGENERATOR
