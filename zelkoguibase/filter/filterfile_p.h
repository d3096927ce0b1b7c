#pragma once

#include <zelkoguibase/filter/abstractfiltercondition.h>

#include <reportcore/rgexception.h>

#include <QList>
#include <QPointer>

/// The files in which the extended filter window keeps the state of its filters.
namespace ZelkoGUI::Filter::filterfile {

using Conditions = QList<QPointer<AbstractFilterCondition>>;

/// A file that could not be written, or is refused. The message says which one, as users know it from here; what was
/// wrong with it is the reason, empty where that is not known.
class Failure : public RGException
{
public:
    explicit Failure(const QString& message, const QString& reason = QString())
        : RGException(message)
        , m_reason(reason)
    {}

    /// The reason of a failure; empty for any other exception.
    static QString reasonOf(const RGException& exception)
    {
        const auto* const failure = dynamic_cast<const Failure*>(&exception);
        return failure ? failure->m_reason : QString();
    }

private:
    QString m_reason;
};

/// Writes the state of all conditions that live, switched on or not. Throws Failure if that does not work; the file is
/// the old one then.
void save(const Conditions& conditions, const QString& fileName);

/// Has the conditions take over, one after the other, what the file says of them. Those of the column Interface that
/// are switched off are left alone. Throws Failure, with no condition changed, if the file cannot be read or is not one
/// of the extended filter window.
void restore(Conditions conditions, const QString& fileName);

} // namespace ZelkoGUI::Filter::filterfile
