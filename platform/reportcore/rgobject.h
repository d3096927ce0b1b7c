#pragma once

#include <reportcore/irgobject.h>

#include <functional>
#include <memory>
#include <string>

namespace REPORTGENERATOR {

class ByteReader;
struct ClassInfo;
class XmlDocument;

/// Base of the data classes that are declared as a list of fields (see fielddeclaration.h): everything an object can do
/// is done here, from the table that the list gives.
class REPORTCORE_EXPORT RGObject : public IRGObject
{
public:
    ~RGObject() override;

    void Reset() final;
    bool HasData() const final;
    void Check() const final;
    bool Check(bool throwing) const final;
    void SetValidate(bool validate) final { m_validate = validate; }
    void GetXml(QXmlStreamWriter& writer) const final;
    bool ProcessXml(QXmlStreamReader& reader) final;
    QString GetXmlString() const final;
    bool SetXmlString(const QString& text, bool complain) final;
    bool LoadXml(const QString& fileName) final;
    bool LoadXml(QFile* file) final;
    bool SaveXml(const QString& fileName) const final;
    void GetBinary(QDataStream& stream, int version, bool check) const final;
    bool SetBinary(QDataStream& stream, int version) final;

    /// Whether any field is set.
    bool AnyData() const { return HasData(); }

    /// Appends the binary form, which starts with its version number. Never fails and checks nothing.
    void appendBinary(std::string& out) const;

    /// Reads what appendBinary() wrote and moves `begin` behind it. False, with object and `begin` as they were, if the
    /// bytes up to `end` do not start with a whole object of this class; nothing is read past `end`. Values are
    /// checked, required fields are not.
    bool readBinary(const char*& begin, const char* end);

    /// As readBinary(), into a new object of class T; null if the bytes are not one. Spares the second object that
    /// keeps the old state of the first.
    template <typename T>
    static std::shared_ptr<T> makeFromBinary(const char*& begin, const char* end)
    {
        auto object = std::make_shared<T>();
        return static_cast<RGObject&>(*object).fillFromBinary(begin, end) ? object : nullptr;
    }

    /// What is wrong with the object in one line, empty if Check() passes.
    QString problem() const;

    /// The table of the fields.
    virtual const ClassInfo& classInfo() const = 0;

protected:
    /// Fills a new object; false to give it up.
    using Fill = std::function<bool(RGObject& fresh)>;

    RGObject() = default;
    RGObject(const RGObject&) = default;
    RGObject(RGObject&&) noexcept = default;
    RGObject& operator=(const RGObject&) = default;
    RGObject& operator=(RGObject&&) noexcept = default;

    /// Values of all fields, and of optional ones whether they are set.
    bool equals(const RGObject& other) const;

    /// A rule of the class over and above those of its fields: what is wrong in one line, empty if nothing.
    virtual QString contentProblem() const;

    /// Takes over a new object of the same class if `fill` accepts it, and gives the answer of `fill`.
    virtual bool replaceIf(const Fill& fill) = 0;

    /// The binary form of the fields, which BinaryForm describes. `readBinaryFields` is for a new object.
    virtual void appendBinaryFields(std::string& out) const = 0;
    virtual bool readBinaryFields(ByteReader& reader) = 0;

    /// The value of a scalar field as it is written to XML.
    QString fieldText(unsigned field) const;

    bool isPresent(unsigned field) const { return ((m_present >> field) & 1U) != 0; }
    void setPresent(unsigned field) { m_present |= 1U << field; }
    void setAbsent(unsigned field) { m_present &= ~(1U << field); }

    /// One bit for each field that is set, lists apart, which are when they are not empty.
    quint32 presentFields() const { return m_present; }
    void setPresentFields(quint32 fields) { m_present = fields; }

private:
    friend class BinaryForm;
    friend class ObjectFields;

    bool replaceValidated(const Fill& fill);
    bool fillFromBinary(const char*& begin, const char* end);
    bool loadFrom(QFile& file);
    bool readRoot(const XmlDocument& document, const QString& where);
    QString className() const;

    quint32 m_present = 0;
    bool m_validate = true;
};

} // namespace REPORTGENERATOR
