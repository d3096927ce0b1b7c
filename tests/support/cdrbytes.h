#pragma once

#include <omniORB4/CORBA.h>

#include <omniORB4/codeSets.h>

#include <QByteArray>

#include <algorithm>

/// What values look like on the wire: CDR as GIOP 1.2 carries it, UTF-8 and UTF-16, little end first unless said
/// otherwise. An ORB must have been made before, which sets the code sets of this side. Padding is zero here; an ORB
/// leaves in it whatever stood there.
namespace cdr {

class Stream : public cdrMemoryStream
{
public:
    Stream()
        : cdrMemoryStream(0, true)
    {
        chooseCodeSets();
    }

    /// Reads from `bytes`, which must outlive it.
    explicit Stream(const QByteArray& bytes)
        : cdrMemoryStream(const_cast<char*>(bytes.constData()), static_cast<_CORBA_ULong>(bytes.size()))
    {
        chooseCodeSets();
    }

    QByteArray bytes() const { return {static_cast<const char*>(bufPtr()), static_cast<qsizetype>(bufSize())}; }

private:
    void chooseCodeSets()
    {
        const GIOP::Version version{1, 2};
        TCS_C(omni::omniCodeSet::getTCS_C(omni::omniCodeSet::ID_UTF_8, version));
        TCS_W(omni::omniCodeSet::getTCS_W(omni::omniCodeSet::ID_UTF_16, version));
    }
};

/// The bytes of a value behind `offset` others.
template <typename T>
QByteArray encoded(const T& value, int offset = 0)
{
    Stream stream;
    for (int i = 0; i < offset; ++i) {
        stream.marshalOctet(0);
    }
    value >>= stream;
    return stream.bytes().mid(offset);
}

/// Reads a value; throws what the ORB throws where the bytes hold none. With `bigEnd`, their big end comes first.
template <typename T>
void decode(T& value, const QByteArray& bytes, bool bigEnd = false)
{
    Stream stream(bytes);
    stream.setByteSwapFlag(!bigEnd);
    value <<= stream;
}

/// Bytes from a text of hexadecimal digits, in which blanks may stand, and points for padding.
inline QByteArray bytes(const QByteArray& hex)
{
    return QByteArray::fromHex(QByteArray(hex).replace(' ', "").replace('.', '0'));
}

/// The bytes as such a text without blanks, with points where `hex` has them.
inline QByteArray shownLike(const QByteArray& bytes, const QByteArray& hex)
{
    const QByteArray pattern = QByteArray(hex).replace(' ', "");
    QByteArray shown = bytes.toHex();
    for (qsizetype i = 0; i < std::min(shown.size(), pattern.size()); ++i) {
        shown[i] = pattern[i] == '.' ? '.' : shown[i];
    }
    return shown;
}

} // namespace cdr
